// Files with values of fields.
#pragma once

#include "app/output.h"

#include <string>

namespace app {

// JSON: an object of field names to texts, numbers or lists of lines, nested by block where one likes;
// `record` picks a member of the file's object, or an index of its list.
// CSV: two columns "field,value" with a field a row, or a column a field with a record a row; `record`
// is then the value of a record's first cell.
struct DataFile {
    std::string path;
    Json values;           // an object
    bool isRecord = false; // one of several that the file holds
};

// A Problem that names the file, and the records that it holds where one has to be chosen.
DataFile readData(const std::string &path, const std::string &record);

// "a, b, c"; of very many the first ones and how many more there are.
std::string shortList(const std::vector<std::string> &names);

} // namespace app
