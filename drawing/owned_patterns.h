// The patterns that a block or a format owns: drawn when they must be, and not again.
#pragma once

#include <string>
#include <vector>

namespace LumUg {
class UDO;
}

// How the owner's pattern should be.
struct PatternSpec {
    std::string name; // empty: no pattern
    int layer = 0;
    std::vector<double> at; // x, y
};

// A first pattern of that very name is kept as it is; otherwise what is owned goes, and the pattern
// is retrieved onto the owner's sheet.
void drawOwnedPattern(LumUg::UDO &owner, const PatternSpec &spec);
// The patterns are deleted.
void removeOwnedPatterns(LumUg::UDO &owner);
// Moved all alike.
void moveOwnedPatterns(const LumUg::UDO &owner, double dx, double dy);
// The patterns change hands.
void handOverPatterns(LumUg::UDO &from, LumUg::UDO &to);
