// Data files with the values of a sheet's fields.
#pragma once

#include "app/field_fit.h"
#include "app/values.h"

#include <string>
#include <vector>

namespace app {

// JSON: an object of field names to texts, numbers or lists of lines, nested by block where one likes;
// `record` picks a member of the file's object, or an index of its list.
// CSV: two columns "field,value" with a field a row, or a column a field with a record a row; `record`
// is then the value of a record's first cell.
struct DataFile {
    std::string path;
    Json values;
};
DataFile readData(const std::string &path, const std::string &record);

struct MisfitReport {
    FieldName name;
    Misfit misfit;
};

struct FillReport {
    std::vector<FieldName> set;
    std::vector<FieldName> missing; // fields of the sheet that the file does not name
    std::vector<MisfitReport> misfits;
};

// Sets everything that the file holds. Names that the sheet lacks, and locked fields unless `force`,
// are a Problem that lists them all; nothing is set then.
FillReport fillIn(const Workspace &work, const SheetRef &sheet, const DataFile &data,
                  bool force = false);
// To the standard error, a line a value.
void printMisfits(const Options &options, const std::string &place,
                  const std::vector<MisfitReport> &misfits);

} // namespace app
