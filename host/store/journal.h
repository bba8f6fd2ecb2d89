// The journal beside a part's file: there only while somebody saves in place, or after a crash then.
#pragma once

#include "database.h"

#include <memory>
#include <string>

namespace host::store {

// If a save was cut off, puts the file back to what it was before. Where that cannot be done (a folder
// that may not be written to) the file cannot be read either, and reading it says so.
void finishInterruptedSave(const std::string &path);

// Before a whole new file takes the name: a journal without its file would be taken for the new
// file's and spoil it. What is there is put back to what it was before an interrupted save, and nobody can
// save into it until the result goes (nothing is there, or nothing that could be saved into: null). Throws
// StoreError when somebody is saving, or when the file may not be written.
std::unique_ptr<Database> lockedForReplacement(const std::string &path);

} // namespace host::store
