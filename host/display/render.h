// Sheets as files: PDF, SVG and PNG. All three are painted from one display list with the same shaped
// texts, so that they agree.
#pragma once

#include "display/display_list.h"
#include "uf_defs.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace host::display {

// The text names the file or object and says what can be done.
class RenderError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct RenderOptions {
    bool monochrome = false; // everything black, else by colour number
    double pngDpi = 150.0;   // 10 to 2400
    // For the document information of a PDF and the title of an SVG; empty ones are left out.
    std::string title;
    std::string author;
    std::string subject;
    std::string keywords;
    // ISO 8601 ("2024-05-01" or "2024-05-01T12:00:00Z"). Left out unless given, so that the same
    // sheet gives the same bytes.
    std::optional<std::string> creationDate;
};

// Characters that the drafting font lacks, and what was taken instead.
struct Substitution {
    std::string characters; // UTF-8, each once, in order of first use
    std::string font;       // family; empty: no font on this machine has them, a box was drawn
    std::string file;
};

struct RenderResult {
    std::vector<Substitution> substitutions;
};

// Objects of the sheet that are alive, not blanked and on visible layers. RenderError when the tag
// is no sheet.
DisplayList displayList(tag_t sheet);

// Each writes under a temporary name beside `path` and renames: `path` is the old or the whole new
// file. The painters without a path give the bytes.
RenderResult writePdf(const std::vector<tag_t> &sheets, const std::string &path,
                      const RenderOptions &options = {}); // one page a sheet
RenderResult writeSvg(tag_t sheet, const std::string &path, const RenderOptions &options = {});
RenderResult writePng(tag_t sheet, const std::string &path, const RenderOptions &options = {});

std::string pdfOf(const std::vector<DisplayList> &pages, const RenderOptions &options = {},
                  RenderResult *result = nullptr);
std::string svgOf(const DisplayList &page, const RenderOptions &options = {},
                  RenderResult *result = nullptr);
std::string pngOf(const DisplayList &page, const RenderOptions &options = {},
                  RenderResult *result = nullptr);

} // namespace host::display
