#include "app/authoring/compare.h"

#include "app/authoring/record_text.h"
#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <map>

namespace app::authoring {

namespace {

using Records = std::vector<RecordTree>;

std::string inside(const std::string &where, const RecordTree &record)
{
    return where.empty() ? identityOf(record) : where + ", " + identityOf(record);
}

// Records with the same identity pair in order: the second one with the second one.
std::map<std::pair<std::string, int>, std::size_t> byIdentity(const Records &records)
{
    std::map<std::pair<std::string, int>, std::size_t> found;
    std::map<std::string, int> count;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::string identity = identityOf(records[i]);
        found[{identity, count[identity]++}] = i;
    }
    return found;
}

void compareSlots(const RecordTree &old, const RecordTree &fresh, const std::string &where,
                  std::vector<Difference> &found)
{
    if (old.kind != fresh.kind) {
        found.push_back({where, fmt::format("kind: {} -> {}", old.kind->word, fresh.kind->word)});
        return;
    }
    for (const SlotInfo &slot : fresh.kind->slots) {
        const std::string before = slotText(old, slot), after = slotText(fresh, slot);
        if (before != after)
            found.push_back({where, fmt::format("{}: {} -> {}", slot.key, before, after)});
    }
}

void compare(const Records &old, const Records &fresh, const std::string &where,
             std::vector<Difference> &found)
{
    const auto before = byIdentity(old), after = byIdentity(fresh);
    for (const auto &[identity, i] : before)
        if (!after.contains(identity)) found.push_back({inside(where, old[i]), "removed"});
    for (const auto &[identity, i] : after) {
        const auto known = before.find(identity);
        if (known == before.end()) {
            found.push_back({inside(where, fresh[i]), "added"});
            continue;
        }
        const RecordTree &was = old[known->second];
        const std::string here = inside(where, fresh[i]);
        compareSlots(was, fresh[i], here, found);
        if (was.kind == fresh[i].kind) compare(was.children, fresh[i].children, here, found);
    }
}

// Positions of a block's or a table's children of one kind.
void compareOrder(const RecordTree &old, const RecordTree &fresh, const std::string &word,
                  const std::string &where, std::vector<Difference> &found)
{
    const auto was = old.childrenOf(word), is = fresh.childrenOf(word);
    const auto position = [](const auto &list, const std::string &identity) {
        for (std::size_t i = 0; i < list.size(); ++i)
            if (identityOf(*list[i]) == identity) return i;
        return list.size();
    };
    for (std::size_t i = 0; i < was.size(); ++i)
        if (position(is, identityOf(*was[i])) == is.size())
            found.push_back({inside(where, *was[i]), "removed"});
    for (std::size_t i = 0; i < is.size(); ++i) {
        const std::size_t before = position(was, identityOf(*is[i]));
        if (before == was.size())
            found.push_back({inside(where, *is[i]), "added"});
        else if (before != i)
            found.push_back(
                {inside(where, *is[i]),
                 fmt::format("REORDERED: position {} -> {}; values of placed blocks would "
                             "stand in other cells: build with --keep-order-of",
                             before + 1, i + 1)});
    }
}

std::string placesOf(const RecordTree &record)
{
    std::string text;
    for (const RecordTree &child : record.children) {
        if (child.kind->word == "field" || child.kind->word == "table") continue;
        text += identityOf(child) + "(";
        for (const SlotInfo &slot : child.kind->slots) text += slotText(child, slot) + " ";
        text += placesOf(child) + ")";
    }
    return text;
}

} // namespace

std::vector<Difference> differences(const Records &old, const Records &fresh)
{
    std::vector<Difference> found;
    compare(old, fresh, "", found);
    return found;
}

std::vector<Difference> rollout(const Records &old, const Records &fresh)
{
    std::vector<Difference> found;
    const auto before = byIdentity(old), after = byIdentity(fresh);
    for (const auto &[identity, i] : before) {
        const auto known = after.find(identity);
        if (known == after.end()) {
            found.push_back({identityOf(old[i]), "removed: placed ones keep their own copy"});
            continue;
        }
        const RecordTree &was = old[i], &is = fresh[known->second];
        const std::string where = identityOf(is);
        if (was.kind->word != "block" || is.kind != was.kind) continue;
        compareOrder(was, is, "field", where, found);
        compareOrder(was, is, "table", where, found);
        if (placesOf(was) != placesOf(is))
            found.push_back({where, "moved: its places have changed"});
        for (const RecordTree *table : is.childrenOf("table"))
            for (const RecordTree *oldTable : was.childrenOf("table"))
                if (identityOf(*table) == identityOf(*oldTable))
                    compareOrder(*oldTable, *table, "field", inside(where, *table), found);
    }
    for (const auto &[identity, i] : after)
        if (!before.contains(identity)) found.push_back({identityOf(fresh[i]), "added"});
    return found;
}

} // namespace app::authoring
