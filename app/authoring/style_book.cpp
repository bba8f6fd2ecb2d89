#include "app/authoring/style_book.h"

#include "app/authoring/words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace app::authoring {

namespace {

int columnOf(int site) { return (site - 1) % 3; }

bool same(const Style &a, const Style &b, bool column)
{
    return a.size == b.size && a.font == b.font && a.marginWidth == b.marginWidth &&
           a.aspect == b.aspect && a.lineSpace == b.lineSpace && a.color == b.color &&
           a.tooLong == b.tooLong &&
           (column ? columnOf(a.site) == columnOf(b.site)
                   : a.site == b.site && a.marginHeight == b.marginHeight);
}

std::string wordOf(TooLong choice)
{
    return choice == TooLong::narrow ? "narrow" : choice == TooLong::smaller ? "smaller" : "report";
}

// The keys in which a style differs from the one that it is like.
void putDifferences(const Style &style, const Style &like, FlowMapping &keys)
{
    if (style.size != like.size) keys.putNumber("size", style.size);
    if (style.font != like.font) keys.putText("font", style.font);
    if (style.site != like.site) keys.put("at", *wordOf(kSites, style.site));
    if (style.marginWidth != like.marginWidth || style.marginHeight != like.marginHeight)
        keys.put("margin", flowList({style.marginWidth, style.marginHeight}));
    if (style.aspect != like.aspect) keys.putNumber("aspect", style.aspect);
    if (style.lineSpace != like.lineSpace) keys.putNumber("line-space", style.lineSpace);
    if (style.color != like.color) keys.put("color", std::to_string(style.color));
    if (style.tooLong != like.tooLong) keys.put("too-long", wordOf(style.tooLong));
}

} // namespace

Style styleOf(const RecordTree &field, int units, bool column)
{
    Style style = plainStyle(units);
    const auto positive = [&](const char *key, double &target) {
        if (field.real(key) > 0 && std::isfinite(field.real(key))) target = field.real(key);
    };
    positive("text_size", style.size);
    positive("text_aspect", style.aspect);
    positive("line_space", style.lineSpace);
    style.font = field.text("text_font_name");
    style.color = field.integer("text_color");
    if (wordOf(kSites, field.integer("text_site"))) style.site = field.integer("text_site");
    if (std::isfinite(field.real("margin_width"))) style.marginWidth = field.real("margin_width");
    if (std::isfinite(field.real("margin_height")))
        style.marginHeight = field.real("margin_height");
    if (column) { // as plain as can be, so that columns and cells share styles
        style.site = 7 + columnOf(style.site);
        style.marginHeight = plainStyle(units).marginHeight;
    }
    const int most = capacity(field.real("width"), style);
    if (field.integer("alt_text_aspect_num_chars") == most &&
        field.real("alt_text_aspect") == style.narrowAspect * style.aspect)
        style.tooLong = TooLong::narrow;
    else if (field.integer("alt_text_size_num_chars") == most &&
             field.real("alt_text_size") == smallerSize(style))
        style.tooLong = TooLong::smaller;
    return style;
}

StyleBook::StyleBook(const std::vector<Style> &styles, int units) : m_units(units)
{
    std::vector<std::pair<Style, int>> counted;
    for (const Style &style : styles) {
        const auto known = std::find_if(counted.begin(), counted.end(), [&](const auto &one) {
            return same(one.first, style, false);
        });
        if (known == counted.end())
            counted.emplace_back(style, 1);
        else
            ++known->second;
    }
    std::stable_sort(counted.begin(), counted.end(),
                     [](const auto &a, const auto &b) { return a.second > b.second; });
    m_named.emplace_back("value", counted.empty() ? plainStyle(units) : counted.front().first);
    for (std::size_t i = 1; i < counted.size(); ++i)
        if (counted[i].second > 1)
            m_named.emplace_back(fmt::format("style-{}", i + 1), counted[i].first);
}

const Style *StyleBook::named(const Style &style, bool column, std::string &name) const
{
    for (const auto &[word, one] : m_named) {
        if (!same(one, style, column)) continue;
        name = word;
        return &one;
    }
    return nullptr;
}

void StyleBook::describe(const Style &style, bool column, FlowMapping &keys) const
{
    std::string name;
    if (!named(style, column, name)) {
        Style like = m_named.front().second;
        if (column && columnOf(style.site) == columnOf(like.site)) like.site = style.site;
        if (column && style.marginWidth == like.marginWidth) like.marginHeight = style.marginHeight;
        putDifferences(style, like, keys);
    } else if (name != "value") {
        keys.putText("style", name);
    }
}

std::string StyleBook::text() const
{
    std::string text = "styles:\n";
    for (const auto &[name, style] : m_named) {
        FlowMapping keys;
        const bool first = &style == &m_named.front().second;
        if (!first) keys.putText("like", "value");
        putDifferences(style, first ? plainStyle(m_units) : m_named.front().second, keys);
        text += fmt::format("  {}: {}\n", name, keys.text());
    }
    return text;
}

} // namespace app::authoring
