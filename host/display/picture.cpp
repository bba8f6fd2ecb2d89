// Pictures for callers that speak no C++: failures become a status and a text.
#include "nxhost/picture.h"

#include "display/render.h"

#include "ug_exception.hxx"

#include <exception>
#include <string>
#include <vector>

namespace {

std::string &lastError()
{
    static auto *text = new std::string; // callers may ask at process exit
    return *text;
}

} // namespace

extern "C" int nxhost_write_pdf(const tag_t *sheets, int number, const char *path)
{
    try {
        std::vector<tag_t> pages;
        if (sheets && number > 0) pages.assign(sheets, sheets + number);
        host::display::writePdf(pages, path ? path : "");
        return 0;
    } catch (const UgException &failure) {
        lastError() = failure.askErrorText();
    } catch (const std::exception &failure) {
        lastError() = failure.what();
    }
    return 1;
}

extern "C" const char *nxhost_ask_picture_error(void) { return lastError().c_str(); }
