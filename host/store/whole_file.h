// A part's file as one piece of memory, for what reads one file after another.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

namespace host::store {

class WholeFile {
public:
    // The bytes are of one moment: nobody saves in place while they are read. False when the file cannot
    // be read, somebody is saving, or an interrupted save waits to be undone: who opens the part sees to
    // that, or it has more than `most` bytes.
    bool read(const std::string &path, std::size_t most = std::numeric_limits<std::size_t>::max());
    std::string_view bytes() const { return {m_bytes.get(), m_size}; } // until the next read

private:
    void makeRoom(std::size_t size);

    std::unique_ptr<char[]> m_bytes; // kept from file to file
    std::size_t m_room = 0;
    std::size_t m_size = 0;
};

} // namespace host::store
