#include "display/render.h"

#include "display/output_file.h"

namespace host::display {

RenderResult writePdf(const std::vector<tag_t> &sheets, const std::string &path,
                      const RenderOptions &options)
{
    RenderResult result;
    std::vector<DisplayList> pages;
    for (const tag_t sheet : sheets) pages.push_back(displayList(sheet));
    writeWhole(path, pdfOf(pages, options, &result));
    return result;
}

RenderResult writeSvg(tag_t sheet, const std::string &path, const RenderOptions &options)
{
    RenderResult result;
    writeWhole(path, svgOf(displayList(sheet), options, &result));
    return result;
}

RenderResult writePng(tag_t sheet, const std::string &path, const RenderOptions &options)
{
    RenderResult result;
    writeWhole(path, pngOf(displayList(sheet), options, &result));
    return result;
}

} // namespace host::display
