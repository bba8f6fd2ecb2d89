// Numbers as bytes: little-endian, in a fixed order, doubles by their bits (NaN and -0 included).
#pragma once

#include "model/object.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace host::store {

static_assert(std::endian::native == std::endian::little, "packed numbers are copied as they are");

// What a decoder raises; the loader adds the file and the row.
struct Malformed {
    const char *what;
};

// A stored 64-bit integer as the int that it was.
inline int narrowed(std::int64_t value)
{
    if (value != static_cast<std::int32_t>(value)) throw Malformed{"a number is out of range"};
    return static_cast<int>(value);
}

class Packer {
public:
    explicit Packer(std::string &out) : m_out(out) {}

    void count(std::size_t n) { raw(static_cast<std::uint32_t>(n)); }
    void integer(int value) { raw(static_cast<std::int32_t>(value)); }
    void real(double value) { raw(value); }
    void point(const Vec3 &p) { real(p.x), real(p.y), real(p.z); }
    template <class T> void values(const std::vector<T> &all)
    {
        m_out.append(reinterpret_cast<const char *>(all.data()), all.size() * sizeof(T));
    }

private:
    template <class T> void raw(T value)
    {
        char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        m_out.append(bytes, sizeof value);
    }

    std::string &m_out;
};

class Unpacker {
public:
    explicit Unpacker(std::string_view in) : m_in(in) {}

    // Never more than the bytes that are left can hold: checked before anything is allocated.
    std::size_t count(std::size_t bytesEach)
    {
        const auto n = raw<std::uint32_t>();
        if (n > m_in.size() / bytesEach) throw Malformed{"a count exceeds the stored numbers"};
        return n;
    }
    // A count of things kept elsewhere: the caller compares it with what is there.
    std::size_t countElsewhere() { return raw<std::uint32_t>(); }
    int integer() { return raw<std::int32_t>(); }
    double real() { return raw<double>(); }
    Vec3 point()
    {
        Vec3 p;
        p.x = real(), p.y = real(), p.z = real();
        return p;
    }
    template <class T> void values(std::vector<T> &all, std::size_t n)
    {
        if (n > m_in.size() / sizeof(T)) throw Malformed{"a count exceeds the stored numbers"};
        all.resize(n);
        values(std::span<T>(all));
    }
    template <class T> void values(std::span<T> all)
    {
        const std::string_view bytes = taken(all.size_bytes());
        if (!bytes.empty()) std::memcpy(all.data(), bytes.data(), bytes.size());
    }
    std::string_view taken(std::size_t size)
    {
        if (m_in.size() < size) throw Malformed{"numbers are missing"};
        const std::string_view bytes = m_in.substr(0, size);
        m_in.remove_prefix(size);
        return bytes;
    }
    void end() const
    {
        if (!m_in.empty()) throw Malformed{"there are more numbers than its kind has"};
    }

private:
    template <class T> T raw()
    {
        T value;
        std::memcpy(&value, taken(sizeof value).data(), sizeof value);
        return value;
    }

    std::string_view m_in;
};

} // namespace host::store
