// What is doubtful about definitions that can be read: what would be seen only on a drawing, or never.
#pragma once

#include "app/authoring/model.h"
#include "app/authoring/record.h"

#include <functional>
#include <string>
#include <vector>

namespace app::authoring {

struct Finding {
    std::string file;
    std::string where; // "block TITLE, field number"
    std::string text;  // what is wrong and what would be right
};

struct CheckedFile {
    std::string name;
    std::vector<RecordTree> records;
    const Library *library = nullptr;                           // of a text; null for a part
    std::function<bool(const std::string &pattern)> hasPattern; // empty: not to be looked at
};

// All files of one site together: what one names may stand in another.
std::vector<Finding> checkDefinitions(const std::vector<CheckedFile> &files);

} // namespace app::authoring
