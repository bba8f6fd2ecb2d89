#include "app/fleet/paths.h"

#include "app/problem.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace app::fleet {

namespace {

namespace fs = std::filesystem;

// Lines, or texts that end in NUL when there is one, for names with line breaks in them.
std::vector<std::string> readList(std::istream &stream)
{
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
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
    if (path == "-") return readList(std::cin);
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw Problem(path + ": cannot be read: --files-from needs a file with a path a line");
    return readList(file);
}

void addFolder(const std::string &folder, std::vector<Found> &found)
{
    try {
        for (const auto &entry : fs::recursive_directory_iterator(folder))
            if (entry.path().extension() == ".qdraw" && !entry.is_directory())
                found.push_back({entry.path().lexically_normal().string(),
                                 entry.path().lexically_relative(folder).string()});
    } catch (const fs::filesystem_error &failure) {
        throw Problem(fmt::format("{}: cannot be searched: {}", failure.path1().string(),
                                  failure.code().message()));
    }
}

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
        if (fs::is_directory(path))
            addFolder(name, found);
        else
            found.push_back({path.lexically_normal().string(), path.filename().string()});
    }
    const auto byPath = [](const Found &a, const Found &b) { return a.path < b.path; };
    const auto same = [](const Found &a, const Found &b) { return a.path == b.path; };
    std::stable_sort(found.begin(), found.end(), byPath);
    found.erase(std::unique(found.begin(), found.end(), same), found.end());

    std::vector<Found> chosen;
    for (std::size_t i = 0; i < found.size(); ++i)
        if (shard.holds(i)) chosen.push_back(std::move(found[i]));
    return chosen;
}

std::vector<std::string> collect(const PathArguments &arguments)
{
    std::vector<std::string> paths;
    for (Found &one : find(arguments)) paths.push_back(std::move(one.path));
    return paths;
}

} // namespace app::fleet
