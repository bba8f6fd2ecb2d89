#include "app/fleet/paths.h"

#include "app/problem.h"
#include "app/read_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

namespace app::fleet {

namespace {

namespace fs = std::filesystem;

// Lines, or texts that end in NUL when there is one, for names with line breaks in them.
std::vector<std::string> readList(const std::string &text)
{
    const char end = text.find('\0') == std::string::npos ? '\n' : '\0';
    std::vector<std::string> names;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t to = std::min(text.find(end, from), text.size());
        std::string name = text.substr(from, to - from);
        if (end == '\n' && !name.empty() && name.back() == '\r') name.pop_back();
        if (!name.empty()) names.push_back(std::move(name));
        from = to + 1;
    }
    return names;
}

std::vector<std::string> namesFrom(const std::string &path)
{
    if (path == "-") return readList({std::istreambuf_iterator<char>(std::cin), {}});
    return readList(readText(path));
}

class Search {
public:
    Search(const std::string &root, std::vector<Found> &found) : m_root(root), m_found(found) {}

    // Links to folders are not followed.
    void search(const fs::path &folder)
    {
        std::error_code error;
        fs::directory_iterator entry(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            std::error_code
                unknown; // what is no folder and cannot be looked at is a drawing to open
            if (entry->symlink_status(unknown).type() == fs::file_type::directory)
                search(entry->path());
            else if (entry->path().extension() == ".qdraw" && !entry->is_directory(unknown))
                add(entry->path());
        }
        if (error) add(folder);
    }

private:
    void add(const fs::path &path)
    {
        m_found.push_back(
            {path.lexically_normal().string(), path.lexically_relative(m_root).string()});
    }

    const fs::path m_root;
    std::vector<Found> &m_found;
};

// What file a path leads to. Folders are followed once each.
class Identities {
public:
    std::string of(const std::string &path)
    {
        const std::size_t slash = path.rfind('/') + 1; // 0: there is none
        const std::string name = path.substr(slash);
        std::error_code unknown;
        if (name.empty() || name == "." || name == ".." || fs::is_symlink(path, unknown))
            return canonicalPath(path);
        std::string &folder = m_folders[path.substr(0, slash)];
        if (folder.empty()) {
            folder = canonicalPath(slash ? path.substr(0, slash) : ".");
            if (folder.back() != '/') folder += '/';
        }
        return folder + name;
    }

private:
    std::unordered_map<std::string, std::string> m_folders;
};

std::size_t parseCount(std::string_view text)
{
    std::size_t count = 0;
    const auto end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, count);
    return error == std::errc() && rest == end ? count : 0;
}

} // namespace

Shard::Shard(const std::string &text)
{
    if (text.empty()) return;
    const std::size_t slash = text.find('/');
    const std::size_t number = parseCount(std::string_view(text).substr(0, slash));
    if (slash != std::string::npos) m_of = parseCount(std::string_view(text).substr(slash + 1));
    if (slash == std::string::npos || number < 1 || m_of < 1 || number > m_of)
        throw Problem(fmt::format("--shard {}: write K/N with K from 1 to N, as in 2/8", text),
                      kUsage);
    m_number = number - 1;
}

void addPathOptions(CLI::App *verb, PathArguments &arguments)
{
    verb->add_option("paths", arguments.paths, "Drawings, and folders with drawings in them");
    verb->add_option("--files-from", arguments.filesFrom,
                     "File with a path a line; - is the standard input");
    verb->add_option("--shard", arguments.shard, "Only the K-th of N shares of the list: K/N");
}

std::vector<Found> find(const PathArguments &arguments)
{
    if (arguments.paths.empty() && arguments.filesFrom.empty())
        throw Problem("no drawings are named: give drawings, folders or --files-from", kUsage);
    const Shard shard(arguments.shard);
    std::vector<std::string> named = arguments.paths;
    if (!arguments.filesFrom.empty())
        for (std::string &name : namesFrom(arguments.filesFrom)) named.push_back(std::move(name));

    std::vector<Found> found;
    for (const std::string &name : named) {
        const fs::path path(name);
        std::error_code unknown;
        if (fs::is_directory(path, unknown))
            Search(name, found).search(path);
        else
            found.push_back({path.lexically_normal().string(), path.filename().string()});
    }
    const auto byPath = [](const Found &a, const Found &b) { return a.path < b.path; };
    std::stable_sort(found.begin(), found.end(), byPath);
    Identities identities;
    std::unordered_set<std::string> seen;
    std::erase_if(found,
                  [&](const Found &one) { return !seen.insert(identities.of(one.path)).second; });

    std::vector<Found> chosen;
    for (std::size_t i = 0; i < found.size(); ++i)
        if (shard.holds(i)) chosen.push_back(std::move(found[i]));
    return chosen;
}

std::string canonicalPath(const std::string &path)
{
    std::error_code error;
    const fs::path canonical = fs::weakly_canonical(fs::absolute(path), error);
    return (error ? fs::absolute(path).lexically_normal() : canonical).string();
}

std::vector<std::string> collect(const PathArguments &arguments)
{
    std::vector<std::string> paths;
    for (Found &one : find(arguments)) paths.push_back(std::move(one.path));
    return paths;
}

} // namespace app::fleet
