// Families of sheets: a size record and the art of its frame for each size that `sheets:` names.
#pragma once

#include "app/authoring/model.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

struct Rectangle {
    ArtPoint low;
    ArtPoint high;
};

struct Sheet {
    Size size;
    // The frame; marks are left out where they would cross one of the rectangles.
    std::function<Art(const std::vector<Rectangle> &occupied)> frame;
};

enum class SheetFamily { iso, asme };

// Empty when the family has no such size. `font` is that of the grid labels.
std::optional<Sheet> familySheet(SheetFamily family, const std::string &id,
                                 const std::string &font);
std::string familyIds(SheetFamily family); // for complaints
int familyUnits(SheetFamily family);       // 1 millimetres, 2 inches

} // namespace app::authoring
