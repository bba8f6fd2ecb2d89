#include "display/on_demand.h"

#include <dlfcn.h>

namespace host::display {

namespace {

// Stays loaded for the rest of the process.
void *loadedEntry(const std::string &library, const char *entry, const std::string &use)
{
    // Beside this library, whatever the search paths: the two are of one build.
    const std::string path = (libraryFolder() / library).string();
    void *handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void *address = handle ? ::dlsym(handle, entry) : nullptr;
    if (!address)
        throw RenderError("The library " + library + ", which " + use +
                          ", cannot be loaded: " + ::dlerror() +
                          "; install what is missing: the package libqelfmt1 brings all of it.");
    return address;
}

} // namespace

std::filesystem::path libraryFolder()
{
    Dl_info info{};
    if (::dladdr(reinterpret_cast<void *>(&libraryFolder), &info) == 0 || !info.dli_fname)
        return {};
    std::error_code ignored;
    return std::filesystem::absolute(info.dli_fname, ignored).parent_path();
}

FontFile systemFontWith(char32_t character)
{
    static const auto entry = reinterpret_cast<decltype(&qelfmt_fonts_with)>(
        loadedEntry("libqelfmt-fonts.so.1", "qelfmt_fonts_with",
                    "finds fonts for characters that the drafting font lacks"));
    FontFile found;
    entry(character, found);
    return found;
}

std::string pngOf(const DisplayList &page, const RenderOptions &options, RenderResult *result)
{
    static const auto entry = reinterpret_cast<decltype(&qelfmt_pixels_png)>(
        loadedEntry("libqelfmt-pixels.so.1", "qelfmt_pixels_png", "draws PNG pictures"));
    std::string bytes;
    entry(page, options, result, bytes);
    return bytes;
}

} // namespace host::display
