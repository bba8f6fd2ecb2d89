#include "app/update_values.h"

#include "app/output.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "drawing/block.h"
#include "drawing/format.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

namespace app {

namespace {

using Lines = std::vector<std::string>;

using Key = std::pair<std::size_t, std::string>; // the place of the block, which an update keeps

Key keyOf(const ShownValue &value) { return {value.blockIndex, value.field}; }

template <class Fields>
void addValues(std::size_t index, const std::string &block, const Fields &fields,
               const std::string &before, std::vector<ShownValue> &values)
{
    std::map<std::string, int> seen;
    for (const auto &field : fields) {
        const std::string name = before + field->GetFieldDefName();
        const int count = seen[name]++;
        values.push_back({index, block, count ? fmt::format("{} ({})", name, count + 1) : name,
                          field->GetValue()});
    }
}

bool saysSomething(const Lines &lines)
{
    return std::any_of(lines.begin(), lines.end(), [](const auto &line) { return !line.empty(); });
}

} // namespace

std::string nameOf(ValueChangeKind kind)
{
    switch (kind) {
    case ValueChangeKind::added:
        return "added";
    case ValueChangeKind::lost:
        return "lost";
    case ValueChangeKind::recomputed:
        break;
    }
    return "recomputed";
}

std::vector<ShownValue> valuesOn(const TrFormatBase &format)
{
    std::vector<ShownValue> values;
    std::size_t index = 0;
    for (const auto &block : format.getBlocks()) {
        const std::string id = block->GetBlockDefName();
        addValues(index, id, block->getFields(), "", values);
        for (const auto &table : block->getTables()) {
            int row = 0;
            for (const auto &entry : table->getEntries())
                addValues(index, id, entry->getFields(),
                          fmt::format("{}[{}].", table->GetTableDefName(), row++), values);
        }
        ++index;
    }
    return values;
}

std::vector<ValueChange> changesBetween(const std::vector<ShownValue> &before,
                                        const std::vector<ShownValue> &after)
{
    std::map<Key, const ShownValue *> old, now;
    for (const ShownValue &value : before) old.emplace(keyOf(value), &value);
    for (const ShownValue &value : after) now.emplace(keyOf(value), &value);
    std::vector<ValueChange> found;
    for (const ShownValue &was : before) {
        const auto still = now.find(keyOf(was));
        if (still == now.end()) {
            if (saysSomething(was.lines))
                found.push_back({was.block, was.field, ValueChangeKind::lost, was.lines, {}});
        } else if (still->second->lines != was.lines) {
            found.push_back({was.block, was.field, ValueChangeKind::recomputed, was.lines,
                             still->second->lines});
        }
    }
    for (const ShownValue &is : after)
        if (!old.contains(keyOf(is)))
            found.push_back({is.block, is.field, ValueChangeKind::added, {}, is.lines});
    return found;
}

std::vector<std::string> lossesOf(const std::vector<ValueChange> &changes)
{
    std::vector<std::string> losses;
    for (const ValueChange &value : changes)
        if (value.kind == ValueChangeKind::lost)
            losses.push_back(
                fmt::format("{}.{} = {}", value.block, value.field, joined(value.before, " | ")));
    return losses;
}

} // namespace app
