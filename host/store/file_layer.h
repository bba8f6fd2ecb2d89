// Every write of a whole file goes through here: the plain calls of the system, one at a time, so that
// a test can make any of them fail.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host::store::files {

// Raised by the calls below: the failed step and the system's error number.
struct FileError {
    const char *step;
    int number;
};
std::string describe(const FileError &error); // "writing: No space left on device"

// Runs before each step ("create", "write", "sync", "rename", "sync folder"); a non-zero result is
// the error number with which the step then fails. Null: none.
using Hook = int (*)(const char *step, const std::string &path);
void setHook(Hook hook);
int before(const char *step, const std::string &path); // what the hook says, 0 without one

// The file has the new content or the old one, whatever happens on the way: a temporary file in
// the same folder is written, synced and renamed, then the folder is synced. Throws FileError; the
// temporary file is gone then.
enum class Existing { replace, keep }; // keep: FileError EEXIST when the file exists
void replaceDurably(const std::string &path, std::string_view content, Existing existing);

} // namespace host::store::files
