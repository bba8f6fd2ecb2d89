// The format placed on a sheet: which definition and size were chosen, a private copy of the
// definition, and the blocks.
#pragma once

#include "udo/export.h"
#include "udo/slots.h"
#include "udo/udo.h"

#include "base/functor.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <tuple>
#include <vector>

class TrBlockBase;
class TrBlockDefV1;
class TrFormatDefV1;
class TrFormatSizeV1;
class UgTypedObject;

namespace QelFmt {
struct LocationInfoType;
}

// The behaviour, whatever generation the record is of. A format may be unbound: a sheet without a
// format is answered with one. The first write makes the record.
class QELFMT_API TrFormatBase : public LumUg::UDO {
public:
    using AddBlockCallback = Base::Functor<int(const char *, const char *)>;
    using Blocks = std::vector<boost::shared_ptr<TrBlockBase>>;

    TrFormatBase();
    explicit TrFormatBase(UgUDO *udo);
    ~TrFormatBase() override;

    // --- what a generation stores ------------------------------------------------------------------
    virtual std::string GetFormatDefName() const;
    virtual void SetFormatDefName(const std::string &name);
    virtual UgTypedObject *GetDrawing() const;
    virtual void SetDrawing(const UgTypedObject *drawing);
    virtual TrBlockBase *createBlock(); // unbound; the caller owns it
    virtual void addBlock(const boost::shared_ptr<TrBlockBase> &block);
    virtual void removeBlock(boost::shared_ptr<TrBlockBase> &block); // deletes the block
    virtual void retainBlock(boost::shared_ptr<TrBlockBase> &block); // the block lives on
    virtual std::string GetSizeName() const;
    virtual void SetSizeName(const std::string &name);
    virtual boost::shared_ptr<TrFormatDefV1> getDefinition() const; // unbound when there is none
    virtual void setDefinition(const boost::shared_ptr<TrFormatDefV1> &def);
    virtual void setDefinition(const TrFormatDefV1 &def);
    virtual void updatePattern();
    virtual void removePattern();
    virtual boost::shared_ptr<TrFormatDefV1> retainDefinition(); // unlinked, not deleted
    virtual void initOwnedObjects();

    // --- the format on its sheet -------------------------------------------------------------------
    void initialize(UgTypedObject *drawing, const boost::shared_ptr<TrFormatDefV1> &def,
                    const TrFormatSizeV1 &size, Blocks retained);
    void resize(const TrFormatSizeV1 &size);
    void remove();

    // --- blocks ------------------------------------------------------------------------------------
    // Adding tells the add-block callback, whose 0 removes the block again; the block handed back is
    // then unbound.
    boost::shared_ptr<TrBlockBase> addBlock(const std::string &id);
    boost::shared_ptr<TrBlockBase> addBlock(const std::string &id,
                                            const QelFmt::LocationInfoType &location);
    boost::shared_ptr<TrBlockBase> addBlock(const boost::shared_ptr<TrBlockDefV1> &def,
                                            const QelFmt::LocationInfoType &location);
    Blocks getBlocks() const;
    bool hasBlock(const std::string &id) const;
    Blocks removableBlocks() const;
    bool canDeleteBlock(const boost::shared_ptr<TrBlockDefV1> &def) const;
    void verifyBlockLocations();
    void recreateNotes();

    // --- against the definition on disk, and older generations ---------------------------------------
    bool checkDefinition(); // true when out of date
    void updateDefinition();
    boost::shared_ptr<TrFormatBase> checkAndUpgrade(); // empty when the record is current
    boost::shared_ptr<TrFormatBase> upgrade();

    // --- what the stored definition and the current size say ------------------------------------------
    std::string category() const;
    bool inSuite(const std::string &name) const;
    std::string sizeSuiteName() const;
    std::string sizeLabel() const;
    int frameLayer() const;
    double rightOffset() const;
    double horzZoneLength() const;
    double vertZoneLength() const;
    int numberHorzZones() const;
    int numberVertZones() const;
    int horzZoneType() const;
    int vertZoneType() const;

    // Called with the names of the format's and the block's definition after a block was added.
    static AddBlockCallback &addBlockCB();

protected:
    bool isRequiredBlock(const std::string &id) const;
    void addRequiredBlocks();
    boost::shared_ptr<TrBlockBase> createAndAddBlock(const boost::shared_ptr<TrBlockDefV1> &def);
    void initializeBlock(boost::shared_ptr<TrBlockBase> &block,
                         const QelFmt::LocationInfoType &location);
    // The size chosen, as the stored definition has it; unbound when it has none of that name.
    TrFormatSizeV1 currentSize() const;

private:
    void setSheetSize(const TrFormatSizeV1 &size);
    void relocateRetained(TrBlockBase &block);
    void followDefinition(const TrFormatDefV1 &disk);
    bool upgradeBlocks(); // true when a block was replaced
    void replaceBlock(TrBlockBase &old, const TrBlockBase &fresh);

    static AddBlockCallback mAddBlockCB;
};

// The current generation.
class QELFMT_API TrFormatV1 : public TrFormatBase {
public:
    // The stored layout. Parts in the field hold these indices: append, never renumber.
    static constexpr LumUg::StringSlot kFormatDefName{0, "FormatDefName"};
    static constexpr LumUg::StringSlot kSizeName{1, "SizeName"}; // empty until the first resize
    static constexpr LumUg::LinkSlot kDrawing{LumUg::kSheetLink, 0, "Drawing"};
    static constexpr LumUg::ChildList<TrFormatDefV1> kDefinition{LumUg::kChildLink, "Definition"};
    static constexpr LumUg::ChildList<TrBlockBase> kBlocks{LumUg::kChildLink, "Blocks"};
    static constexpr std::tuple kLayout{kFormatDefName, kSizeName, kDrawing, kDefinition, kBlocks};
    static_assert(LumUg::isDense(kLayout));

    TrFormatV1();
    explicit TrFormatV1(UgUDO *udo);
    ~TrFormatV1() override;

    void InfoObject() override;
    LumUg::UDOClass *GetUDOClass() const override;
    std::string GetFormatDefName() const override;
    void SetFormatDefName(const std::string &name) override;
    UgTypedObject *GetDrawing() const override; // without one: an error
    void SetDrawing(const UgTypedObject *drawing) override;
    TrBlockBase *createBlock() override;
    std::string GetSizeName() const override;
    void SetSizeName(const std::string &name) override;
    void updatePattern() override; // the frame of the current size
    void removePattern() override;
    boost::shared_ptr<TrFormatDefV1> retainDefinition() override;

    static LumUg::UDO *CreateInstance();
    static LumUg::UDOClass mUDOClass;
};
