#include "api/lookup.h"

#include "api/guard.h"

#include <stdexcept>

namespace QelFmt::api {

boost::shared_ptr<TrDrawing> findDrawing(unsigned tag)
{
    if (tag == 0) throw std::runtime_error("Invalid drawing");
    return TrDrawing::getDrawing(tag);
}

boost::shared_ptr<TrFormatBase> findFormat(unsigned tag)
{
    const auto drawing = findDrawing(tag);
    if (!drawing->hasFormat()) throw std::runtime_error("No format found on drawing");
    return drawing->format();
}

boost::shared_ptr<TrBlockBase> firstBlock(const TrFormatBase &format, const std::string &id)
{
    for (const auto &block : format.getBlocks())
        if (block->GetBlockDefName() == id) return block;
    return {};
}

boost::shared_ptr<TrBlockBase> findBlock(unsigned tag, const char *block_id)
{
    const std::string id = text(block_id);
    if (auto block = firstBlock(*findFormat(tag), id)) return block;
    throw std::runtime_error("No block with ID " + id + " on format.");
}

boost::shared_ptr<TrFieldBase> findField(unsigned tag, const char *block_id, const char *field_id)
{
    const std::string id = text(field_id);
    for (const auto &field : findBlock(tag, block_id)->getFields())
        if (field->GetFieldDefName() == id) return field;
    throw std::runtime_error("No field with ID " + id + " on block.");
}

boost::shared_ptr<TrTableBase> findTable(unsigned tag, const char *block_id, const char *table_id)
{
    const std::string id = text(table_id);
    for (const auto &table : findBlock(tag, block_id)->getTables())
        if (table->GetTableDefName() == id) return table;
    throw std::runtime_error("No table with ID " + id + " on block.");
}

FoundEntry findEntry(unsigned tag, const char *block_id, const char *table_id, int index)
{
    const auto table = findTable(tag, block_id, table_id);
    // A negative index is a large unsigned one.
    const auto wanted = static_cast<unsigned>(index);
    if (wanted >= table->entryCount())
        throw std::runtime_error("Wanted entry is greater then table has.");
    return {table, table->entry(wanted)};
}

boost::shared_ptr<TrFieldBase> findFieldOf(TrEntryBase &entry, const char *field_id,
                                           const char *where)
{
    const std::string id = text(field_id);
    for (const auto &field : entry.getFields())
        if (field->GetFieldDefName() == id) return field;
    throw std::runtime_error("No field with ID " + id + " on " + where + ".");
}

} // namespace QelFmt::api
