// A PDF of one page a sheet.
#include "display/render.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "display/deflate.h"
#include "display/numbers.h"
#include "display/pdf_document.h"
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
std::string outlines(const std::vector<std::string> &pages, const std::vector<int> &ids,
                     PdfFile &file)
{
    if (pages.size() < 2) return {};
    const int root = file.reserve();
    std::vector<int> items;
    for (std::size_t i = 0; i < pages.size(); ++i) items.push_back(file.reserve());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        std::string item = "<</Title" + pdfText(pages[i]) + "/Parent " + reference(root);
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

// The fonts first, then page by page, in the end what holds them together.
class PdfWriter {
public:
    PdfWriter(const Shaper &shaper, const RenderOptions &options, PdfDocument::Sink sink)
        : m_options(options), m_sink(std::move(sink)), m_catalog(m_file.reserve()),
          m_tree(m_file.reserve()), m_fonts(shaper), m_resources(m_fonts.write(m_file))
    {
        m_sink(m_file.take());
    }

    void add(const Page &page)
    {
        const DisplayList &list = *page.list;
        PdfPainter painter(m_fonts, m_options.monochrome, kPointsPerMillimetre / userUnit(list));
        paint(page, painter);
        const int content = m_file.putStream(deflated(painter.finish()));
        m_ids.push_back(m_file.put("<</Type/Page/Parent " + reference(m_tree) + boxes(list) +
                                   "/Contents " + reference(content) + ">>"));
        m_names.push_back(list.sheet);
        m_sink(m_file.take());
    }

    void finish()
    {
        std::string kids;
        for (const int id : m_ids) kids += reference(id) + ' ';
        m_file.put(m_tree, "<</Type/Pages/Count " + std::to_string(m_ids.size()) + "/Kids[" + kids +
                               "]/Resources<<" + m_resources + ">>>>");
        const std::string view =
            m_options.title.empty() ? "" : "/ViewerPreferences<</DisplayDocTitle true>>";
        m_file.put(m_catalog, "<</Type/Catalog/Pages " + reference(m_tree) +
                                  outlines(m_names, m_ids, m_file) + view + ">>");
        const int info = m_file.put(information(m_options));
        m_sink(m_file.finish(m_catalog, info));
    }

private:
    const RenderOptions m_options;
    const PdfDocument::Sink m_sink;
    PdfFile m_file;
    const int m_catalog;
    const int m_tree;
    const PdfFonts m_fonts;
    const std::string m_resources;
    std::vector<int> m_ids; // of the pages
    std::vector<std::string> m_names;
};

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

    std::string bytes;
    PdfWriter writer(shaper, options, [&](std::string_view more) { bytes += more; });
    for (const Page &page : pages) writer.add(page);
    writer.finish();
    return bytes;
}

// --- page by page -------------------------------------------------------------------------------

struct PdfDocument::State {
    Shaper shaper;
    std::size_t signs = 0; // in the fonts
    std::optional<PdfWriter> writer;
};

PdfDocument::PdfDocument() : m_state(std::make_unique<State>()) {}

PdfDocument::~PdfDocument() = default;

void PdfDocument::look(const DisplayList &page) { shaped(page, m_state->shaper); }

void PdfDocument::begin(const RenderOptions &options, Sink sink)
{
    m_state->signs = m_state->shaper.uses().size();
    m_state->writer.emplace(m_state->shaper, options, std::move(sink));
}

void PdfDocument::add(const DisplayList &page)
{
    const Page painted = shaped(page, m_state->shaper);
    if (m_state->shaper.uses().size() > m_state->signs)
        throw RenderError(page.sheet + ": has changed while it was drawn; draw it again.");
    m_state->writer->add(painted);
}

RenderResult PdfDocument::finish()
{
    m_state->writer->finish();
    return {m_state->shaper.substitutions()};
}

} // namespace host::display
