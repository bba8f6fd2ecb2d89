#include "app/authoring/fold.h"

#include "app/authoring/record_text.h"

#include <set>

namespace app::authoring {

namespace {

// Keys of the full form that the cell form uses for words of its own.
bool isWord(const RecordKind &kind, const std::string &key)
{
    static const std::map<std::string, std::set<std::string>> words{
        {"format", {"category", "description", "obsolete"}},
        {"size", {"description", "label"}},
        {"block", {"category", "description", "movable"}},
        {"table", {"direction"}},
        {"field", {"width"}}};
    const auto found = words.find(kind.word);
    return found != words.end() && found->second.contains(key);
}

bool isPattern(const std::string &key) { return key == "pattern_name" || key == "frame_name"; }

// All that keys of slots cannot set.
bool sameShape(const RecordTree &a, const RecordTree &b)
{
    const auto titles = [](const RecordTree &record) {
        std::vector<std::string> found;
        for (const auto &[title, value] : record.attributes) found.push_back(title);
        return found;
    };
    const auto kinds = [](const RecordTree &record) {
        std::vector<const RecordKind *> found;
        for (const RecordTree &child : record.children) found.push_back(child.kind);
        return found;
    };
    return a.kind == b.kind && a.layer == b.layer && a.name == b.name &&
           a.ints.size() == b.ints.size() && a.doubles.size() == b.doubles.size() &&
           titles(a) == titles(b) && kinds(a) == kinds(b);
}

bool refineSlots(Fold &fold, const RecordTree &back)
{
    bool changed = false;
    for (const SlotInfo &slot : fold.record->kind->slots) {
        const std::string wanted = slotText(*fold.record, slot);
        if (wanted == slotText(back, slot)) continue;
        changed = true;
        if (fold.record->kind->word == "size" && fold.plan == 0) { // none of the family after all
            fold.plan = 1;
            return true;
        }
        if (isPattern(slot.key) && fold.plan < kByName)
            ++fold.plan;
        else if (isWord(*fold.record->kind, slot.key) ||
                 !fold.slots.emplace(slot.key, wanted).second)
            fold.whole = true;
    }
    return changed;
}

} // namespace

Fold::Fold(const RecordTree &of) : record(&of)
{
    for (const RecordTree &child : of.children) children.emplace_back(child);
}

std::vector<Fold *> Fold::childrenOf(const std::string &word)
{
    std::vector<Fold *> found;
    for (Fold &child : children)
        if (child.record->kind->word == word) found.push_back(&child);
    return found;
}

bool refine(Fold &fold, const RecordTree &back)
{
    if (recordToText(*fold.record, 0) == recordToText(back, 0) || fold.whole) return false;
    const std::string &word = fold.record->kind->word;
    if (word == "block_location" || word == "block_location_v1" || !sameShape(*fold.record, back)) {
        fold.whole = true;
        return true;
    }
    bool changed = refineSlots(fold, back);
    for (std::size_t i = 0; i < fold.children.size(); ++i)
        changed = refine(fold.children[i], back.children[i]) || changed;
    if (!changed) fold.whole = true;
    return true;
}

} // namespace app::authoring
