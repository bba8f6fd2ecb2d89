#include "app/drift_slots.h"

#include "app/authoring/record_kinds.h"
#include "app/output.h"

#include "definitions/block_def.h"
#include "udo/udo.h"
#include "udo/udo_class.h"

#include "uf.h"
#include "uf_udobj.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <map>

namespace app {

namespace {

using authoring::RecordKind;
using authoring::SlotInfo;
using authoring::SlotShape;
using UdoPtr = boost::shared_ptr<LumUg::UDO>;

const RecordKind *kindOf(const LumUg::UDO &udo)
{
    char *name = nullptr;
    UgException::throwOnFailure(UF_UDOBJ_ask_udo_class_name(udo.tag(), &name));
    const RecordKind *kind = authoring::kindOfClass(name ? name : "");
    UF_free(name);
    return kind;
}

// What is not stored reads as zero or empty, as the accessors have it. Equal texts, equal slots: two
// numbers that are no number are the same here, or such a sheet could never become current.
std::string slotText(const LumUg::Record &record, const SlotInfo &slot)
{
    switch (slot.shape) {
    case SlotShape::integer:
        return std::to_string(record.get(LumUg::IntSlot{slot.index, ""}));
    case SlotShape::real:
        return numberText(record.get(LumUg::DoubleSlot{slot.index, ""}) + 0.0);
    case SlotShape::text:
        return record.get(LumUg::StringSlot{slot.index, ""});
    case SlotShape::texts:
        return joined(record.get(LumUg::StringTail{slot.index, ""}), "\n");
    case SlotShape::reals: {
        std::vector<std::string> numbers;
        for (std::size_t i = slot.index; i < record.doubles().size(); i += slot.stride)
            numbers.push_back(numberText(record.doubles()[i] + 0.0));
        return joined(numbers, " ");
    }
    case SlotShape::attribute:
        return record.get(LumUg::AttributeSlot{slot.title.c_str(), ""});
    }
    return {};
}

// Blocks that the site's settings exclude become stored ones in a copy: both sides are read with them.
std::string excludedBlocks(const LumUg::UDO &udo)
{
    return joined(TrBlockDefV1(udo.GetUdoObject()).GetExcludeBlockIds(false), "\n");
}

std::string slotText(const LumUg::UDO &udo, const LumUg::Record &record, const RecordKind &kind,
                     const SlotInfo &slot)
{
    if (kind.word == "block" && slot.key == "exclude_block_ids") return excludedBlocks(udo);
    return slotText(record, slot);
}

std::string keyOf(const LumUg::UDO &udo, const RecordKind &kind)
{
    const LumUg::Record record(udo);
    for (const char *key : {"id", "format_id", "size_id", "name"})
        if (const SlotInfo *slot = kind.slot(key)) return slotText(record, *slot);
    return {};
}

struct Owned {
    UdoPtr record;
    std::string label; // "field NAME"; with " (2)" for a second one of that name
};

std::vector<Owned> ownedBy(const LumUg::UDO &udo)
{
    std::vector<Owned> owned;
    std::map<std::string, int> seen;
    for (const UgTypedObject *object : udo.GetLinks(LumUg::kChildLink)) {
        const UdoPtr record = LumUg::UDO::Create(object);
        const RecordKind *kind = record ? kindOf(*record) : nullptr;
        if (!kind) continue;
        std::string label = kind->word + " " + keyOf(*record, *kind);
        if (const int count = ++seen[label]; count > 1) label += fmt::format(" ({})", count);
        owned.push_back({record, label});
    }
    return owned;
}

const Owned *find(const std::vector<Owned> &owned, const std::string &label)
{
    for (const Owned &one : owned)
        if (one.label == label) return &one;
    return nullptr;
}

std::string within(const std::string &where, const std::string &label)
{
    return where.empty() ? label : where + ", " + label;
}

void compareSlots(const LumUg::UDO &stored, const LumUg::UDO &disk, const std::string &where,
                  Differences &found)
{
    const RecordKind *kind = kindOf(disk);
    if (!kind) return;
    const LumUg::Record mine(stored), theirs(disk);
    for (const SlotInfo &slot : kind->slots) {
        const std::string before = slotText(stored, mine, *kind, slot);
        const std::string after = slotText(disk, theirs, *kind, slot);
        if (before != after) found.push_back({where, slot.key, before, after});
    }
}

// Fields and places count in their order; lists that differ in what they hold are not also called
// reordered.
void compareOrder(const std::vector<Owned> &stored, const std::vector<Owned> &disk,
                  const std::string &where, Differences &found)
{
    std::vector<std::string> before, after;
    for (const Owned &one : stored)
        if (find(disk, one.label)) before.push_back(one.label);
    for (const Owned &one : disk)
        if (find(stored, one.label)) after.push_back(one.label);
    const auto ofKind = [](const std::vector<std::string> &labels, const std::string &word) {
        std::vector<std::string> some;
        for (const std::string &label : labels)
            if (label.starts_with(word + " ")) some.push_back(label);
        return some;
    };
    for (const RecordKind &kind : authoring::recordKinds()) {
        const auto mine = ofKind(before, kind.word), theirs = ofKind(after, kind.word);
        if (mine != theirs)
            found.push_back({where, "order", joined(mine, ", "), joined(theirs, ", ")});
    }
}

void compare(const LumUg::UDO &stored, const LumUg::UDO &disk, const std::string &where,
             Differences &found)
{
    compareSlots(stored, disk, where, found);
    const auto mine = ownedBy(stored), theirs = ownedBy(disk);
    for (const Owned &one : mine) {
        if (const Owned *other = find(theirs, one.label))
            compare(*one.record, *other->record, within(where, one.label), found);
        else
            found.push_back({within(where, one.label), "record", "present", "absent"});
    }
    for (const Owned &one : theirs)
        if (!find(mine, one.label))
            found.push_back({within(where, one.label), "record", "absent", "present"});
    compareOrder(mine, theirs, where, found);
}

} // namespace

std::string numberText(double value) { return fmt::format("{}", value); }

Differences compareDefinitions(const LumUg::UDO &stored, const LumUg::UDO &disk)
{
    Differences found;
    compare(stored, disk, "", found);
    return found;
}

} // namespace app
