#include "app/defs_files.h"

#include "app/authoring/library_reader.h"
#include "app/authoring/record_builder.h"
#include "app/defs_text.h"
#include "app/problem.h"

#include "lumug/nx_search_file_list.h"

#include <boost/filesystem.hpp>
#include <fmt/format.h>

#include <filesystem>

namespace app {

Options withoutDefinitions(const Options &options)
{
    Options bare = options;
    bare.definitions.clear();
    return bare;
}

std::optional<std::string> findPattern(const std::string &file, const std::string &name)
{
    std::vector<std::filesystem::path> folders{
        std::filesystem::absolute(file).parent_path().parent_path() / "patterns"};
    const LumUg::NxSearchFileList list("format_defs");
    for (const auto &place : list.places())
        folders.emplace_back((place.folder.parent_path() / "patterns").string());
    for (const auto &folder : folders)
        if (const auto path = folder / (name + ".prt"); std::filesystem::exists(path))
            return path.string();
    return {};
}

NamedFile readEither(Workspace &work, const std::string &path, const std::string &language)
{
    NamedFile file;
    file.name = path;
    file.patternPath = [path](const std::string &name) { return findPattern(path, name); };
    if (std::filesystem::path(path).extension() == ".prt") {
        authoring::RecordFile part = readDefinitionPart(work, path);
        file.units = part.units;
        file.records = std::move(part.records);
    } else {
        file.library = authoring::readLibrary(path, language);
        file.units = file.library->units;
        file.records = authoring::recordsOf(*file.library);
    }
    return file;
}

authoring::RecordFile readOlderPart(Workspace &work, const std::string &option,
                                    const std::string &path)
{
    if (!std::filesystem::exists(path)) throw Problem(path + ": cannot be opened: check the path");
    if (std::filesystem::path(path).extension() != ".prt")
        throw Problem(fmt::format("{0}: {1} needs a definition part, as it is on drawings: build "
                                  "the text first with 'qelfmt defs build {0} -o FOLDER' and name "
                                  "FOLDER/format_defs/{2}.prt",
                                  path, option, std::filesystem::path(path).stem().string()));
    return readDefinitionPart(work, path);
}

} // namespace app
