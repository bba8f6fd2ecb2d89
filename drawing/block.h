// A block placed on a format: a title block, a revision block, ...
#pragma once

#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"

#include "point2.hxx"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>
#include <vector>

class TrBlockDefV1;
class TrFieldBase;
class TrFieldDefV1;
class TrTableBase;
class TrTableDefV1;

namespace QelFmt {
struct LocationInfoType;
}

// The behaviour, whatever generation the record is of. The format links to the block; the block
// links to its private copy of the definition, its fields and its tables, and owns its pattern.
class QELFMT_API TrBlockBase : public LumUg::UDO {
public:
    using Fields = std::vector<boost::shared_ptr<TrFieldBase>>;
    using Tables = std::vector<boost::shared_ptr<TrTableBase>>;
    using Places = std::vector<QelFmt::LocationInfoType>;

    TrBlockBase();
    explicit TrBlockBase(UgUDO *udo);
    ~TrBlockBase() override;

    // --- what a generation stores ------------------------------------------------------------------
    virtual Fields getFields();
    virtual Tables getTables();
    virtual std::string GetBlockDefName() const;
    virtual double GetX() const;
    virtual double GetY() const;
    virtual void setDefinition(const boost::shared_ptr<TrBlockDefV1> &def);
    virtual boost::shared_ptr<TrBlockDefV1> GetDefinition() const; // unbound when there is none
    virtual void SetDefinition(const TrBlockDefV1 &def);
    virtual void addField(const boost::shared_ptr<TrFieldBase> &field);
    virtual void addTable(const boost::shared_ptr<TrTableBase> &table);
    virtual int GetAlternateLocationIndex() const;
    virtual void SetAlternateLocationIndex(int index);
    virtual TrFieldBase *createField() const; // unbound; the caller owns it
    virtual void updatePattern();
    virtual void removePattern();
    virtual void movePattern(const Point2 &point); // from the stored point to this one
    virtual void SetX(double x);
    virtual void SetY(double y);
    virtual void SetBlockDefName(const std::string &name);
    virtual boost::shared_ptr<TrBlockDefV1> retainDefinition(); // unlinked, not deleted
    virtual void removeAndRetainField(boost::shared_ptr<TrFieldBase> &field);
    virtual void removeAndRetainTable(boost::shared_ptr<TrTableBase> &table);

    // A new block of the current generation with its own copy of the definition, on no format yet.
    static boost::shared_ptr<TrBlockBase> createBlock(const boost::shared_ptr<TrBlockDefV1> &def);
    // Makes the fields and tables of the definition, places the block and gives the fields values.
    void initialize(const QelFmt::LocationInfoType &location);

    // --- placement ---------------------------------------------------------------------------------
    // Places the block, its pattern, fields and tables. A point is two values; with null the block
    // finds its place from its definition, unless the user chose it.
    void locateBlock(const QelFmt::LocationInfoType &location);
    void locateBlock(const double *point);
    // Places the block and moves the notes; with null to where it stands already.
    void move(const QelFmt::LocationInfoType &location);
    void move(const double *point);

    boost::shared_ptr<TrTableBase> getTable(const std::string &id); // empty when there is none
    void recreateNotes();

    // --- against the definition on disk, and older generations ---------------------------------------
    bool checkDefinition() const; // true when out of date
    // Raises TrBlockNotExist when the definition is gone.
    void updateDefinition();
    boost::shared_ptr<TrBlockBase> checkAndUpgrade(); // empty when the record is current
    boost::shared_ptr<TrBlockBase> upgrade();

protected:
    std::vector<double> getLocation() const; // the stored point

private:
    void addField(const TrFieldDefV1 &def, bool initValues);
    void addTable(const boost::shared_ptr<TrTableDefV1> &def);
    void checkForNewFields();
    void checkForRemovedFields();

    void placeAt(const Point2 &point);
    void locateAt(const QelFmt::LocationInfoType &location, const Places &places);
    void placeByDefinition();
    void locateChildren();
    void moveChildren();

    void followDefinition(const TrBlockDefV1 &disk);
    void pairFields(const TrBlockDefV1 &def);
    void pairTables(const TrBlockDefV1 &def);
    void dropOldDefinition(TrBlockDefV1 &old);
    void upgradeFields();
    void upgradeTables();
};

// The current generation.
class QELFMT_API TrBlockV1 : public TrBlockBase {
public:
    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kBlockDefName{0, "BlockDefName"};
    // The definition's location that the block stands at; -1 at a point the user chose.
    static constexpr LumUg::IntSlot kAlternateLocationIndex{0, "AlternateLocationIndex"};
    static constexpr LumUg::DoubleSlot kX{0, "X"}; // of the placement point on the sheet
    static constexpr LumUg::DoubleSlot kY{1, "Y"};
    static constexpr LumUg::ChildList<TrBlockDefV1> kDefinition{LumUg::kChildLink, "Definition"};
    static constexpr LumUg::ChildList<TrFieldBase> kFields{LumUg::kChildLink, "Fields"};
    static constexpr LumUg::ChildList<TrTableBase> kTables{LumUg::kChildLink, "Tables"};
    static constexpr std::tuple kLayout{
        kBlockDefName, kAlternateLocationIndex, kX, kY, kDefinition, kFields, kTables};
    static_assert(LumUg::isDense(kLayout));

    TrBlockV1();
    explicit TrBlockV1(UgUDO *udo);
    ~TrBlockV1() override;

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override;
    Fields getFields() override;
    Tables getTables() override;
    std::string GetBlockDefName() const override;
    double GetX() const override;
    double GetY() const override;
    void setDefinition(const boost::shared_ptr<TrBlockDefV1> &def) override;
    boost::shared_ptr<TrBlockDefV1> GetDefinition() const override;
    void SetDefinition(const TrBlockDefV1 &def) override;
    void addField(const boost::shared_ptr<TrFieldBase> &field) override;
    void addTable(const boost::shared_ptr<TrTableBase> &table) override;
    int GetAlternateLocationIndex() const override;
    void SetAlternateLocationIndex(int index) override;
    TrFieldBase *createField() const override;
    void updatePattern() override;
    void removePattern() override;
    void movePattern(const Point2 &point) override;
    void SetX(double x) override;
    void SetY(double y) override;
    void SetBlockDefName(const std::string &name) override;
    boost::shared_ptr<TrBlockDefV1> retainDefinition() override;
    void removeAndRetainField(boost::shared_ptr<TrFieldBase> &field) override;
    void removeAndRetainTable(boost::shared_ptr<TrTableBase> &table) override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};

// The older generation: read, and converted on first access. It has no copy of its definition.
class QELFMT_API ZemBlockV1 : public TrBlockBase {
public:
    static constexpr LumUg::StringSlot kBlockDefName{0, "BlockDefName"};
    static constexpr LumUg::DoubleSlot kX{0, "X"};
    static constexpr LumUg::DoubleSlot kY{1, "Y"};
    static constexpr LumUg::ChildList<TrFieldBase> kFields{LumUg::kChildLink, "Fields"};
    static constexpr LumUg::ChildList<TrTableBase> kTables{LumUg::kChildLink, "Tables"};
    static constexpr std::tuple kLayout{kBlockDefName, kX, kY, kFields, kTables};
    static_assert(LumUg::isDense(kLayout));

    ZemBlockV1();
    explicit ZemBlockV1(UgUDO *udo);
    ~ZemBlockV1() override;

    LumUg::UDOClass *GetUDOClass() const override;
    Fields getFields() override;
    Tables getTables() override;
    std::string GetBlockDefName() const override;
    double GetX() const override;
    double GetY() const override;
    void SetX(double x) override;
    void SetY(double y) override;
    void SetBlockDefName(const std::string &name) override;
    void removeAndRetainField(boost::shared_ptr<TrFieldBase> &field) override;
    void removeAndRetainTable(boost::shared_ptr<TrTableBase> &table) override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
