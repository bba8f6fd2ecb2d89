// Many values of a sheet at once.
#pragma once

#include "app/data_file.h"
#include "app/field_fit.h"
#include "app/values.h"

#include <string>
#include <vector>

namespace app {

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
