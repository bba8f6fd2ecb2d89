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

std::vector<Attribute> &Session::attributesOf(Tag tag)
{
    if (Part *part = findPart(tag)) return part->attributes;
    return require(tag).attributes;
}

const std::string *Session::attribute(Tag tag, std::string_view title)
{
    for (const Attribute &attribute : attributesOf(tag))
        if (attribute.title == title) return &attribute.value;
    return nullptr;
}

void Session::setAttribute(Tag tag, const std::string &title, const std::string &value)
{
    host::require(!title.empty(), UF_err_bad_parameter_number_2);
    host::require(!strictLimits || title.size() <= UF_ATTR_MAX_TITLE_LEN,
                  UF_err_bad_parameter_number_2);
    host::require(!strictLimits || value.size() <= UF_ATTR_MAX_STRING_LEN,
                  UF_err_bad_parameter_number_3);
    auto &attributes = attributesOf(tag);
    const auto found =
        std::find_if(attributes.begin(), attributes.end(),
                     [&](const Attribute &attribute) { return attribute.title == title; });
    if (found != attributes.end() && found->value == value) return;
    if (Part *part = findPart(tag))
        changing(*part, "attribute");
    else
        changing(require(tag), "attribute");
    if (found == attributes.end())
        attributes.push_back({title, value});
    else
        found->value = value;
}

bool Session::removeAttribute(Tag tag, std::string_view title)
{
    auto &attributes = attributesOf(tag);
    const auto found =
        std::find_if(attributes.begin(), attributes.end(),
                     [&](const Attribute &attribute) { return attribute.title == title; });
    if (found == attributes.end()) return false;
    if (Part *part = findPart(tag))
        changing(*part, "attribute");
    else
        changing(require(tag), "attribute");
    attributes.erase(found);
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

// The text that "<W...>" stands for; null when it is no reference to an attribute, or one to an
// object that is not there.
const std::string *resolve(Session &session, const Part &part, std::string_view reference)
{
    static const std::string kNothing;
    Tag holder = part.tag;
    std::string_view title = reference.substr(1); // behind the "W"
    if (title.starts_with('!')) {
        const char *const end = title.data() + title.size();
        const auto number = std::from_chars(title.data() + 1, end, holder);
        if (number.ec != std::errc{} || number.ptr == end || *number.ptr != '@') return nullptr;
        if (!session.find(holder) && !session.findPart(holder)) return nullptr;
        title.remove_prefix(static_cast<std::size_t>(number.ptr - title.data()));
    }
    if (!title.starts_with('@')) return nullptr;
    title.remove_prefix(1);
    if (reference.starts_with("W!") && title.starts_with('?')) title.remove_prefix(1);
    if (title.empty()) return nullptr;
    const std::string *value = session.attribute(holder, title);
    return value ? value : &kNothing;
}

} // namespace

std::string Session::evaluated(const Part &part, const std::string &line)
{
    std::string result;
    const std::string_view text = line;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '$' && at + 1 < text.size()) { // a literal bracket
            result.append(text.substr(at, 2));
            at += 2;
            continue;
        }
        const std::size_t end =
            text.substr(at).starts_with("<W") ? text.find('>', at) : std::string_view::npos;
        const std::string *value = end == std::string_view::npos
                                       ? nullptr
                                       : resolve(*this, part, text.substr(at + 1, end - at - 1));
        if (value) {
            result.append(*value);
            at = end + 1;
        } else {
            result.push_back(text[at++]);
        }
    }
    return result;
}

} // namespace host
