#include "app/authoring/check_labels.h"

#include <fmt/format.h>

#include <algorithm>

namespace app::authoring {

namespace {

constexpr double kSame = 1e-6;

// Where a value of all its rows reaches up to.
double topOf(const RecordTree &field, int rows)
{
    const int site = field.integer("text_site");
    const double y = field.real("location_y"), margin = field.real("margin_height");
    if (site >= 1 && site <= 3) return y - margin;
    const double size = field.real("text_size");
    const double height = rows * size + (rows - 1) * size * field.real("line_space") * 0.5;
    return site >= 7 ? y + margin + height : y + margin + height / 2;
}

} // namespace

void checkLabel(const Field &text, const RecordTree &field, const std::string &where,
                TextRuler &ruler, Findings &findings)
{
    if (!text.label) return;
    const Label &label = *text.label;
    const TextExtent extent = ruler.measure({label.text}, {label.font, label.size});
    if (extent.width > label.width + kSame)
        findings.add(where, label.origin,
                     fmt::format("\"{}\" is {:.4g} wide, and {:.4g} are there: shorten it, or give "
                                 "it more room",
                                 label.text, extent.width, label.width));
    const int site = field.integer("text_site");
    const bool beside = site == 2 || site == 3; // at the upper right the label leaves it room
    const double top = topOf(field, text.rows);
    if (!label.bottom || beside || top <= *label.bottom + kSame) return;
    findings.add(where, label.origin,
                 fmt::format("\"{}\" runs into the value, which reaches {:.4g} too high with {} of "
                             "its lines: a higher cell, a smaller size or margin, or fewer rows",
                             label.text, top - *label.bottom, text.rows));
}

void checkHeading(const Table &text, const std::string &where, Findings &findings)
{
    const bool labelled = std::any_of(text.fields.begin(), text.fields.end(),
                                      [](const Field &field) { return field.label.has_value(); });
    if (labelled && text.heading > 0 && text.heading < text.headingLabels)
        findings.add(where, text.headingOrigin,
                     fmt::format("is {:.4g} high and its labels {:.4g}: make it higher",
                                 text.heading, text.headingLabels));
}

} // namespace app::authoring
