// Formats in the words of the cell form.
#pragma once

#include "app/authoring/fold.h"
#include "app/authoring/model.h"
#include "app/authoring/sheet_family.h"

#include <functional>
#include <optional>
#include <string>

namespace app::authoring {

// The art of a pattern by its name; nothing when there is none or it is not the art of that name.
using PatternArt = std::function<std::optional<Art>(const std::string &name)>;

// Decides for every size whether it is tried as one of the family.
void planSizes(Fold &format, SheetFamily family, const std::string &font);

// `key: ...` and what stands below it, indented by two.
std::string formatText(Fold &format, const std::string &key, SheetFamily family, int units,
                       const PatternArt &patterns);

} // namespace app::authoring
