// What a block is: its pattern and layers, where it may stand, and its fields and tables.
#pragma once

#include "definitions/field_def.h"
#include "definitions/location_info.h"
#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>
#include <vector>

class TrDrawing;
class TrTableDefV1;

namespace QelFmt {
class BlockLocationBase;
}

// A record of a definition file, or the copy that a placed block keeps of it. Owns the definitions
// of its fields and tables, and its block locations.
class QELFMT_API TrBlockDefV1 : public LumUg::UDO {
public:
    static constexpr const char *className = QelFmt::kBlockDefV1Classname;

    using Tables = std::vector<boost::shared_ptr<TrTableDefV1>>;
    using BlockLocations = std::vector<boost::shared_ptr<QelFmt::BlockLocationBase>>;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::AttributeSlot kId{"BLOCK_ID", "Id"}; // every definition must have it
    static constexpr LumUg::AttributeSlot kCategory{"CATEGORY", "Category"}; // of the menu

    static constexpr LumUg::StringSlot kDescription{0, "Description"};
    static constexpr LumUg::StringSlot kPatternName{1, "PatternName"}; // draws the lines
    static constexpr LumUg::StringSlot kDialogName{2, "DialogName"};
    static constexpr LumUg::StringTail kExcludeBlockIds{3, "ExcludeBlockIds"};

    static constexpr LumUg::IntSlot kUnits{0, "Units"}; // 1 millimetres, any other inches
    static constexpr LumUg::IntSlot kMovable{1, "Movable"};
    static constexpr LumUg::IntSlot kPatternLayer{2, "PatternLayer"};
    static constexpr LumUg::IntSlot kTextLayer{3, "TextLayer"};
    static constexpr LumUg::IntSlot kCanDelete{4, "CanDelete"};

    static constexpr std::tuple kLayout{kId,           kCategory,        kDescription, kPatternName,
                                        kDialogName,   kExcludeBlockIds, kUnits,       kMovable,
                                        kPatternLayer, kTextLayer,       kCanDelete};
    static_assert(LumUg::isDense(kLayout));

    static constexpr LumUg::ChildList<TrFieldDefV1> kFields{LumUg::kChildLink, "Fields"};
    static constexpr LumUg::ChildList<TrTableDefV1> kTables{LumUg::kChildLink, "Tables"};
    static constexpr LumUg::ChildList<QelFmt::BlockLocationBase> kBlockLocations{LumUg::kChildLink,
                                                                                 "BlockLocations"};
    static constexpr std::tuple kChildren{kBlockLocations, kFields, kTables};

    TrBlockDefV1();
    explicit TrBlockDefV1(UgUDO *udo);
    TrBlockDefV1(const TrBlockDefV1 &) = default; // views the same record
    TrBlockDefV1 &operator=(const TrBlockDefV1 &) = default;
    ~TrBlockDefV1() override;

    std::string GetId() const; // without one: an error
    void SetId(const std::string &value) { set(kId, value); }
    std::string GetCategory() const { return get(kCategory); }
    void SetCategory(const std::string &value) { set(kCategory, value); }

    std::string GetDescription() const { return get(kDescription); }
    void SetDescription(const std::string &value) { set(kDescription, value); }
    std::string GetPatternName() const { return get(kPatternName); }
    void SetPatternName(const std::string &value) { set(kPatternName, value); }
    std::string GetDialogName() const { return get(kDialogName); }
    void SetDialogName(const std::string &value) { set(kDialogName, value); }
    // Blocks that cannot stand beside this one. Empty ids are left out; unless only the stored ones
    // are asked for, those that the site's settings add follow.
    std::vector<std::string> GetExcludeBlockIds(bool stored_only) const;
    void SetExcludeBlockIds(const std::vector<std::string> &ids);

    int GetUnits() const { return get(kUnits); }
    void SetUnits(int value) { set(kUnits, value); }
    int GetMovable() const { return get(kMovable); }
    void SetMovable(int value) { set(kMovable, value); }
    int GetPatternLayer() const { return get(kPatternLayer); }
    void SetPatternLayer(int value) { set(kPatternLayer, value); }
    int GetTextLayer() const { return get(kTextLayer); }
    void SetTextLayer(int value) { set(kTextLayer, value); }
    int GetCanDelete() const { return get(kCanDelete); }
    void SetCanDelete(int value) { set(kCanDelete, value); }
    int GetShowInMenu() const; // a setting of the site; 1 when there is none

    // --- fields and tables, in link order; unbound when there is none of that id - ---------
    std::vector<TrFieldDefV1> GetFieldDefinitions() const;
    TrFieldDefV1 GetFieldDefinition(const std::string &id) const;
    void AddFieldDefinition(const TrFieldDefV1 &field);
    void RemoveFieldDefinition(const TrFieldDefV1 &field); // deletes its record
    Tables GetTableDefinitions() const;
    boost::shared_ptr<TrTableDefV1> GetTableDefinition(const std::string &id) const;
    void AddTableDefinition(const TrTableDefV1 &table);
    void RemoveTableDefinition(const TrTableDefV1 &table); // deletes its record

    // --- places -----------------------------------------------------------------------------------
    std::vector<std::string> GetFormatIds() const; // of the block locations; duplicates stay
    BlockLocations getBlockLocations() const;
    BlockLocations getBlockLocationsAndUpgrade(); // in the order found
    void addBlockLocation(const boost::shared_ptr<QelFmt::BlockLocationBase> &location);
    // Deletes its record.
    void removeBlockLocation(const boost::shared_ptr<QelFmt::BlockLocationBase> &location);

    // Where the block may stand on the drawing; no place for its format: an error.
    std::vector<QelFmt::LocationInfoType>
    getLocations(const boost::shared_ptr<TrDrawing> &drawing) const;
    // The same on the drawing that holds this record, or else on the current one.
    std::vector<QelFmt::LocationInfoType> getLocations() const;
    QelFmt::LocationInfoType getLocation(int index) const; // nameless at (-1, -1) when out of range
    QelFmt::LocationInfoType getDefaultLocation() const;   // the first

    // A new record with all that this one owns. The site's excluded blocks become stored ones.
    boost::shared_ptr<TrBlockDefV1> clone() const { return doClone(); }
    // The same into this record, to whose own fields, tables and places the copies are added.
    void Clone(const TrBlockDefV1 &source);
    bool operator==(const TrBlockDefV1 &other) const;
    bool operator!=(const TrBlockDefV1 &other) const { return !(*this == other); }
    // Empty both: there is one generation only.
    boost::shared_ptr<TrBlockDefV1> checkAndUpgrade() { return {}; }
    boost::shared_ptr<TrBlockDefV1> upgrade() { return {}; }

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;

private:
    boost::shared_ptr<TrBlockDefV1> doClone() const;
};
