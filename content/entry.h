// A row of a table: a field for each field definition of the table, and the symbols placed for it.
#pragma once

#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"

#include "point3.hxx"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>
#include <vector>

class TrFieldBase;
class TrFieldDefV1;
class TrTableBase;
class TrTableDefV1;

namespace QelFmt {
class SymbolBase;
}

// What all generations store alike. Parts in the field hold these indices: append, never renumber.
struct EntrySlots {
    static constexpr LumUg::StringSlot kEntryDefName{0,
                                                     "EntryDefName"}; // of the table's definition
    static constexpr LumUg::IntSlot kHideEntry{0, "HideEntry"};       // takes no height
    static constexpr LumUg::IntSlot kDisplayMiddleBorder{1, "DisplayMiddleBorder"};
    static constexpr LumUg::ChildList<TrFieldBase> kFields{LumUg::kChildLink, "Fields"};
    static constexpr std::tuple kLayout{kEntryDefName, kHideEntry, kDisplayMiddleBorder, kFields};
    static_assert(LumUg::isDense(kLayout));
};

// A view on the record of one row. The table links to the row, the row to its fields and symbols.
// The table that hands a row out tells it how to find its base point, and whether rows grow
// downwards.
class QELFMT_API TrEntryBase : public LumUg::UDO, public EntrySlots {
public:
    using Fields = std::vector<boost::shared_ptr<TrFieldBase>>;
    using Symbols = std::vector<boost::shared_ptr<QelFmt::SymbolBase>>;
    using BaseLocationCmd = boost::function<std::vector<double>(const TrEntryBase &)>;

    TrEntryBase();
    explicit TrEntryBase(UgUDO *udo);
    ~TrEntryBase() override;

    // --- what a generation stores ---------------------------------------------------------------
    virtual Fields getFields() const;
    virtual std::string GetEntryDefName() const;
    virtual void SetEntryDefName(const std::string &name);
    virtual void AddField(const boost::shared_ptr<TrFieldBase> &field);
    virtual int GetHideEntry() const;
    virtual void
    SetHideEntry(int hide); // what is drawn for the row goes out of sight, or comes back
    virtual int GetDisplayMiddleBorder() const;
    virtual void SetDisplayMiddleBorder(int display);
    virtual Symbols getSymbols() const;
    virtual void addSymbol(const boost::shared_ptr<QelFmt::SymbolBase> &symbol);
    virtual void removeSymbol(const boost::shared_ptr<QelFmt::SymbolBase> &symbol); // deletes it
    virtual void removeAndRetainSymbol(const boost::shared_ptr<QelFmt::SymbolBase> &symbol);
    virtual boost::shared_ptr<TrTableBase> GetTable() const; // empty when it stands in none
    virtual TrFieldBase *CreateField() const;                // unbound; the caller owns it
    virtual void removeAndRetainField(const boost::shared_ptr<TrFieldBase> &field);

    static boost::shared_ptr<TrEntryBase> createEntry(); // of the current generation, unbound

    // --- fields ---------------------------------------------------------------------------------
    boost::shared_ptr<TrFieldBase> field(const std::string &id) const; // empty when there is none
    void AddField(const TrFieldDefV1 &def);                            // made, linked and filled
    void InitValues(const TrTableDefV1 &def);
    double CalcHeight() const;                           // of the tallest field
    double heightBeside(const TrFieldBase &field) const; // of the tallest of the others; 0 without
    void locate();
    void Move();
    void UpdateBorders(); // as high as the row
    void RebroadcastValues();
    void RecreateNotes();
    void RemoveFieldBorders(); // released, not deleted
    void ToggleMiddleBorder(); // each field's own
    void setDirectionMult(int mult) { m_directionMult = mult; }
    BaseLocationCmd &getBaseLocationCmd() { return m_baseLocationCmd; }
    // A field's value has changed: what depends on it follows, in this row and in those after it
    // that say what this one says.
    void valueChanged(const TrFieldBase &changed);

    // --- symbols --------------------------------------------------------------------------------
    // Z counts for nothing. A row whose table has no definition, and a point that is not finite, are
    // refused with a standard exception; a symbol that cannot be drawn leaves no record.
    void addSymbol(const Point3 &point);
    void makeGeometryOfAllSymbols(); // for those that have lost theirs
    void removeAllSymbolGeometry();  // the records stay
    void updateSymbols();
    std::vector<std::string> symbolsZoneList() const;
    bool leavesEmpty(const std::string &fieldId) const; // so that symbols look at the rows before

    // --- against a new definition, and older generations ------------------------------------------
    void UpdateDefinition(const TrTableDefV1 &def);
    void checkForRemovedFields(const TrTableDefV1 &def);
    // A view on this record when it is current, else the record that replaces it. Fields are
    // brought to their current generation too, each in the place of the old one.
    boost::shared_ptr<TrEntryBase> checkAndUpgrade();
    boost::shared_ptr<TrEntryBase> upgrade();

protected:
    std::vector<double> getBaseLocation() const;
    void showDraftingObjects(bool show) const;

private:
    void takeBack(const boost::shared_ptr<QelFmt::SymbolBase> &symbol);
    std::string GenerateSymbolValue(const std::string &text) const;
    std::string saidBefore(const std::string &fieldId) const;
    std::string firstLineOf(const std::string &fieldId) const;
    std::vector<std::string> symbolLines(const TrTableDefV1 &def) const;
    void applySymbolPreferences(QelFmt::SymbolBase &symbol, const TrTableDefV1 &def) const;
    void drawBorders(const Fields &fields);
    void bind(TrFieldBase &field) const; // gives the field its way to its place
    void checkForNewFields(const TrTableDefV1 &def);

    BaseLocationCmd m_baseLocationCmd;
    int m_directionMult = 1;
};

// The current generation.
class QELFMT_API TrEntryV2 : public TrEntryBase {
public:
    static constexpr LumUg::ChildList<QelFmt::SymbolBase> kSymbols{LumUg::kChildLink, "Symbols"};
    static constexpr std::tuple kLayout = std::tuple_cat(EntrySlots::kLayout, std::tuple{kSymbols});

    TrEntryV2();
    explicit TrEntryV2(UgUDO *udo);
    ~TrEntryV2() override;

    using TrEntryBase::addSymbol;
    LumUg::UDOClass *GetUDOClass() const override;
    Symbols getSymbols() const override;
    void addSymbol(const boost::shared_ptr<QelFmt::SymbolBase> &symbol) override;
    void removeSymbol(const boost::shared_ptr<QelFmt::SymbolBase> &symbol) override;
    void removeAndRetainSymbol(const boost::shared_ptr<QelFmt::SymbolBase> &symbol) override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

// The generation before symbols.
class QELFMT_API TrEntryV1 : public TrEntryBase {
public:
    TrEntryV1();
    explicit TrEntryV1(UgUDO *udo);
    ~TrEntryV1() override;

    LumUg::UDOClass *GetUDOClass() const override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

// The oldest generation: it can be read and upgraded, not edited.
class QELFMT_API ZemEntryV1 : public TrEntryBase {
public:
    ZemEntryV1();
    explicit ZemEntryV1(UgUDO *udo);
    ~ZemEntryV1() override;

    using TrEntryBase::AddField;
    LumUg::UDOClass *GetUDOClass() const override;
    void SetEntryDefName(const std::string &name) override;
    void AddField(const boost::shared_ptr<TrFieldBase> &field) override;
    void SetHideEntry(int hide) override;
    void SetDisplayMiddleBorder(int display) override;
    TrFieldBase *CreateField() const override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
