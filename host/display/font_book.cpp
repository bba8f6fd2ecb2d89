#include "display/font_book.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "display/on_demand.h"
#include "display/render.h"

namespace host::display {

namespace {

namespace fs = std::filesystem;

constexpr const char *kDraftingFile = "osifont.ttf";

// Beside the installed library: lib/../share/qelfmt/fonts, also lib/<triplet>/../../share.
std::vector<fs::path> shareFolders()
{
    const fs::path folder = libraryFolder();
    return {folder.parent_path() / "share/qelfmt/fonts",
            folder.parent_path().parent_path() / "share/qelfmt/fonts"};
}

std::vector<fs::path> candidates()
{
    std::vector<fs::path> places;
    if (const char *path = std::getenv("QELFMT_FONT_PATH")) {
        std::string_view rest = path;
        while (!rest.empty()) {
            const auto end = std::min(rest.find(':'), rest.size());
            const fs::path place(rest.substr(0, end));
            std::error_code ignored;
            if (!place.empty())
                places.push_back(fs::is_directory(place, ignored) ? place / kDraftingFile : place);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    places.push_back(fs::path("/usr/share/fonts/truetype/osifont") / kDraftingFile);
    for (const fs::path &folder : shareFolders()) places.push_back(folder / kDraftingFile);
    return places;
}

fs::path draftingFile()
{
    std::string tried;
    for (const fs::path &place : candidates()) {
        std::error_code ignored;
        if (fs::is_regular_file(place, ignored)) return place;
        tried += "\n  " + place.string();
    }
    throw RenderError(
        "The drafting font was not found. Install the package fonts-osifont or name the "
        "font with QELFMT_FONT_PATH. Looked at:" +
        tried);
}

} // namespace

FontBook &FontBook::get()
{
    static FontBook *book = new FontBook; // faces live as long as anything that draws
    return *book;
}

FontBook::FontBook() : m_drafting(std::make_unique<Face>(draftingFile().string(), 0)) {}

const Face *FontBook::faceFor(char32_t character)
{
    if (m_drafting->glyphOf(character) != 0) return m_drafting.get();
    const auto [answer, isNew] = m_answers.try_emplace(character, nullptr);
    if (isNew) answer->second = searchSystem(character);
    return answer->second;
}

// Which faces are in use already must not change the choice: a sheet looks the same whatever was
// drawn before it.
const Face *FontBook::searchSystem(char32_t character)
{
    const FontFile found = systemFontWith(character);
    if (found.file.empty()) return nullptr;
    for (const auto &known : m_fallbacks)
        if (known->file() == found.file && known->index() == (found.index & 0xffff))
            return known.get();
    try {
        m_fallbacks.push_back(std::make_unique<Face>(found.file, found.index & 0xffff));
    } catch (const RenderError &) {
        return nullptr; // a font that fontconfig lists but nobody can read: as if there were none
    }
    const Face *face = m_fallbacks.back().get();
    return face->glyphOf(character) != 0 ? face : nullptr;
}

} // namespace host::display
