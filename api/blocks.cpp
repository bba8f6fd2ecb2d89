// Blocks of formats.
#include "api/guard.h"
#include "api/lookup.h"
#include "api/trv_fmt.h"
#include "api/values.h"

#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "foundation/log.h"

#include <stdexcept>

namespace {

using namespace QelFmt::api;

void addBlock(unsigned tag, const std::string &id)
{
    findDrawing(tag);
    QELFMT_INFO << "Finding the format on drawing " << tag;
    const auto format = findFormat(tag);
    QELFMT_INFO << "Getting block definition for " << id;
    if (!TrDefinitionFileManager::GetBlockDefinition(id))
        throw std::runtime_error("No block with ID " + id);
    QELFMT_INFO << "Now adding the block " << id;
    format->addBlock(id);
}

void deleteBlock(unsigned tag, const std::string &id)
{
    const auto format = findFormat(tag);
    if (auto block = firstBlock(*format, id)) format->removeBlock(block);
}

void moveBlock(unsigned tag, const std::string &id, const double *position)
{
    const auto format = findFormat(tag);
    if (const auto block = firstBlock(*format, id)) block->locateBlock(position);
}

void askBlocks(unsigned tag, TRV_FMT_value_list_t *blocks)
{
    findDrawing(tag);
    requireArgument(blocks);
    clear(*blocks);
    std::vector<std::string> ids;
    for (const auto &block : findFormat(tag)->getBlocks()) ids.push_back(block->GetBlockDefName());
    fill(*blocks, ids);
}

} // namespace

extern "C" int TRV_FMT_add_block(unsigned drawing, const char *block_id)
{
    return guarded([&] { addBlock(drawing, text(block_id)); });
}

extern "C" int TRV_FMT_delete_block(unsigned drawing, const char *block_id)
{
    return guarded([&] { deleteBlock(drawing, text(block_id)); });
}

extern "C" int QEL_FMT_move_block(unsigned drawing, const char *block_id, const double *position)
{
    return guarded([&] { moveBlock(drawing, text(block_id), position); });
}

extern "C" int TRV_FMT_ask_blocks_on_drawing(unsigned drawing, TRV_FMT_value_list_t *blocks)
{
    return guarded([&] { askBlocks(drawing, blocks); });
}
