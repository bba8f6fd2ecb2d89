// A part's file as one piece of memory, for what reads one file after another.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace host::store {

class WholeFile {
public:
    using Fits =
        bool (*)(std::string_view head); // of the first 100 bytes, or of all that there are

    // The bytes are of one moment: nobody saves in place while they are read. False when the file cannot
    // be read, is not what `fits` looks for, is larger than `most`, somebody is saving, or an interrupted
    // save waits to be undone: who opens the part sees to that. Not while this process has the file open
    // itself: closing it takes the locks that the process holds of it.
    bool read(const std::string &path, std::size_t most, Fits fits = nullptr);
    std::string_view bytes() const { return {m_bytes.get(), m_size}; } // until the next read
    // The last one was not read, and that for nothing but its size.
    bool wasTooLarge() const { return m_tooLarge; }

    // So many zeros stand behind the bytes: who follows a damaged place near the end reads those.
    static constexpr std::size_t kSlack = 256;

private:
    void makeRoom(std::size_t size);

    std::unique_ptr<char[]> m_bytes; // kept from file to file
    std::size_t m_room = 0;
    std::size_t m_size = 0;
    bool m_tooLarge = false;
};

} // namespace host::store
