// The checksum of a stored row: 64 bits over the table's name and every value in column order. Each
// step is a bijection of the state, so a change confined to one word of a row is always noticed.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace host::store {

class Checksum {
public:
    explicit Checksum(std::string_view table) { bytes(table); }

    void number(std::int64_t value) { word(static_cast<std::uint64_t>(value)); }

    // The length goes first: "ab" + "c" and "a" + "bc" differ. NULL counts as no bytes.
    void bytes(std::string_view value)
    {
        word(value.size());
        const char *at = value.data();
        std::size_t left = value.size();
        for (; left >= 8; at += 8, left -= 8) {
            std::uint64_t next;
            std::memcpy(&next, at, 8);
            word(next);
        }
        if (left) {
            std::uint64_t last = 0;
            std::memcpy(&last, at, left);
            word(last);
        }
    }

    std::int64_t value() const { return static_cast<std::int64_t>(m_state); }

private:
    void word(std::uint64_t next)
    {
        m_state = (m_state ^ next) * 0x9e3779b97f4a7c15u;
        m_state ^= m_state >> 32;
    }

    std::uint64_t m_state = 0x716566706172740au; // any fixed start
};

} // namespace host::store
