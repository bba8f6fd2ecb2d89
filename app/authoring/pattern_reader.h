// Pattern parts read back: the art that they were made of.
#pragma once

#include "app/authoring/model.h"

#include <optional>
#include <string>

namespace app::authoring {

// In the order in which it was drawn. Nothing when the file cannot be opened or holds what the art of a
// definition text cannot say.
std::optional<Art> readPattern(const std::string &path);

} // namespace app::authoring
