// A PDF of one page a sheet.
#include "display/render.h"

#include <algorithm>
#include <cmath>

#include "display/deflate.h"
#include "display/numbers.h"
#include "display/pdf_file.h"
#include "display/pdf_painter.h"

namespace host::display {

namespace {

constexpr double kPointsPerMillimetre = 72.0 / 25.4;

// A page may measure 14400 units; a longer one gets bigger units.
double userUnit(const DisplayList &list)
{
    constexpr double most = 14400.0;
    return std::max(1.0,
                    std::ceil(std::max(list.width, list.height) * kPointsPerMillimetre / most));
}

// All boxes are the sheet: nothing is cropped, trimmed or bled.
std::string boxes(const DisplayList &list)
{
    const double scale = kPointsPerMillimetre / userUnit(list);
    std::string box = "[0 0 ";
    appendNumber(box, list.width * scale, 4);
    box += ' ';
    appendNumber(box, list.height * scale, 4);
    box += ']';
    std::string entries;
    for (const char *name : {"/MediaBox", "/CropBox", "/BleedBox", "/TrimBox", "/ArtBox"})
        entries.append(name).append(box);
    if (userUnit(list) > 1.0) {
        entries += "/UserUnit ";
        appendNumber(entries, userUnit(list));
    }
    return entries;
}

// With several sheets the reader's side bar lists them by name.
std::string outlines(const std::vector<DisplayList> &pages, const std::vector<int> &ids,
                     PdfFile &file)
{
    if (pages.size() < 2) return {};
    const int root = file.reserve();
    std::vector<int> items;
    for (std::size_t i = 0; i < pages.size(); ++i) items.push_back(file.reserve());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        std::string item = "<</Title" + pdfText(pages[i].sheet) + "/Parent " + reference(root);
        if (i > 0) item += "/Prev " + reference(items[i - 1]);
        if (i + 1 < items.size()) item += "/Next " + reference(items[i + 1]);
        file.put(items[i], item + "/Dest[" + reference(ids[i]) + "/Fit]>>");
    }
    file.put(root, "<</Type/Outlines/First " + reference(items.front()) + "/Last " +
                       reference(items.back()) + "/Count " + std::to_string(items.size()) + ">>");
    return "/Outlines " + reference(root) + "/PageMode/UseOutlines";
}

std::string information(const RenderOptions &options)
{
    std::string info = "<<";
    const auto entry = [&](const char *name, const std::string &value) {
        if (!value.empty()) info += name + pdfText(value);
    };
    entry("/Title", options.title);
    entry("/Author", options.author);
    entry("/Subject", options.subject);
    entry("/Keywords", options.keywords);
    entry("/Producer", "qelfmt");
    if (options.creationDate) info += "/CreationDate" + pdfDate(*options.creationDate);
    return info + ">>";
}

} // namespace

std::string pdfOf(const std::vector<DisplayList> &lists, const RenderOptions &options,
                  RenderResult *result)
{
    if (lists.empty())
        throw RenderError("There is no sheet to render; a PDF needs at least one page.");
    Shaper shaper;
    std::vector<Page> pages;
    for (const DisplayList &list : lists) pages.push_back(shaped(list, shaper));
    if (result) result->substitutions = shaper.substitutions();

    PdfFile file;
    const int catalog = file.reserve(), tree = file.reserve();
    const PdfFonts fonts(shaper);
    const std::string resources = fonts.write(file);
    std::vector<int> ids;
    std::string kids;
    for (const Page &page : pages) {
        PdfPainter painter(fonts, options.monochrome, kPointsPerMillimetre / userUnit(*page.list));
        paint(page, painter);
        const int content = file.putStream(deflated(painter.finish()));
        ids.push_back(file.put("<</Type/Page/Parent " + reference(tree) + boxes(*page.list) +
                               "/Contents " + reference(content) + ">>"));
        kids += reference(ids.back()) + ' ';
    }
    file.put(tree, "<</Type/Pages/Count " + std::to_string(ids.size()) + "/Kids[" + kids +
                       "]/Resources<<" + resources + ">>>>");
    const std::string view =
        options.title.empty() ? "" : "/ViewerPreferences<</DisplayDocTitle true>>";
    file.put(catalog,
             "<</Type/Catalog/Pages " + reference(tree) + outlines(lists, ids, file) + view + ">>");
    const int info = file.put(information(options));
    return file.finish(catalog, info);
}

} // namespace host::display
