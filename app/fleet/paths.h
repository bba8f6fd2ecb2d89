// Which drawings a command over many is meant for.
#pragma once

#include <CLI/CLI.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace app::fleet {

struct PathArguments {
    std::vector<std::string> paths; // drawings, and folders that are searched for them
    std::string filesFrom;          // a list of paths, one a line; "-" is the standard input
    std::string shard;              // "K/N"
};

void addPathOptions(CLI::App *verb, PathArguments &arguments);

struct Found {
    std::string path;
    std::string name; // below the folder that was searched; of a named file its own name
};

// Every drawing once, by whatever path or link it is reached, sorted by its path: *.qdraw in folders and below them, named files whatever they
// are called. What is named and does not exist stays in the list, and so does a folder that cannot be
// searched: they are reported with the rest.
// With a shard the list's own part of it.
std::vector<Found> find(const PathArguments &arguments);
std::vector<std::string> collect(const PathArguments &arguments); // the paths alone

// The same for every path that leads to a file; of one that is gone, for every spelling of its folder.
std::string canonicalPath(const std::string &path);

// The K-th of N lists that have the same length but for one, of any list: together they are the list.
class Shard {
public:
    explicit Shard(const std::string &text); // "K/N", K from 1 to N; empty: the whole list
    bool holds(std::size_t index) const { return index % m_of == m_number; }

private:
    std::size_t m_number = 0;
    std::size_t m_of = 1;
};

} // namespace app::fleet
