// Listings that were looked at once and are to stay as they are: tests/golden/NAME.txt.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

// On a difference the new listing is written beside the golden one, as NAME.new, and the test fails.
// QELFMT_REPLACE_GOLDEN=1 writes it in the golden one's place: to be looked at before it is committed.
inline void expectGolden(const std::string &name, const std::string &listing)
{
    const std::string path = QELFMT_SOURCE_DIR "/tests/golden/" + name + ".txt";
    if (std::getenv("QELFMT_REPLACE_GOLDEN")) std::ofstream(path, std::ios::binary) << listing;
    std::ifstream file(path, std::ios::binary);
    const std::string golden{std::istreambuf_iterator<char>(file), {}};
    if (golden == listing) return;
    const std::string fresh = QELFMT_SOURCE_DIR "/tests/golden/" + name + ".new";
    std::ofstream(fresh, std::ios::binary) << listing;
    std::size_t line = 1, at = 0;
    while (at < golden.size() && at < listing.size() && golden[at] == listing[at])
        line += listing[at++] == '\n';
    ADD_FAILURE() << name << " is listed otherwise from line " << line << " on: compare " << path
                  << " with " << fresh;
}
