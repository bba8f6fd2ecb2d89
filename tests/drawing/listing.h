// Claims about the order of messages.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// Each of `expected` stands among `lines`, after the one before it.
inline void expectInOrder(const std::vector<std::string> &lines,
                          const std::vector<std::string> &expected)
{
    auto from = lines.begin();
    for (const std::string &line : expected) {
        const auto found = std::find(from, lines.end(), line);
        if (found == lines.end()) {
            ADD_FAILURE() << "missing, or not in its place: " << line;
            continue;
        }
        from = found + 1;
    }
}
