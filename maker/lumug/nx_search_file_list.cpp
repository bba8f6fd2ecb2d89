#include "lumug/nx_search_file_list.h"

#include "uf.h"

#include <boost/filesystem.hpp>
#include <boost/regex.hpp>

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <set>

namespace LumUg {

namespace fs = boost::filesystem;
using boost::system::error_code;

namespace {

std::vector<fs::path> &chosenDirectories()
{
    static std::vector<fs::path> directories;
    return directories;
}

std::string variable(const std::string &name)
{
    char *translation = nullptr;
    // Without a session the platform translates nothing; the variables are there all the same.
    const char *value = UF_translate_variable(name.c_str(), &translation) == 0
                            ? translation
                            : std::getenv(name.c_str());
    return value ? value : "";
}

std::string withVariablesReplaced(std::string text)
{
    for (std::size_t begin = 0; (begin = text.find("${", begin)) != std::string::npos;) {
        const std::size_t end = text.find('}', begin);
        if (end == std::string::npos) break;
        const std::string value = variable(text.substr(begin + 2, end - begin - 2));
        text.replace(begin, end + 1 - begin, value);
        begin += value.size(); // what came in is not looked at again
    }
    return text;
}

std::vector<fs::path> listedDirectories(const std::string &file_name)
{
    std::vector<fs::path> listed;
    std::ifstream file(file_name);
    for (std::string line; std::getline(file, line);) {
        line.erase(std::find(line.begin(), line.end(), '#'), line.end());
        const std::size_t first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos) continue;
        const std::size_t last = line.find_last_not_of(" \t\r");
        listed.emplace_back(withVariablesReplaced(line.substr(first, last + 1 - first)));
    }
    return listed;
}

// <prefix>/lib/libX.so and <prefix>/lib/<triplet>/libX.so both belong to <prefix>/share.
fs::path installedShare()
{
    Dl_info info{};
    static const char anchor = 0;
    if (!dladdr(&anchor, &info) || !info.dli_fname) return {};
    error_code failed;
    fs::path prefix = fs::canonical(info.dli_fname, failed).parent_path();
    const fs::path nearest = prefix.parent_path() / "share" / "qelfmt";
    for (int level = 0; level < 2; ++level) {
        prefix = prefix.parent_path();
        const fs::path share = prefix / "share" / "qelfmt";
        if (fs::is_directory(share, failed)) return share;
    }
    return nearest;
}

std::vector<NxSearchFileList::Place> searchDirectories()
{
    std::vector<NxSearchFileList::Place> places;
    if (!chosenDirectories().empty()) {
        for (const fs::path &directory : chosenDirectories()) places.push_back({"set", directory});
        return places;
    }
    bool any_variable = false;
    const auto add = [&](const char *name, bool is_list) {
        const std::string value = variable(name);
        if (value.empty()) return;
        any_variable = true;
        if (!is_list) return places.push_back({name, value});
        for (const fs::path &directory : listedDirectories(value))
            places.push_back({name, directory});
    };
    add("UGII_VENDOR_DIR", false);
    add("UGII_SITE_DIR", false);
    add("UGII_GROUP_DIR", false);
    add("UGII_CUSTOM_DIRECTORY_FILE", true);
    add("UGII_USER_DIR", false);
    if (!any_variable) places.push_back({"installation", installedShare()});
    return places;
}

boost::regex expressionFor(const std::string &pattern)
{
    static const std::string special = ".[]{}()\\*+?|^$";
    std::string expression;
    for (const char c : pattern) {
        if (c == '*')
            expression += ".*";
        else if (special.find(c) != std::string::npos)
            expression += std::string("\\") + c;
        else
            expression += c;
    }
    return boost::regex(expression);
}

// File names in byte order, so that runs repeat.
std::vector<std::string> namesIn(const fs::path &folder)
{
    std::vector<std::string> names;
    error_code failed;
    for (fs::directory_iterator it(folder, failed), end; !failed && it != end; it.increment(failed))
        names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

NxSearchFileList::NxSearchFileList(const std::string &folder) : m_places(searchDirectories())
{
    for (Place &place : m_places) place.folder /= folder;
}

std::vector<fs::path> NxSearchFileList::filePaths(const std::string &name_or_pattern) const
{
    const boost::regex expression = expressionFor(name_or_pattern);
    std::vector<fs::path> found;
    std::set<fs::path> seen;
    for (const Place &place : m_places) {
        for (const std::string &name : namesIn(place.folder)) {
            if (!boost::regex_match(name, expression)) continue;
            const fs::path path = place.folder / name;
            error_code failed;
            if (!fs::is_regular_file(path, failed)) continue;
            const fs::path real = fs::canonical(path, failed);
            if (seen.insert(failed ? path : real).second) found.push_back(path);
        }
    }
    return found;
}

void NxSearchFileList::setSearchDirectories(const std::vector<fs::path> &directories)
{
    chosenDirectories() = directories;
}

} // namespace LumUg
