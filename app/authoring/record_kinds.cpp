#include "app/authoring/record_kinds.h"

#include "definitions/block_def.h"
#include "definitions/block_location_v1.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"

#include <cctype>
#include <tuple>
#include <type_traits>

namespace app::authoring {

namespace {

using Words = std::vector<std::string>;

// What a list of children may hold: several generations of a class share a list.
template <class Child> Words wordsOf();
template <> Words wordsOf<TrFieldDefV1>() { return {"field"}; }
template <> Words wordsOf<TrTableDefV1>() { return {"table"}; }
template <> Words wordsOf<TrFormatSizeV1>() { return {"size"}; }
template <> Words wordsOf<QelFmt::BlockLocationBase>()
{
    return {"block_location", "block_location_v1"};
}
template <> Words wordsOf<QelFmt::SizeLocationBase>() { return {"size_location"}; }
template <> Words wordsOf<QelFmt::LocationBase>() { return {"location"}; }

SlotInfo infoOf(const LumUg::IntSlot &slot)
{
    return {snakeCase(slot.name), SlotShape::integer, slot.index, 1, ""};
}
SlotInfo infoOf(const LumUg::DoubleSlot &slot)
{
    return {snakeCase(slot.name), SlotShape::real, slot.index, 1, ""};
}
SlotInfo infoOf(const LumUg::StringSlot &slot)
{
    return {snakeCase(slot.name), SlotShape::text, slot.index, 1, ""};
}
SlotInfo infoOf(const LumUg::StringTail &slot)
{
    return {snakeCase(slot.name), SlotShape::texts, slot.index, 1, ""};
}
SlotInfo infoOf(const LumUg::DoubleFamily &slot)
{
    return {snakeCase(slot.name), SlotShape::reals, slot.first, slot.stride, ""};
}
SlotInfo infoOf(const LumUg::AttributeSlot &slot)
{
    return {snakeCase(slot.name), SlotShape::attribute, 0, 1, slot.title};
}

template <class Child> void addChildren(const LumUg::ChildList<Child> &, Words &words)
{
    for (std::string &word : wordsOf<Child>()) words.push_back(std::move(word));
}

template <class Definition> RecordKind kindOf(const char *word, const char *owner)
{
    RecordKind kind{word, Definition::className, owner, {}, &Definition::mUDOClass, {}};
    std::apply([&](const auto &...slot) { (kind.slots.push_back(infoOf(slot)), ...); },
               Definition::kLayout);
    if constexpr (requires { Definition::kChildren; })
        std::apply([&](const auto &...list) { (addChildren(list, kind.children), ...); },
                   Definition::kChildren);
    return kind;
}

} // namespace

const SlotInfo *RecordKind::slot(const std::string &key) const
{
    for (const SlotInfo &info : slots)
        if (info.key == key) return &info;
    return nullptr;
}

const SlotInfo *RecordKind::attribute(const std::string &title) const
{
    for (const SlotInfo &info : slots)
        if (info.shape == SlotShape::attribute && info.title == title) return &info;
    return nullptr;
}

const std::vector<RecordKind> &recordKinds()
{
    static const std::vector<RecordKind> kinds{
        kindOf<TrFormatDefV1>("format", "TrFormatDefV1"),
        kindOf<TrFormatSizeV1>("size", "TrFormatSizeV1"),
        kindOf<TrBlockDefV1>("block", "TrBlockDefV1"),
        kindOf<TrFieldDefV1>("field", "TrFieldDefV1"),
        kindOf<TrTableDefV1>("table", "TrTableDefV1"),
        kindOf<QelFmt::BlockLocationV2>("block_location", "BlockLocationV2"),
        kindOf<QelFmt::SizeLocationV1>("size_location", "SizeLocationV1"),
        kindOf<QelFmt::LocationV1>("location", "LocationV1"),
        kindOf<QelFmt::TrBlockLocationV1>("block_location_v1", "TrBlockLocationV1"),
    };
    return kinds;
}

const RecordKind *kindOfWord(const std::string &word)
{
    for (const RecordKind &kind : recordKinds())
        if (kind.word == word) return &kind;
    return nullptr;
}

const RecordKind *kindOfClass(const std::string &className)
{
    for (const RecordKind &kind : recordKinds())
        if (kind.className == className) return &kind;
    return nullptr;
}

std::string snakeCase(const std::string &accessor)
{
    std::string key;
    for (std::size_t i = 0; i < accessor.size(); ++i) {
        const auto c = static_cast<unsigned char>(accessor[i]);
        if (std::isupper(c) && i > 0) key += '_';
        key += static_cast<char>(std::tolower(c));
    }
    return key;
}

} // namespace app::authoring
