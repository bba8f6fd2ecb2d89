#include "drawing/format.h"

#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/sheet_of.h"
#include "foundation/log.h"

#include "uf.h"
#include "ug_exception.hxx"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace {

constexpr LumUg::ChildList<TrFormatDefV1> kDefinition = TrFormatV1::kDefinition;
constexpr LumUg::ChildList<TrBlockBase> kBlocks = TrFormatV1::kBlocks;

boost::shared_ptr<TrFormatDefV1> privateCopyOf(const TrFormatDefV1 &def)
{
    const boost::shared_ptr<TrFormatDefV1> copy(new TrFormatDefV1);
    copy->Clone(def);
    return copy;
}

boost::shared_ptr<TrBlockDefV1> blockDefinition(const std::string &id)
{
    const boost::shared_ptr<TrBlockDefV1> def = TrDefinitionFileManager::GetBlockDefinition(id);
    if (!def) throw std::runtime_error("No block with ID " + id);
    return def;
}

// The first place that the definition has for its block on the sheet, which need not be the current
// one.
QelFmt::LocationInfoType defaultLocation(const TrBlockDefV1 &def, const TrFormatBase &format)
{
    const auto locations = def.getLocations(TrDrawing::getDrawing(sheetOf(format)));
    if (locations.empty())
        throw std::runtime_error("Block location on format not found for block " + def.GetId());
    return locations.front();
}

// Whether the definition has places for its block on the format at all.
bool hasLocation(const TrBlockDefV1 &def, const TrFormatBase &format)
{
    if (def.IsNull()) return false;
    const std::vector<std::string> ids = def.GetFormatIds();
    return std::any_of(ids.begin(), ids.end(), [&](const std::string &id) {
        return id == format.GetFormatDefName() || format.inSuite(id);
    });
}

void requireFormat(const TrFormatBase &format)
{
    if (format.IsNull()) throw std::runtime_error("No format found on drawing");
}

void reportMissingRequiredBlock(const std::string &id)
{
    std::string text =
        "***ERROR: Trying to add a required block that does not exist(ID - " + id + ")\n";
    UgException::throwOnFailure(UF_print_syslog(text.data(), FALSE));
}

} // namespace

constinit TrFormatBase::AddBlockCallback TrFormatBase::mAddBlockCB;

TrFormatBase::AddBlockCallback &TrFormatBase::addBlockCB() { return mAddBlockCB; }

TrFormatBase::TrFormatBase() = default;
TrFormatBase::TrFormatBase(UgUDO *udo) : LumUg::UDO(udo) {}
TrFormatBase::~TrFormatBase() = default;

// --- what a generation stores: nothing here --------------------------------------------------------

std::string TrFormatBase::GetFormatDefName() const { return {}; }
void TrFormatBase::SetFormatDefName(const std::string &) {}
UgTypedObject *TrFormatBase::GetDrawing() const { return nullptr; }
void TrFormatBase::SetDrawing(const UgTypedObject *) {}
TrBlockBase *TrFormatBase::createBlock() { return nullptr; }
std::string TrFormatBase::GetSizeName() const { return {}; }
void TrFormatBase::SetSizeName(const std::string &) {}
void TrFormatBase::updatePattern() {}
void TrFormatBase::removePattern() {}
void TrFormatBase::initOwnedObjects() {}

boost::shared_ptr<TrFormatDefV1> TrFormatBase::retainDefinition()
{
    return boost::shared_ptr<TrFormatDefV1>(new TrFormatDefV1);
}

// --- definition -----------------------------------------------------------------------------------

boost::shared_ptr<TrFormatDefV1> TrFormatBase::getDefinition() const
{
    if (auto def = firstChild(kDefinition)) return def;
    return boost::shared_ptr<TrFormatDefV1>(new TrFormatDefV1);
}

void TrFormatBase::setDefinition(const boost::shared_ptr<TrFormatDefV1> &def)
{
    setDefinition(*def);
}

void TrFormatBase::setDefinition(const TrFormatDefV1 &def)
{
    const auto old = getDefinition();
    if (old->IsNull()) {
        attach(kDefinition.linkType, def);
        return;
    }
    if (old->tag() == def.tag()) return;
    // In the place of the old one, before the blocks: there it is found at once.
    exchange(kDefinition.linkType, *old, def);
    old->DeleteUDO();
}

// --- the format on its sheet ------------------------------------------------------------------------

void TrFormatBase::initialize(UgTypedObject *drawing, const boost::shared_ptr<TrFormatDefV1> &def,
                              const TrFormatSizeV1 &size, Blocks retained)
{
    QELFMT_INFO << "initializing format";
    if (!drawing) throw std::runtime_error("Bad drawing object");

    SetFormatDefName(def->GetId());
    SetDrawing(drawing);
    SetSizeName(""); // no size yet, so that resize() below does its work
    setDefinition(privateCopyOf(*def));
    initOwnedObjects();
    resize(size);
    for (boost::shared_ptr<TrBlockBase> &block : retained) {
        addBlock(block);
        relocateRetained(*block);
    }
    addRequiredBlocks();
    QELFMT_INFO << "done initializing format";
}

// A block that comes from another format carries a copy of its definition that may know nothing of
// this one.
void TrFormatBase::relocateRetained(TrBlockBase &block)
{
    const std::string name = block.GetBlockDefName();
    if (hasLocation(*block.GetDefinition(), *this)) {
        block.locateBlock(nullptr);
        return;
    }
    const auto disk = TrDefinitionFileManager::GetBlockDefinition(name);
    if (disk && hasLocation(*disk, *this))
        block.updateDefinition(); // and finds its place
    else
        QELFMT_INFO << "Block " << name << " has no location on this format and stays where it is.";
}

void TrFormatBase::remove()
{
    if (!IsNull()) DeleteUDO();
}

// --- blocks -----------------------------------------------------------------------------------------

boost::shared_ptr<TrBlockBase> TrFormatBase::addBlock(const std::string &id)
{
    requireFormat(*this);
    const boost::shared_ptr<TrBlockDefV1> def = blockDefinition(id);
    return addBlock(def, defaultLocation(*def, *this));
}

boost::shared_ptr<TrBlockBase> TrFormatBase::addBlock(const std::string &id,
                                                      const QelFmt::LocationInfoType &location)
{
    return addBlock(blockDefinition(id), location);
}

boost::shared_ptr<TrBlockBase> TrFormatBase::addBlock(const boost::shared_ptr<TrBlockDefV1> &def,
                                                      const QelFmt::LocationInfoType &location)
{
    requireFormat(*this);
    QELFMT_INFO << "Addng block " << def->GetId();
    boost::shared_ptr<TrBlockBase> block = createAndAddBlock(def);
    initializeBlock(block, location);
    QELFMT_INFO << "Done addng block " << def->GetId();
    return block;
}

boost::shared_ptr<TrBlockBase>
TrFormatBase::createAndAddBlock(const boost::shared_ptr<TrBlockDefV1> &def)
{
    const boost::shared_ptr<TrBlockBase> block = TrBlockBase::createBlock(def);
    addBlock(block);
    return block;
}

void TrFormatBase::initializeBlock(boost::shared_ptr<TrBlockBase> &block,
                                   const QelFmt::LocationInfoType &location)
{
    QELFMT_INFO << " Telling block to initialize itself.";
    block->initialize(location);
    QELFMT_INFO << "Calling user rountine in AddBlock";
    if (mAddBlockCB.empty()) return;
    const std::string format = GetFormatDefName(), name = block->GetBlockDefName();
    const bool vetoed = mAddBlockCB(format.c_str(), name.c_str()) == 0;
    if (!block->GetUdoObject()->isAlive()) // the callback deleted it, or the whole format
        static_cast<LumUg::UDO &>(*block) = LumUg::UDO();
    else if (vetoed)
        removeBlock(block);
}

void TrFormatBase::addBlock(const boost::shared_ptr<TrBlockBase> &block)
{
    QELFMT_INFO << "Associating block to format.";
    attach(kBlocks.linkType, *block);
    QELFMT_INFO << "Done associating block to format.";
}

void TrFormatBase::removeBlock(boost::shared_ptr<TrBlockBase> &block)
{
    if (block->IsNull()) return;
    QELFMT_INFO << "Removing block " << block->GetBlockDefName();
    discard(kBlocks.linkType, *block);
}

void TrFormatBase::retainBlock(boost::shared_ptr<TrBlockBase> &block)
{
    detach(kBlocks.linkType, *block);
}

TrFormatBase::Blocks TrFormatBase::getBlocks() const { return children(kBlocks); }

bool TrFormatBase::hasBlock(const std::string &id) const
{
    const Blocks blocks = getBlocks();
    return std::any_of(blocks.begin(), blocks.end(),
                       [&](const auto &block) { return block->GetBlockDefName() == id; });
}

// Blocks that stand already are looked up by name once, not once for each id: formats with many
// required blocks are placed in proportion to their number. Only a callback may add or remove blocks
// meanwhile.
void TrFormatBase::addRequiredBlocks()
{
    QELFMT_INFO << "Making sure format has all required blocks";
    const bool askEachTime = !mAddBlockCB.empty();
    std::set<std::string> present;
    for (const auto &block : getBlocks()) present.insert(block->GetBlockDefName());
    for (const std::string &id : getDefinition()->GetRequiredBlockIds(true)) {
        if (!TrDefinitionFileManager::GetBlockDefinition(id)) {
            reportMissingRequiredBlock(id);
        } else if (!(askEachTime ? hasBlock(id) : present.contains(id))) {
            QELFMT_INFO << "Adding Required block: " << id;
            addBlock(id);
            present.insert(id);
            QELFMT_INFO << "Done adding required block: " << id;
        }
    }
    QELFMT_INFO << "Done adding required blocks to format";
}

bool TrFormatBase::isRequiredBlock(const std::string &id) const
{
    const boost::shared_ptr<TrFormatDefV1> def = getDefinition();
    if (def->IsNull()) return false;
    const std::vector<std::string> required = def->GetRequiredBlockIds(true);
    return std::find(required.begin(), required.end(), id) != required.end();
}

bool TrFormatBase::canDeleteBlock(const boost::shared_ptr<TrBlockDefV1> &def) const
{
    if (def->GetCanDelete() != 0) return true; // also for a required block
    return !isRequiredBlock(def->GetId());
}

TrFormatBase::Blocks TrFormatBase::removableBlocks() const
{
    Blocks removable;
    for (const auto &block : getBlocks()) {
        const boost::shared_ptr<TrBlockDefV1> def = block->GetDefinition();
        // A block that has lost its definition is judged by its name.
        if (def->IsNull() ? !isRequiredBlock(block->GetBlockDefName()) : canDeleteBlock(def))
            removable.push_back(block);
    }
    return removable;
}

void TrFormatBase::verifyBlockLocations()
{
    for (const auto &block : getBlocks()) block->move(nullptr);
}

void TrFormatBase::recreateNotes()
{
    for (const auto &block : getBlocks()) block->recreateNotes();
}
