#include "app/workspace.h"

#include "app/authoring/missing_ids.h"
#include "app/definition_folders.h"
#include "app/library_output.h"
#include "app/output.h"
#include "app/problem.h"

#include "api/trv_fmt.h"
#include "base/log.h"
#include "foundation/log.h"
#include "lumug/nx_search_file_list.h"

#include "nxhost/part_files.h"
#include "nxhost/start.h"
#include "uf.h"
#include "uf_draw.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "ug_exception.hxx"

#include <boost/filesystem.hpp>
#include <fmt/format.h>
#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include <cstdlib>

namespace app {

namespace {

void check(int status) { UgException::throwOnFailure(status); }

// Patterns stand beside the definitions unless the environment says otherwise.
void findPatterns(const Options &options)
{
    std::string folders;
    const auto add = [&](const boost::filesystem::path &root) {
        folders += (folders.empty() ? "" : ":") + (root / "patterns").string();
    };
    if (!options.definitions.empty()) {
        for (const std::string &folder : options.definitions) add(folder);
    } else if (!std::getenv("UGII_PATDIR")) {
        const LumUg::NxSearchFileList list("format_defs");
        for (const auto &place : list.places()) add(place.folder.parent_path());
    }
    if (!folders.empty()) check(UF_set_variable("UGII_PATDIR", folders.c_str()));
}

// The library does not say which file it was.
std::string whereLoadingEnds()
{
    for (const auto &path : LumUg::NxSearchFileList("format_defs").filePaths("*.prt")) {
        tag_t part = NULL_TAG;
        UF_PART_load_status_t status{};
        const int loaded = UF_PART_is_loaded(path.c_str());
        const int code = loaded ? 0 : UF_PART_open_quiet(path.c_str(), &part, &status);
        UF_PART_free_load_status(&status);
        if (code) continue; // loading passes over it
        if (loaded) part = UF_PART_ask_part_tag(path.c_str());
        if (!authoring::withoutId(authoring::scanPart(part).records).empty())
            return fmt::format("\n{0}: has a definition without an id, and nothing behind it is "
                               "loaded: build it anew ('qelfmt defs dump {0}', 'qelfmt defs "
                               "build'), or take it away",
                               path.string());
    }
    return {};
}

// --verbose: what the library tells goes to the standard error as it happens.
void showLog()
{
    const auto log = spdlog::stderr_color_mt("qelfmt");
    log->set_pattern("%T.%e %v");
    QelFmt::info_log().setOn(true);
    QelFmt::verbose_log().setOn(true);
    Base::log::setSink([log](const Base::log::Record &record) {
        log->info("{}: {}", record.logger, record.text);
    });
}

// A folder among drawings is one that could not be searched.
void requireNoFolder(const std::string &path)
{
    boost::system::error_code error;
    if (!boost::filesystem::is_directory(path, error)) return;
    const boost::filesystem::directory_iterator entries(path, error);
    throw Problem(error
                      ? fmt::format("{}: the folder cannot be searched: {}", path, error.message())
                      : path + ": is a folder: name a drawing");
}

} // namespace

Workspace::Workspace(const Options &options, bool loadDefinitions)
{
    if (!options.definitions.empty()) {
        requireDefinitionFolders(options);
        std::vector<boost::filesystem::path> folders;
        for (const std::string &folder : options.definitions)
            folders.emplace_back(boost::filesystem::absolute(folder));
        LumUg::NxSearchFileList::setSearchDirectories(folders);
    }
    divertLibraryOutput(options.quiet);
    if (options.verbose) showLog();
    findPatterns(options);
    tellingOnce([&] {
        nxhost::start();
        if (QEL_FMT_initialize(loadDefinitions))
            throw Problem("start: " + std::string(TRV_FMT_ask_last_error()) + whereLoadingEnds());
    });
}

Workspace::~Workspace() { TRV_FMT_terminate(); }

void Workspace::open(const std::string &path)
{
    requireNoFolder(path);
    UF_PART_load_status_t status{};
    const int code = UF_PART_open(path.c_str(), &m_part, &status);
    UF_PART_free_load_status(&status);
    if (code) throw Problem::ofPart(path, code);
    m_path = path;
    m_shown.clear();
}

void Workspace::create(const std::string &path, int units)
{
    if (const int code = UF_PART_new(path.c_str(), units, &m_part))
        throw Problem::ofPart(path, code);
    m_path = path;
    m_shown.clear();
}

void Workspace::save()
{
    if (const int code = UF_PART_save()) throw Problem::ofPart(m_path, code);
}

void Workspace::saveAs(const std::string &path, bool replace)
{
    if (replace && boost::filesystem::exists(path)) {
        try {
            nxhost::saveWorkPartOver(path);
        } catch (const UgException &failure) {
            throw Problem::ofPart(path, failure.askErrorCode());
        }
    } else if (const int code = UF_PART_save_as(path.c_str())) {
        throw Problem::ofPart(path, code);
    }
    m_path = path;
}

void Workspace::close()
{
    if (m_part != NULL_TAG) UF_PART_close(m_part, 0, 1);
    m_part = NULL_TAG;
    m_path.clear();
}

int Workspace::units() const
{
    int units = 0;
    check(UF_PART_ask_units(m_part, &units));
    return units;
}

std::vector<SheetRef> Workspace::sheets() const
{
    int count = 0;
    tag_p_t tags = nullptr;
    check(UF_DRAW_ask_drawings(&count, &tags));
    std::vector<SheetRef> found;
    for (int i = 0; i < count; ++i) {
        char name[UF_OBJ_NAME_LEN + 1] = "";
        UF_OBJ_ask_name(tags[i], name); // a sheet without a name has an empty one
        found.push_back({tags[i], name});
    }
    UF_free(tags);
    return found;
}

SheetRef Workspace::openSheet(const std::string &name)
{
    const auto all = sheets();
    std::vector<std::string> names;
    for (const SheetRef &sheet : all) {
        if (sheet.name == name || (name.empty() && all.size() == 1)) {
            check(UF_DRAW_open_drawing(sheet.tag));
            return sheet;
        }
        names.push_back(sheet.name);
    }
    if (all.empty())
        throw Problem(fmt::format("{}: has no sheet: add one with 'qelfmt sheet add'", m_path));
    throw Problem(fmt::format("{}: {}: choose with --sheet one of {}", m_path,
                              name.empty() ? "has several sheets" : "has no sheet " + name,
                              joined(names, ", ")));
}

SheetRef Workspace::addSheet(const std::string &name)
{
    UF_DRAW_info_t info{};
    info.units = units();
    info.size_state = info.units == UF_PART_METRIC ? UF_DRAW_METRIC_SIZE : UF_DRAW_ENGLISH_SIZE;
    info.size.metric_size_code = UF_DRAW_A4;
    if (info.units != UF_PART_METRIC) info.size.english_size_code = UF_DRAW_A;
    info.drawing_scale = 1.0;
    info.projection_angle = info.units == UF_PART_METRIC ? UF_DRAW_FIRST_ANGLE_PROJECTION
                                                         : UF_DRAW_THIRD_ANGLE_PROJECTION;
    SheetRef sheet{NULL_TAG, name};
    if (const int code = UF_DRAW_create_drawing(name.c_str(), &info, &sheet.tag)) {
        if (code == UF_DRAW_err_name_in_use)
            throw Problem(
                fmt::format("{}: has a sheet {} already: choose another name", m_path, name));
        throw Problem(fmt::format("{}: sheet \"{}\": a name of 1 to {} characters is needed",
                                  m_path, name, UF_DRAW_MAX_NAME_LEN));
    }
    check(UF_DRAW_open_drawing(sheet.tag));
    return sheet;
}

void checkLibrary(int status, const std::string &context)
{
    if (status) throw Problem(context + ": " + TRV_FMT_ask_last_error());
}

} // namespace app
