// The full form: records as text, every slot by its key, what a record owns in stored order.
#pragma once

#include "app/authoring/record.h"
#include "app/authoring/yaml_reader.h"

#include <string>
#include <vector>

namespace app::authoring {

std::string recordsToText(const RecordFile &file);
// The `records:` of a file.
std::vector<RecordTree> readRecords(YamlFile &file, const YAML::Node &node);

} // namespace app::authoring
