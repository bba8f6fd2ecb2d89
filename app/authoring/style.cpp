#include "app/authoring/style.h"

#include "app/authoring/words.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

namespace app::authoring {

namespace {

constexpr double kLetterWidth = 0.8; // of the height, with the gap to the next letter

void readTooLong(Mapping &mapping, Style &style)
{
    const auto choice = mapping.word("too-long", {{"report", static_cast<int>(TooLong::report)},
                                                  {"narrow", static_cast<int>(TooLong::narrow)},
                                                  {"smaller", static_cast<int>(TooLong::smaller)}});
    if (choice) style.tooLong = static_cast<TooLong>(*choice);
}

// Which slots of a field each key decides.
struct StyleKey {
    const char *key;
    std::initializer_list<const char *> slots;
};
const StyleKey kStyleKeys[] = {
    {"size", {"text_size"}},
    {"aspect", {"text_aspect"}},
    {"line-space", {"line_space"}},
    {"font", {"text_font_name"}},
    {"color", {"text_color", "border_color"}},
    {"at", {"text_site", "text_justification"}},
    {"margin", {"margin_width", "margin_height"}},
    {"too-long",
     {"alt_text_size", "alt_text_size_num_chars", "alt_text_aspect", "alt_text_aspect_num_chars"}}};

void positive(Mapping &mapping, const std::string &key, double &target)
{
    const auto value = mapping.number(key);
    if (!value) return;
    if (*value > 0)
        target = *value;
    else
        mapping.complain(key, "must be greater than 0");
}

} // namespace

void readStyle(Mapping &mapping, Style &style)
{
    positive(mapping, "size", style.size);
    positive(mapping, "aspect", style.aspect);
    positive(mapping, "line-space", style.lineSpace);
    if (const auto font = mapping.text("font")) style.font = *font;
    if (const auto color = mapping.integer("color")) style.color = *color;
    if (const auto site = mapping.word("at", kSites)) style.site = *site;
    if (const auto margin = mapping.numbers("margin", 1, 2)) {
        style.marginWidth = margin->front();
        style.marginHeight = margin->back();
    }
    readTooLong(mapping, style);
    for (const auto &[key, slots] : kStyleKeys)
        for (const char *slot : slots)
            if (mapping.has(key)) style.origins[slot] = mapping.origin(key);
}

Style plainStyle(int units)
{
    Style style;
    style.units = units;
    if (units == 2) {
        style.size = 0.12;
        style.marginWidth = style.marginHeight = 0.04;
    }
    return style;
}

Styles readStyles(YamlFile &file, const YAML::Node &node, int units)
{
    Styles styles;
    if (!node.IsDefined()) return styles;
    Mapping all(file, node, "styles");
    for (const auto &[name, value] : all.entries()) {
        Mapping mapping(file, value, "style " + name);
        Style style = plainStyle(units);
        if (const auto like = mapping.text("like")) {
            const auto base = styles.find(*like);
            if (base != styles.end())
                style = base->second;
            else
                mapping.complain("like",
                                 fmt::format("no style \"{}\" stands above this one", *like));
        }
        readStyle(mapping, style);
        styles[name] = style;
    }
    return styles;
}

double smallerSize(const Style &style)
{
    constexpr std::array metric{20.0, 14.0, 10.0, 7.0, 5.0, 3.5, 2.5, 1.8}; // ISO 3098
    constexpr std::array inches{0.5, 0.375, 0.24, 0.18, 0.12, 0.1, 0.08, 0.065};
    for (const double height : style.units == 2 ? inches : metric)
        if (height < style.size - 1e-9) return height;
    return style.size;
}

int capacity(double cellWidth, const Style &style)
{
    const double room = cellWidth - 2 * style.marginWidth;
    const int letters =
        static_cast<int>(std::floor(room / (kLetterWidth * style.size * style.aspect)));
    return letters > 0 ? letters : 1;
}

} // namespace app::authoring
