// defs: definition texts and parts, read alike.
#pragma once

#include "app/authoring/complaints.h"
#include "app/authoring/model.h"
#include "app/authoring/record.h"
#include "app/workspace.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace app {

struct NamedFile {
    std::string name;
    int units = 1; // 1 millimetres, 2 inches
    std::optional<authoring::Library> library;
    std::vector<authoring::RecordTree> records;
    std::vector<authoring::Complaint> complaints; // why it could not be read
    std::function<std::optional<std::string>(const std::string &)> patternPath;
};

// A `.prt` is a part, anything else a text. Throws what readLibrary and readDefinitionPart throw.
NamedFile readEither(Workspace &work, const std::string &path, const std::string &language);

// The definition part of an option like --keep-order-of; what is no part is a Problem with the remedy.
authoring::RecordFile readOlderPart(Workspace &work, const std::string &option,
                                    const std::string &path);

// Where a pattern of a definition file lies: beside it, or along the search directories.
std::optional<std::string> findPattern(const std::string &file, const std::string &name);

// Whatever --defs says: files that are named need no others.
Options withoutDefinitions(const Options &options);

} // namespace app
