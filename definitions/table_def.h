// What a table in a block is: where it starts, which way its rows grow, the fields of a row and the
// symbol drawn beside it.
#pragma once

#include "definitions/field_def.h"
#include "udo/class_names.h"
#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>
#include <vector>

class TrBlockDefV1;

// A record of a definition file, linked from its block definition, or of the copy that a placed
// block keeps of its definition. Owns the definitions of the fields of one row.
class QELFMT_API TrTableDefV1 : public LumUg::UDO {
public:
    static constexpr const char *className = QelFmt::kTableDefV1Classname;

    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kId{0, "Id"};
    static constexpr LumUg::StringSlot kSymbol1Value{1, "Symbol1Value"}; // first line of the symbol
    static constexpr LumUg::StringSlot kEntryListString{2, "EntryListString"};
    static constexpr LumUg::StringSlot kSymbol2Value{3, "Symbol2Value"}; // second line
    static constexpr LumUg::StringSlot kSymbolFontName{4, "SymbolFontName"};

    static constexpr LumUg::DoubleSlot kLocationX{0, "LocationX"}; // from the block's point
    static constexpr LumUg::DoubleSlot kLocationY{1, "LocationY"};
    static constexpr LumUg::DoubleSlot kSymbolTextSize{2, "SymbolTextSize"};
    static constexpr LumUg::DoubleSlot kSymbolSize{3, "SymbolSize"};
    static constexpr LumUg::DoubleSlot kSymbolTextAspect{4, "SymbolTextAspect"};

    static constexpr LumUg::IntSlot kSymbolType{0, "SymbolType"};
    static constexpr LumUg::IntSlot kSymbolColor{1, "SymbolColor"};
    static constexpr LumUg::IntSlot kDirection{2,
                                               "Direction"}; // 0 is listed as up, all else as down
    static constexpr LumUg::IntSlot kSymbolIdType{3, "SymbolIdType"};
    static constexpr LumUg::IntSlot kSymbolLayer{4, "SymbolLayer"};

    static constexpr std::tuple kLayout{
        kId,         kSymbol1Value, kEntryListString, kSymbol2Value, kSymbolFontName,
        kLocationX,  kLocationY,    kSymbolTextSize,  kSymbolSize,   kSymbolTextAspect,
        kSymbolType, kSymbolColor,  kDirection,       kSymbolIdType, kSymbolLayer};
    static_assert(LumUg::isDense(kLayout));

    static constexpr LumUg::ChildList<TrFieldDefV1> kFields{LumUg::kChildLink, "Fields"};
    static constexpr std::tuple kChildren{kFields};

    TrTableDefV1();
    explicit TrTableDefV1(UgUDO *udo);
    TrTableDefV1(const TrTableDefV1 &) = default; // views the same record
    TrTableDefV1 &operator=(const TrTableDefV1 &) = default;
    ~TrTableDefV1() override;

    std::string GetId() const { return get(kId); }
    void SetId(const std::string &value) { set(kId, value); }
    std::string GetSymbol1Value() const { return get(kSymbol1Value); }
    void SetSymbol1Value(const std::string &value) { set(kSymbol1Value, value); }
    std::string GetEntryListString() const { return get(kEntryListString); }
    void SetEntryListString(const std::string &value) { set(kEntryListString, value); }
    std::string GetSymbol2Value() const { return get(kSymbol2Value); }
    void SetSymbol2Value(const std::string &value) { set(kSymbol2Value, value); }
    std::string GetSymbolFontName() const { return get(kSymbolFontName); }
    void SetSymbolFontName(const std::string &value) { set(kSymbolFontName, value); }

    double GetLocationX() const { return get(kLocationX); }
    void SetLocationX(double value) { set(kLocationX, value); }
    double GetLocationY() const { return get(kLocationY); }
    void SetLocationY(double value) { set(kLocationY, value); }
    double GetSymbolTextSize() const { return get(kSymbolTextSize); }
    void SetSymbolTextSize(double value) { set(kSymbolTextSize, value); }
    double GetSymbolSize() const { return get(kSymbolSize); }
    void SetSymbolSize(double value) { set(kSymbolSize, value); }
    double GetSymbolTextAspect() const { return get(kSymbolTextAspect); }
    void SetSymbolTextAspect(double value) { set(kSymbolTextAspect, value); }

    int GetSymbolType() const { return get(kSymbolType); }
    void SetSymbolType(int value) { set(kSymbolType, value); }
    int GetSymbolColor() const { return get(kSymbolColor); }
    void SetSymbolColor(int value) { set(kSymbolColor, value); }
    int GetDirection() const { return get(kDirection); }
    void SetDirection(int value) { set(kDirection, value); }
    int GetSymbolIdType() const { return get(kSymbolIdType); }
    void SetSymbolIdType(int value) { set(kSymbolIdType, value); }
    int GetSymbolLayer() const { return get(kSymbolLayer); }
    void SetSymbolLayer(int value) { set(kSymbolLayer, value); }

    // The fields of a row, in link order; unbound when there is none of that id.
    std::vector<TrFieldDefV1> GetFieldDefinitions() const;
    TrFieldDefV1 GetFieldDefinition(const std::string &id) const;
    void AddFieldDefinition(const TrFieldDefV1 &field);
    void RemoveFieldDefinition(const TrFieldDefV1 &field); // deletes its record

    // The texts of the symbol as the site's settings have them, else those of the definition. Only
    // for the definition of a table that stands on a drawing.
    std::string GetSymbol1ValueOverride() const;
    std::string GetSymbol2ValueOverride() const;

    // Adds clones of the source's fields to those that are linked here already: meant for a fresh
    // record.
    void Clone(const TrTableDefV1 &source);
    bool operator==(const TrTableDefV1 &other) const;
    bool operator!=(const TrTableDefV1 &other) const { return !(*this == other); }

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override { return &mUDOClass; }
    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;

private:
    boost::shared_ptr<TrBlockDefV1> GetBlockDef() const;
    std::string symbolValueOverride(const std::string &key, const std::string &fallback) const;
};
