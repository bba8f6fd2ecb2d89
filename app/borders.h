// Which borders of a field are its definition's, and which the user's.
#pragma once

#include <array>
#include <cstddef>

class TrFieldBase;
class TrFieldDefV1;

namespace app {

constexpr std::size_t kBorders = 5;
using Borders = std::array<int, kBorders>; // bottom, left, middle, right, top
constexpr const char *kBorderNames[kBorders] = {"bottom border", "left border", "middle border",
                                                "right border", "top border"};

Borders bordersOf(const TrFieldBase &field); // 1 where it is switched on
Borders policiesOf(const TrFieldDefV1 &def);
constexpr int flagOf(int policy) { return policy == 1 || policy == 4 ? 1 : 0; } // of a new field

// Policies 0 and 1 leave no choice; the others say how a field begins. The middle borders of a row are
// the user's.
constexpr bool isDetermined(std::size_t which, int policy, bool inRow)
{
    return (policy == 0 || policy == 1) && !(inRow && which == 2);
}

} // namespace app
