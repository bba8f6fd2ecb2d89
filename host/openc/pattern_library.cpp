#include "openc/pattern_library.h"

#include "openc/objects_of_kind.h"

#include "model/session.h"
#include "store/part_store.h"

#include "uf_part.h"
#include "uf_patt.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace host::patterns {

namespace {

constexpr int kNotFound = 1;
constexpr int kRevision = 5;
constexpr int kNoPatternData = 6;

bool isFile(const std::string &path)
{
    struct stat found;
    return stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode);
}

void appendDirectories(std::vector<std::string> &directories, const char *variable)
{
    const char *value = std::getenv(variable);
    if (!value) return;
    const std::string list = value;
    for (std::size_t from = 0; from <= list.size();) {
        const std::size_t to = std::min(list.find(':', from), list.size());
        if (to > from) directories.push_back(list.substr(from, to - from) + '/');
        from = to + 1;
    }
}

// share/qelfmt/patterns of the installation that this library belongs to: shipped definitions are
// complete without any variable. The library stands in <prefix>/lib or <prefix>/lib/<triplet>.
std::string installedPatterns()
{
    namespace fs = std::filesystem;
    Dl_info info{};
    static const char anchor = 0;
    if (!dladdr(&anchor, &info) || !info.dli_fname) return {};
    std::error_code failed;
    fs::path prefix = fs::canonical(info.dli_fname, failed).parent_path();
    for (int level = 0; level < 2; ++level) {
        prefix = prefix.parent_path();
        const fs::path patterns = prefix / "share/qelfmt/patterns";
        if (fs::is_directory(patterns, failed)) return patterns.string() + '/';
    }
    return {};
}

std::vector<std::string> searchedDirectories(const std::string &name)
{
    std::vector<std::string> directories{""};
    if (name.front() == '/') return directories;
    appendDirectories(directories, "UGII_UTIL");
    appendDirectories(directories, "UGII_PATDIR");
    if (!std::getenv("UGII_PATDIR")) {
        static const std::string installed = installedPatterns();
        if (!installed.empty()) directories.push_back(installed);
    }
    return directories;
}

// What tells one state of a file from another.
struct FileState {
    dev_t device;
    ino_t node;
    off_t size;
    time_t seconds;
    long nanoseconds;
    bool operator==(const FileState &) const = default;
};

std::optional<FileState> stateOf(const std::string &path)
{
    struct stat found;
    if (stat(path.c_str(), &found) != 0) return std::nullopt;
    return FileState{found.st_dev, found.st_ino, found.st_size, found.st_mtim.tv_sec,
                     found.st_mtim.tv_nsec};
}

struct Read {
    FileState state;
    std::shared_ptr<const PatternMaster> master;
};

// By path and by the name that was passed, which a master keeps.
std::map<std::pair<std::string, std::string>, Read> &readMasters()
{
    static auto *masters = new std::map<std::pair<std::string, std::string>, Read>;
    return *masters;
}

int codeOf(const store::StoreError &error)
{
    if (error.code == UF_PART_err_file_not_found) return kNotFound;
    if (error.code == UF_PART_err_newer_version) return kRevision;
    return UF_PATT_err_unreadable;
}

store::LoadedPart loaded(const std::string &path)
{
    try {
        return store::load(path);
    } catch (const store::StoreError &error) {
        Session::get().syslog += error.message + "\n";
        throw Failure{codeOf(error), error.message};
    }
}

// A pattern does not refer into the part it was made from: what notes say of objects there (or of that
// part) is what they say now. References to the part that the pattern is placed in stay.
class FrozenTexts {
public:
    explicit FrozenTexts(const store::LoadedPart &part) : m_part(part) {}

    std::string operator()(const std::string &line) const
    {
        if (line.find("<W!") == std::string::npos) return line;
        return Session::evaluated(line, [this](std::string_view text) -> const std::string * {
            static const std::string nothing;
            const auto reference = attributeReference(text);
            if (!reference || !reference->ofObject) return nullptr;
            const Attributes *attributes = attributesOf(reference->holder);
            if (!attributes) return nullptr;
            const std::size_t place = attributes->find(reference->title);
            return place == Attributes::kNone ? &nothing : &(*attributes)[place].value;
        });
    }

private:
    const Attributes *attributesOf(Tag tag) const
    {
        if (tag == m_part.part->tag) return &m_part.part->attributes;
        const auto found = std::lower_bound( // tags rise
            m_part.objects.begin(), m_part.objects.end(), tag,
            [](const auto &object, Tag wanted) { return object->tag < wanted; });
        return found != m_part.objects.end() && (*found)->tag == tag ? &(*found)->attributes
                                                                     : nullptr;
    }

    const store::LoadedPart &m_part;
};

// A master shows its lines, arcs, filled areas and notes; what is blanked stays hidden.
void addShape(PatternMaster &master, const Object &object, const FrozenTexts &frozen)
{
    if (object.status != Status::alive || object.appearance.blanked) return;
    const Appearance &look = object.appearance;
    if (const Line *line = object.as<Line>()) master.shapes.push_back({look, *line});
    if (const Arc *arc = object.as<Arc>()) master.shapes.push_back({look, *arc});
    if (const Area *area = object.as<Area>()) master.shapes.push_back({look, *area});
    if (const Note *note = object.as<Note>()) {
        Note copy = *note;
        for (std::string &line : copy.lines) line = frozen(line);
        master.shapes.push_back({look, std::move(copy)});
    }
}

std::shared_ptr<const PatternMaster> masterOf(const store::LoadedPart &part,
                                              const std::string &name)
{
    if (!part.part->patternDataSaved) throw Failure{kNoPatternData, name};
    auto master = std::make_shared<PatternMaster>();
    master->fileName = name;
    master->units = part.part->units;
    const FrozenTexts frozen(part);
    for (const auto &object : part.objects) {
        if (const FontTable *fonts = object->as<FontTable>()) master->fonts = fonts->names;
        addShape(*master, *object, frozen);
    }
    return master;
}

} // namespace

std::string fileOf(const std::string &name)
{
    if (name.empty()) return {};
    for (const std::string &directory : searchedDirectories(name)) {
        for (const char *extension : {"", ".prt"}) {
            const std::string path = directory + name + extension;
            if (isFile(path)) return path;
        }
    }
    return {};
}

std::shared_ptr<const PatternMaster> masterFrom(const std::string &path, const std::string &name)
{
    const auto state = stateOf(path);
    if (!state) throw Failure{kNotFound, path};
    const auto key = std::make_pair(path, name);
    const auto known = readMasters().find(key);
    if (known != readMasters().end() && known->second.state == *state) return known->second.master;
    auto master = masterOf(loaded(path), name);
    readMasters()[key] = {*state, master};
    return master;
}

std::shared_ptr<const PatternMaster> sharedIn(const Part &part,
                                              std::shared_ptr<const PatternMaster> master)
{
    std::set<const PatternMaster *> compared;
    const Ordered &patterns = objectsOfKind<Pattern>(part);
    for (auto at = patterns.rbegin(); at != patterns.rend(); ++at) {
        const auto &there = at->second->as<Pattern>()->master;
        if (there == master) return there;
        if (compared.insert(there.get()).second && there && *there == *master) return there;
    }
    return master;
}

} // namespace host::patterns
