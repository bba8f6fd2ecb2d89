#include "app/field_fit.h"

#include "content/field.h"
#include "definitions/field_def.h"

#include "uf_drf.h"
#include "ug_displayable.hxx"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace app {

namespace {

constexpr double kTolerance = 1e-6;

struct Extent {
    double width = 0.0, height = 0.0;
};

// Along the sheet's edges, whichever way the text is turned.
Extent extentOf(tag_t note)
{
    int count = 0;
    UF_DRF_draft_aid_text_info_t *texts = nullptr;
    UgException::throwOnFailure(UF_DRF_ask_draft_aid_text_info(note, &count, &texts));
    Extent extent;
    for (int i = 0; i < count; ++i) {
        const double c = std::abs(std::cos(texts[i].angle));
        const double s = std::abs(std::sin(texts[i].angle));
        extent.width = std::max(extent.width, texts[i].length * c + texts[i].height * s);
        extent.height = std::max(extent.height, texts[i].length * s + texts[i].height * c);
    }
    UF_DRF_free_text(count, &texts);
    return extent;
}

// A text that starts at a margin has the rest of the cell; one in the middle has all of it.
double excess(double text, double cell, double margin, bool centred)
{
    if (cell <= 0.0) return 0.0;
    const double over = text - (centred ? cell : cell - margin);
    return over > kTolerance ? over : 0.0;
}

} // namespace

std::optional<Misfit> misfitOf(const TrFieldBase &field, CellHeight height)
{
    const UgDisplayableObject *note = field.GetNote();
    const TrFieldDefV1 definition = field.GetDefinition();
    if (!note || definition.IsNull()) return {};
    using Def = TrFieldDefV1;
    const LumUg::Record def(definition);
    const Extent text = extentOf(note->getTag());
    const int site = def.get(Def::kTextSite);
    Misfit found{def.get(Def::kWidth),
                 height == CellHeight::fixed ? def.get(Def::kHeight) : 0.0,
                 text.width,
                 text.height,
                 0.0,
                 0.0,
                 0};
    found.tooWide = excess(text.width, found.cellWidth, def.get(Def::kMarginWidth), site % 3 == 2);
    found.tooHigh =
        excess(text.height, found.cellHeight, def.get(Def::kMarginHeight), site >= 4 && site <= 6);
    if (def.get(Def::kMultiline) == 0)
        if (const std::size_t lines = field.GetNoteValue().size(); lines > 1) found.lines = lines;
    if (found.tooWide == 0.0 && found.tooHigh == 0.0 && found.lines == 0) return {};
    return found;
}

namespace {

std::string sizeExcess(const Misfit &misfit)
{
    std::string over;
    if (misfit.tooWide > 0.0) over = fmt::format("{:.2f} too wide", misfit.tooWide);
    if (misfit.tooHigh > 0.0)
        over += fmt::format("{}{:.2f} too high", over.empty() ? "" : " and ", misfit.tooHigh);
    const std::string cell =
        misfit.cellHeight > 0.0
            ? fmt::format(" of {:g} x {:g}", misfit.cellWidth, misfit.cellHeight)
            : fmt::format(", {:g} wide", misfit.cellWidth);
    return fmt::format("is {} for its cell{}", over, cell);
}

} // namespace

std::string excessOf(const Misfit &misfit)
{
    std::vector<std::string> excesses;
    if (misfit.lines > 0)
        excesses.push_back(fmt::format("has {} lines in a field of one line", misfit.lines));
    if (misfit.tooWide > 0.0 || misfit.tooHigh > 0.0) excesses.push_back(sizeExcess(misfit));
    return joined(excesses, " and ");
}

std::string describe(const Misfit &misfit)
{
    const char *remedy =
        misfit.lines > 0 ? "let its definition have several (rows in a cell, several-lines in a "
                           "column)"
                         : "give the cell more room in the definition";
    return fmt::format("the text {}: shorten it, or {}", excessOf(misfit), remedy);
}

Json toJson(const Misfit &misfit)
{
    return {{"cell", {misfit.cellWidth, misfit.cellHeight}},
            {"text", {misfit.textWidth, misfit.textHeight}},
            {"too_wide", misfit.tooWide},
            {"too_high", misfit.tooHigh},
            {"lines_too_many", misfit.lines > 0 ? misfit.lines - 1 : 0}};
}

} // namespace app
