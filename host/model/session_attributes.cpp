// Attributes, fonts and texts.
#include "session_inner.h"

#include "calls.h"
#include "uf.h"
#include "uf_attr.h"
#include "uf_drf.h"

#include <algorithm>
#include <charconv>

namespace host {

// --- attributes ---------------------------------------------------------------------------------

const Attributes &Session::attributesOf(Tag tag)
{
    if (const Part *part = findPart(tag)) return part->attributes;
    return require(tag).attributes;
}

const std::string *Session::attribute(Tag tag, std::string_view title)
{
    const Attributes &attributes = attributesOf(tag);
    const std::size_t place = attributes.find(title);
    return place == Attributes::kNone ? nullptr : &attributes[place].value;
}

namespace {

// Marks the object or the part as changed; what may then be changed.
Attributes &changing(Session &session, Tag tag)
{
    if (Part *part = session.findPart(tag)) {
        session.changing(*part, "attribute");
        return part->attributes;
    }
    Object &object = session.require(tag);
    session.changing(object, "attribute");
    return object.attributes;
}

} // namespace

void Session::setAttribute(Tag tag, const std::string &title, const std::string &value)
{
    host::require(!title.empty(), UF_err_bad_parameter_number_2);
    host::require(!strictLimits || title.size() <= UF_ATTR_MAX_TITLE_LEN,
                  UF_err_bad_parameter_number_2);
    host::require(!strictLimits || value.size() <= UF_ATTR_MAX_STRING_LEN,
                  UF_err_bad_parameter_number_3);
    const Attributes &there = attributesOf(tag);
    const std::size_t place = there.find(title);
    if (place == Attributes::kNone)
        host::changing(*this, tag).add({title, value});
    else if (there[place].value != value)
        host::changing(*this, tag).setValue(place, value);
}

bool Session::removeAttribute(Tag tag, std::string_view title)
{
    const std::size_t place = attributesOf(tag).find(title);
    if (place == Attributes::kNone) return false;
    host::changing(*this, tag).remove(place);
    return true;
}

// --- fonts --------------------------------------------------------------------------------------

namespace {

// What an installation of the platform brings along.
constexpr std::string_view kKnownFonts[] = {"blockfont", "standard", "leroy",
                                            "helios",    "romand",   "osifont"};
constexpr std::size_t kMaxFontName = 16;

} // namespace

int Session::addFont(Part &part, const std::string &name)
{
    Object &table = require(part.fontTable);
    auto &names = table.as<FontTable>()->names;
    const auto known = std::find(names.begin(), names.end(), name);
    if (known != names.end()) return static_cast<int>(known - names.begin()) + 1;
    host::require(!name.empty() && name.size() <= kMaxFontName, UF_err_bad_parameter_number_3);
    host::require(!rejectUnknownFonts || std::find(std::begin(kKnownFonts), std::end(kKnownFonts),
                                                   name) != std::end(kKnownFonts),
                  UF_err_unknown_font);
    changing(table, "fonts");
    const auto freeSlot = std::find(names.begin(), names.end(), std::string());
    const auto index = static_cast<int>(freeSlot - names.begin()) + 1;
    if (freeSlot == names.end())
        names.push_back(name);
    else
        *freeSlot = name;
    return index;
}

// --- evaluated text -----------------------------------------------------------------------------

namespace {

// What a missing attribute stands for.
const std::string &nothing()
{
    static const std::string text;
    return text;
}

} // namespace

std::optional<AttributeReference> attributeReference(std::string_view reference)
{
    AttributeReference parsed;
    std::string_view title = reference.substr(1); // behind the "W"
    if (title.starts_with('!')) {
        const char *const end = title.data() + title.size();
        const auto number = std::from_chars(title.data() + 1, end, parsed.holder);
        if (number.ec != std::errc{} || number.ptr == end || *number.ptr != '@')
            return std::nullopt;
        title.remove_prefix(static_cast<std::size_t>(number.ptr - title.data()));
        parsed.ofObject = true;
    }
    if (!title.starts_with('@')) return std::nullopt;
    title.remove_prefix(1);
    if (parsed.ofObject && title.starts_with('?')) title.remove_prefix(1);
    if (title.empty()) return std::nullopt;
    parsed.title = title;
    return parsed;
}

std::string Session::evaluated(const Part &part, const std::string &line)
{
    return evaluated(line, [&](std::string_view text) -> const std::string * {
        const auto reference = attributeReference(text);
        if (!reference) return nullptr;
        const Tag holder = reference->ofObject ? reference->holder : part.tag;
        if (!find(holder) && !findPart(holder)) return nullptr;
        const std::string *value = attribute(holder, reference->title);
        return value ? value : &nothing();
    });
}

std::string Session::evaluated(const std::string &line, const Resolve &resolve)
{
    std::string result;
    const std::string_view text = line;
    std::size_t close = 0; // the next ">", looked for once
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '$' && at + 1 < text.size()) { // a literal bracket
            result.append(text.substr(at, 2));
            at += 2;
            continue;
        }
        const std::string *value = nullptr;
        if (text.substr(at).starts_with("<W")) {
            if (close <= at) close = text.find('>', at);
            if (close != std::string_view::npos)
                value = resolve(text.substr(at + 1, close - at - 1));
        }
        if (value) {
            result.append(*value);
            at = close + 1;
        } else {
            result.push_back(text[at++]);
        }
    }
    return result;
}

} // namespace host
