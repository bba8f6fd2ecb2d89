// Patterns on a sheet against their files.
#include "app/drift.h"

#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "drawing/pattern.h"

#include "nxhost/control.h"
#include "uf_obj.h"
#include "uf_patt.h"

#include <map>
#include <optional>
#include <set>
#include <sstream>

namespace app {

namespace {

constexpr char kScratchName[] = "ART TO COMPARE";

// A pattern retrieved only to be looked at; none when its file cannot be.
class Scratch {
public:
    explicit Scratch(std::string file)
    {
        double placement[13] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
        char name[] = "ART TO COMPARE";
        if (uc5823(file.data(), name, 1, placement, &m_tag) != 0) m_tag = NULL_TAG;
    }
    ~Scratch()
    {
        if (m_tag != NULL_TAG) UF_OBJ_delete_object(m_tag);
    }
    Scratch(const Scratch &) = delete;
    Scratch &operator=(const Scratch &) = delete;

private:
    tag_t m_tag = NULL_TAG;
};

// What the patterns of a sheet draw, by the name of the pattern: the lines below its own.
std::multimap<std::string, std::string> artOn(tag_t sheet)
{
    std::multimap<std::string, std::string> art;
    std::string *drawn = nullptr;
    std::istringstream lines(nxhost::listSheet(sheet));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("    ")) {
            if (drawn) *drawn += line + "\n";
            continue;
        }
        drawn = nullptr;
        constexpr std::string_view kPattern = "pattern \"";
        if (!line.starts_with(kPattern)) continue;
        const std::size_t end = line.find('"', kPattern.size());
        drawn = &art.emplace(line.substr(kPattern.size(), end - kPattern.size()), "")->second;
    }
    return art;
}

void addNames(const LumUg::UDO &owner, std::set<std::string> &names)
{
    for (const UgTypedObject *pattern : owner.GetOwnedObjects(ZemPattern::kObjectType))
        names.insert(pattern->getName());
}

// As the file has it today; nothing when it cannot be read.
std::optional<std::string> artOnDisk(tag_t sheet, const std::string &name)
{
    const Scratch scratch(name);
    const auto art = artOn(sheet);
    const auto found = art.find(kScratchName);
    return found == art.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

Art lookAtArt(tag_t sheet)
{
    std::set<std::string> names;
    const auto format = TrDrawing::getDrawing(sheet)->format();
    addNames(*format, names);
    for (const auto &block : format->getBlocks()) addNames(*block, names);

    const auto drawn = artOn(sheet);
    Art art;
    for (const std::string &name : names) {
        const auto today = artOnDisk(sheet, name);
        if (!today) art.unreadable.push_back(name);
        const auto [first, last] = drawn.equal_range(name);
        for (auto one = first; today && one != last; ++one) {
            if (one->second == *today) continue;
            art.changed.push_back(name);
            break;
        }
    }
    return art;
}

} // namespace app
