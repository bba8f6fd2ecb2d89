// What is doubtful about definitions that can be read: what would be seen only on a drawing, or never.
#pragma once

#include "app/authoring/complaints.h"
#include "app/authoring/model.h"
#include "app/authoring/record.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

struct CheckedFile {
    std::string name;
    std::vector<RecordTree> records;
    const Library *library = nullptr; // of a text; null for a part
    // Whether there is a pattern of that name; empty: nobody knows.
    std::function<bool(const std::string &pattern)> hasPattern;
    // What a pattern draws, if it can be read. May be empty.
    std::function<std::optional<Art>(const std::string &pattern)> artOf;
};

// All files of one site together: what one names may stand in another. Needs the host to be started:
// texts are measured by its metrics.
std::vector<Complaint> checkDefinitions(const std::vector<CheckedFile> &files);

} // namespace app::authoring
