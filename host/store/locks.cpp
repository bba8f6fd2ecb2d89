#include "locks.h"

#include "uf_part.h"

#include <fcntl.h>
#include <fstream>
#include <unistd.h>

namespace host::store {

namespace {

// Where SQLite puts its locks: one byte each for a writer about to write and a writer at work, then
// the range that readers share.
constexpr off_t kFirstLockByte = 0x40000000;
constexpr off_t kLockBytes = 512;
constexpr off_t kFirstReaderByte = kFirstLockByte + 2;
constexpr off_t kReaderBytes = 510;

// Of the open file, not of the process. Closing the file nevertheless takes the locks that the process
// holds of it itself, SQLite's among them.
bool setLock(int file, short type, off_t first, off_t bytes)
{
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = first;
    lock.l_len = bytes;
    return ::fcntl(file, F_OFD_SETLK, &lock) == 0;
}

pid_t holderOf(const std::string &path)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return 0;
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kFirstLockByte;
    lock.l_len = kLockBytes;
    const bool held = ::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    ::close(file);
    return held && lock.l_pid > 0 ? lock.l_pid : 0;
}

std::string programOf(pid_t process)
{
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(process) + "/comm"), name);
    return name;
}

} // namespace

bool lockForReading(int file)
{
    // Who waits to write holds the first byte and lets no new reader in.
    const bool locked = setLock(file, F_RDLCK, kFirstLockByte, 1) &&
                        setLock(file, F_RDLCK, kFirstReaderByte, kReaderBytes);
    setLock(file, F_UNLCK, kFirstLockByte, 1);
    return locked;
}

StoreError lockedError(const std::string &path)
{
    std::string who = "another process, perhaps on another computer";
    if (const pid_t process = holderOf(path)) {
        who = "process " + std::to_string(process);
        const std::string program = programOf(process);
        if (!program.empty()) who += " (" + program + ")";
    }
    return {UF_PART_err_locked, path + ": the part is in use by " + who +
                                    ". Try again when it is done; the part in this session stays "
                                    "as it is."};
}

} // namespace host::store
