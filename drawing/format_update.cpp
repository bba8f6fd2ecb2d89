// A format against the definition on disk, and the conversion of older generations.
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/block.h"
#include "drawing/block_not_exist.h"
#include "drawing/format.h"
#include "drawing/owned_patterns.h"
#include "drawing/timer.h"
#include "foundation/log.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <typeinfo>

// --- against the definition on disk -----------------------------------------------------------------

bool TrFormatBase::checkDefinition()
{
    if (IsNull()) return false;
    const auto stored = getDefinition();
    if (stored->IsNull()) return false; // nothing to look up
    const auto disk = TrDefinitionFileManager::GetFormatDefinition(stored->GetId());
    if (!disk) return false;
    if (!(*stored == *disk)) return true;
    const Blocks blocks = getBlocks();
    return std::any_of(blocks.begin(), blocks.end(),
                       [](const auto &block) { return block->checkDefinition(); });
}

void TrFormatBase::updateDefinition()
{
    const std::string name = GetFormatDefName();
    QELFMT_INFO << "updating format " << name;
    const auto disk = TrDefinitionFileManager::GetFormatDefinition(name);
    if (!disk)
        throw std::runtime_error("Definition for format ID(" + name + ") was not found on disk.\n" +
                                 "Unable to update format.");
    Timer timer;
    followDefinition(*disk);
    QELFMT_INFO << "Updating block definitions on format " << name;
    for (const auto &block : getBlocks()) {
        try {
            block->updateDefinition();
        } catch (const TrBlockNotExist &) { // stays as it stands
        }
    }
    std::cout << "Format update took " << timer.end() / 60.0 << " mins." << std::endl;
}

void TrFormatBase::followDefinition(const TrFormatDefV1 &disk)
{
    const auto stored = getDefinition();
    if (!stored->IsNull() && *stored == disk) return;
    const boost::shared_ptr<TrFormatDefV1> copy(new TrFormatDefV1);
    copy->Clone(disk);
    setDefinition(copy);
    // A size that the new definition no longer has leaves the sheet its frame.
    if (!currentSize().IsNull()) updatePattern();
}

// --- older generations ---------------------------------------------------------------------------------

boost::shared_ptr<TrFormatBase> TrFormatBase::checkAndUpgrade()
{
    boost::shared_ptr<TrFormatBase> fresh;
    if (!dynamic_cast<TrFormatV1 *>(this)) {
        std::cout << typeid(*this).name() << std::endl;
        QELFMT_INFO << "UDO that is not a TrFormatV1 UDO found "
                    << "associated with drawing. Converting...";
        fresh = upgrade();
    }
    TrFormatBase &current = fresh ? *fresh : *this;
    // Converted blocks have no definition yet.
    if (current.upgradeBlocks()) current.updateDefinition();
    return fresh;
}

bool TrFormatBase::upgradeBlocks()
{
    bool replaced = false;
    for (const auto &block : getBlocks()) {
        const boost::shared_ptr<TrBlockBase> fresh = block->checkAndUpgrade();
        if (!fresh || fresh->tag() == block->tag()) continue;
        replaceBlock(*block, *fresh);
        replaced = true;
    }
    return replaced;
}

// The new block takes the old one's place, so that the order of blocks stays.
void TrFormatBase::replaceBlock(TrBlockBase &old, const TrBlockBase &fresh)
{
    QELFMT_INFO << "Associating block to format.";
    exchange(TrFormatV1::kBlocks.linkType, old, fresh);
    QELFMT_INFO << "Done associating block to format.";
    QELFMT_INFO << "Removing block " << old.GetBlockDefName();
    old.DeleteUDO();
}

boost::shared_ptr<TrFormatBase> TrFormatBase::upgrade()
{
    const boost::shared_ptr<TrFormatV1> fresh(new TrFormatV1);
    fresh->SetFormatDefName(GetFormatDefName());
    fresh->SetSizeName(GetSizeName());
    fresh->SetDrawing(GetDrawing());
    handOverPatterns(*this, *fresh);

    const boost::shared_ptr<TrFormatDefV1> def = retainDefinition();
    if (!def->IsNull())
        fresh->setDefinition(def);
    else
        fresh->updateDefinition();

    for (boost::shared_ptr<TrBlockBase> &block : getBlocks()) {
        retainBlock(block);
        fresh->addBlock(block);
    }
    return fresh;
}
