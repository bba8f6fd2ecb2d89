#include "app/picture.h"

#include "app/document_info.h"
#include "app/file_name.h"
#include "app/problem.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

namespace app {

namespace {

std::string endingOf(const std::string &path)
{
    return std::filesystem::path(path).extension().string();
}

} // namespace

bool isPicture(const std::string &path)
{
    const std::string ending = endingOf(path);
    return ending == ".pdf" || ending == ".svg" || ending == ".png";
}

void requirePictureOrDrawing(const std::string &path)
{
    if (!isPicture(path) && endingOf(path) != ".qdraw")
        throw Problem(path + ": write .qdraw, .pdf, .svg or .png", kUsage);
}

host::display::RenderResult drawSheets(const std::vector<SheetRef> &sheets, const std::string &path,
                                       const host::display::RenderOptions &options)
{
    const std::string ending = endingOf(path);
    if (ending == ".svg")
        return host::display::writeSvg(sheets.front().tag, path,
                                       withDocumentInfo(options, {sheets.front()}));
    if (ending == ".png") return host::display::writePng(sheets.front().tag, path, options);
    std::vector<tag_t> tags;
    for (const SheetRef &sheet : sheets) tags.push_back(sheet.tag);
    return host::display::writePdf(tags, path, withDocumentInfo(options, sheets));
}

std::vector<std::string> pictureNames(const std::vector<SheetRef> &sheets, const std::string &path)
{
    if (sheets.size() == 1 || endingOf(path) == ".pdf") return {path};
    const std::filesystem::path whole(path);
    std::vector<std::string> names;
    for (const SheetRef &sheet : sheets) {
        names.push_back(
            (whole.parent_path() / fmt::format("{}-{}{}", whole.stem().string(),
                                               safeFileName(sheet.name), endingOf(path)))
                .string());
        if (std::count(names.begin(), names.end(), names.back()) > 1)
            throw Problem(fmt::format("{}: two sheets would be drawn to it: draw them one by one "
                                      "with --sheet, or draw a PDF",
                                      names.back()));
    }
    return names;
}

std::vector<std::string> notesOf(const host::display::RenderResult &result)
{
    std::vector<std::string> notes;
    for (const auto &one : result.substitutions)
        notes.push_back(one.font.empty()
                            ? fmt::format("no font on this machine has {}", one.characters)
                            : fmt::format("{} drawn with {}", one.characters, one.font));
    return notes;
}

} // namespace app
