// A table of a block: rows (entries) stacked from the table's origin upwards or downwards.
#pragma once

#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"

#include "base/functor.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

class TrBlockBase;
class TrEntryBase;
class TrFieldBase;
class TrTableDefV1;

namespace QelFmt {
class RowMemo;
}

// What both generations store alike. Parts in the field hold these indices: append, never renumber.
struct TableSlots {
    static constexpr LumUg::StringSlot kTableDefName{0, "TableDefName"};
    static constexpr LumUg::DoubleSlot kX{0, "X"}; // of the table's origin on the sheet
    static constexpr LumUg::DoubleSlot kY{1, "Y"};
    static constexpr LumUg::LinkSlot kDefinition{LumUg::kDefinitionLink, 0, "Definition"};
    // Only after the block has lost the definition that the table was made from.
    static constexpr LumUg::ChildList<TrTableDefV1> kKeptDefinition{LumUg::kChildLink,
                                                                    "KeptDefinition"};
    static constexpr LumUg::ChildList<TrEntryBase> kEntries{LumUg::kChildLink, "Entries"};
    static constexpr std::tuple kLayout{kTableDefName,   kX,      kY, kDefinition,
                                        kKeptDefinition, kEntries};
    static_assert(LumUg::isDense(kLayout));
};

// A view on the record of one table. The record links to its rows in display order, and to its
// definition inside the private copy that its block keeps. Rows know their place through the table
// that handed them out.
class QELFMT_API TrTableBase : public LumUg::UDO, public TableSlots {
public:
    using Entries = std::vector<boost::shared_ptr<TrEntryBase>>;
    using BaseLocationCmd = boost::function<std::vector<double>()>;
    using AppendEntryCallback = Base::Functor<void(const char *, const char *, const char *)>;

    TrTableBase();
    explicit TrTableBase(UgUDO *udo);
    ~TrTableBase() override;

    // --- what a generation stores ---------------------------------------------------------------
    virtual Entries getEntries() const;
    virtual void SetDefinition(const TrTableDefV1 &def);
    virtual boost::shared_ptr<TrTableDefV1> GetDefinition() const; // unbound when there is none
    virtual void RemoveEntry(const boost::shared_ptr<TrEntryBase> &entry); // deletes the row
    virtual std::string GetTableDefName() const;
    virtual void SetTableDefName(const std::string &name);
    virtual double GetX() const;
    virtual void SetX(double x);
    virtual double GetY() const;
    virtual void SetY(double y);
    virtual void SetEntries(const Entries &entries); // in their new order
    virtual void AddEntry(const boost::shared_ptr<TrEntryBase> &entry);
    virtual boost::shared_ptr<TrTableDefV1> retainDefinition(); // unlinked, not deleted
    virtual void removeAndRetainEntry(const boost::shared_ptr<TrEntryBase> &entry);

    static boost::shared_ptr<TrTableBase> createTable(); // of the current generation, unbound

    // --- rows -----------------------------------------------------------------------------------
    std::size_t entryCount() const;
    std::optional<std::size_t> indexOf(const TrEntryBase &entry) const; // in the order shown
    // One row without wrapping the others; empty when there is none at the index.
    boost::shared_ptr<TrEntryBase> entry(std::size_t index) const;
    // Placed and filled, then announced. A table without a definition is refused with a standard
    // exception; a row that cannot be made, or that the callback raises against, is taken back.
    boost::shared_ptr<TrEntryBase> AppendEntry();
    boost::shared_ptr<TrTableDefV1> requiredDefinition() const; // else the same exception
    void MoveEntryUp(int index);
    void MoveEntryDown(int index);
    // The row at `from` gets the place `to`, in one pass. False, and nothing moved, without such
    // rows.
    bool moveEntry(std::size_t from, std::size_t to);
    void HidePreviousEntries(int count); // the first ones
    // Gives a field of the row its value. Where that makes the row higher or lower, its borders are
    // drawn anew and the rows after it move; their values are not touched. The height of no other
    // field of the row depends on the value.
    void setValue(TrEntryBase &entry, TrFieldBase &field, const std::vector<std::string> &lines);

    // After a value of the row has changed: symbols of the rows after it that leave the field empty
    // say so too.
    void valueChanged(const TrEntryBase &entry, const TrFieldBase &changed);

    void locate(); // the origin, then every row
    void Move();
    void RebroadcastValues();
    void RecreateNotes();
    BaseLocationCmd &getBaseLocationCmd() { return m_baseLocationCmd; }

    // --- against a new definition, and older generations ------------------------------------------
    void UpdateDefinition(const TrTableDefV1 &def);
    // Makes this table the keeper of the definition it links to, for a definition that is about to
    // lose its block. The next SetDefinition deletes it.
    void keepDefinition();
    // A view on this record when it is current, else the record that replaces it. Rows and their
    // fields are brought to their current generation too, each in the place of the old one.
    boost::shared_ptr<TrTableBase> checkAndUpgrade();
    boost::shared_ptr<TrTableBase> upgrade();

    // Called with the names of the format's, the block's and the table's definition after a row was
    // appended.
    static AppendEntryCallback &appendEntryCB();

protected:
    std::vector<double> entryBaseLocation(const TrEntryBase &entry) const;

    boost::shared_ptr<TrBlockBase> block() const; // empty when it stands in none
    void storeOrder(const std::vector<UgUDO *> &entries);

private:
    std::string GetBlockId() const;
    int directionMult() const;
    // Gives a row its way to its place. `table` is a view on this record that the row may hold.
    void bind(TrEntryBase &entry, const boost::shared_ptr<const TrTableBase> &table) const;
    boost::shared_ptr<const TrTableBase> viewToHold() const;
    void announce() const;
    void restackAfter(TrEntryBase &entry);

    QelFmt::RowMemo &rows() const;
    bool rowsAreThose(const std::vector<tag_t> &entries) const;
    double roomOf(tag_t entry) const;
    void takeBack(const boost::shared_ptr<TrEntryBase> &entry);
    std::vector<std::size_t> rowsWithSymbolsAfter(std::size_t index) const;
    void updateAllSymbols();

    BaseLocationCmd m_baseLocationCmd;

    static AppendEntryCallback mAppendEntryCB;
};

// The current generation.
class QELFMT_API TrTableV1 : public TrTableBase {
public:
    TrTableV1();
    explicit TrTableV1(UgUDO *udo);
    ~TrTableV1() override;

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override;
    void SetDefinition(const TrTableDefV1 &def) override;
    void RemoveEntry(const boost::shared_ptr<TrEntryBase> &entry) override;
    void SetTableDefName(const std::string &name) override;
    void SetX(double x) override;
    void SetY(double y) override;
    void SetEntries(const Entries &entries) override;
    void AddEntry(const boost::shared_ptr<TrEntryBase> &entry) override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

// The older generation: it can be read and upgraded, not edited.
class QELFMT_API ZemTableV1 : public TrTableBase {
public:
    ZemTableV1();
    explicit ZemTableV1(UgUDO *udo);
    ~ZemTableV1() override;

    LumUg::UDOClass *GetUDOClass() const override;
    virtual boost::shared_ptr<TrEntryBase> AppendEntry(); // none: empty

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
