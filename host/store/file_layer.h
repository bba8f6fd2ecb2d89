// Every write, sync and rename of a part file goes through here or through the shim in vfs.h, one step
// at a time, so that a test can make any of them fail or be the last.
#pragma once

#include <string>
#include <string_view>

namespace host::store::files {

// Raised by the calls below: the failed step and the system's error number.
struct FileError {
    const char *step;
    int number;
};
std::string describe(const FileError &error); // "write: No space left on device"

// Runs before each step. 0: go on; kTorn: half of a write is done, then it fails; another number: the
// step fails with this system error. Null: no hook.
using Hook = int (*)(const char *step, const std::string &path);
inline constexpr int kTorn = -1;
void setHook(Hook hook);
int before(const char *step, const std::string &path);

// Where a chain of links ends; the path itself when it is none.
std::string followed(const std::string &path);

// The file has the new content or the old one, whatever happens on the way. A new file is written and
// synced without a name, gets its name, then the folder is synced. Throws FileError; what was there is
// still there then, unless only the last step failed. A link is followed.
enum class Existing { replace, keep }; // keep: FileError EEXIST when there is a file
void putDurably(const std::string &path, std::string_view content, Existing existing);

} // namespace host::store::files
