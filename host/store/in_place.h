// A part's file brought up to date: the rows that changed, in one transaction.
#pragma once

#include "model/object.h"

#include <string>

namespace host::store {

// Result: how many rows were written, changed or deleted. Throws StoreError; the file is then as it
// was. On success what the part knows of its file is up to date.
long long saveInPlace(Part &part, const std::string &path);

} // namespace host::store
