// The full form: records as text, every slot by its key, what a record owns in stored order.
#pragma once

#include "app/authoring/record.h"
#include "app/authoring/yaml_reader.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace app::authoring {

std::string recordsToText(const RecordFile &file);
// One record as an element of a list, `depth` levels below the top.
std::string recordToText(const RecordTree &record, int depth);
// The value of one slot as the full form writes it.
std::string slotText(const RecordTree &record, const SlotInfo &slot);
// All keys of a record as the full form writes them, with their values; a slot that is not stored has none.
std::vector<std::pair<std::string, std::string>> storedKeys(const RecordTree &record);
// The `records:` of a file.
std::vector<RecordTree> readRecords(YamlFile &file, const YAML::Node &node);

// One record in the midst of the cell form, of one of the kinds; `where` names it in complaints.
std::optional<RecordTree> readRecord(YamlFile &file, const YAML::Node &node,
                                     const std::vector<std::string> &words,
                                     const std::string &where);
bool isWholeRecord(const YAML::Node &node); // a mapping with `kind`

} // namespace app::authoring
