#include "display/kerning.h"

#include <bit>
#include <map>
#include <vector>

namespace host::display {

namespace {

// Big-endian reading; whatever lies outside the table reads as 0.
class Table {
public:
    explicit Table(std::span<const unsigned char> bytes, std::size_t offset = 0)
        : m_bytes(bytes), m_offset(offset)
    {}

    unsigned u16(std::size_t at) const
    {
        at += m_offset;
        return at + 2 <= m_bytes.size() ? m_bytes[at] * 256u + m_bytes[at + 1] : 0;
    }
    int s16(std::size_t at) const { return static_cast<std::int16_t>(u16(at)); }
    unsigned u32(std::size_t at) const { return u16(at) << 16 | u16(at + 2); }
    Table at(std::size_t offset) const { return Table(m_bytes, m_offset + offset); }

private:
    std::span<const unsigned char> m_bytes;
    std::size_t m_offset;
};

std::vector<unsigned> coverage(const Table &table)
{
    std::vector<unsigned> glyphs;
    const unsigned count = table.u16(2);
    for (unsigned i = 0; i < count; ++i) {
        if (table.u16(0) == 1) {
            glyphs.push_back(table.u16(4 + 2 * i));
        } else {
            const unsigned last = table.u16(6 + 6 * i);
            for (unsigned g = table.u16(4 + 6 * i); g <= last; ++g) glyphs.push_back(g);
        }
    }
    return glyphs;
}

// Glyphs that are not listed are of class 0.
std::map<unsigned, unsigned> classes(const Table &table)
{
    std::map<unsigned, unsigned> result;
    if (table.u16(0) == 1) {
        for (unsigned i = 0; i < table.u16(4); ++i) result[table.u16(2) + i] = table.u16(6 + 2 * i);
    } else {
        for (unsigned i = 0; i < table.u16(2); ++i)
            for (unsigned g = table.u16(4 + 6 * i); g <= table.u16(6 + 6 * i); ++g)
                result[g] = table.u16(8 + 6 * i);
    }
    return result;
}

class PairReader {
public:
    std::unordered_map<std::uint32_t, int> pairs;

    void lookup(const Table &table)
    {
        constexpr unsigned pairAdjustment = 2, extension = 9;
        for (unsigned i = 0; i < table.u16(4); ++i) {
            const Table sub = table.at(table.u16(6 + 2 * i));
            if (table.u16(0) == pairAdjustment) subtable(sub);
            if (table.u16(0) == extension && sub.u16(2) == pairAdjustment)
                subtable(sub.at(sub.u32(4)));
        }
    }

private:
    // The advance of the first glyph is what kerning changes; it stands behind the two placements.
    static std::size_t sizeOf(unsigned valueFormat)
    {
        return 2 * static_cast<std::size_t>(std::popcount(valueFormat & 0xffu));
    }
    static std::size_t advanceAt(unsigned valueFormat) { return sizeOf(valueFormat & 3u); }

    void subtable(const Table &table)
    {
        const unsigned format1 = table.u16(4), format2 = table.u16(6);
        if (!(format1 & 4u)) return;
        const auto first = coverage(table.at(table.u16(2)));
        if (table.u16(0) == 1) pairLists(table, first, format1, format2);
        if (table.u16(0) == 2) classPairs(table, first, format1, format2);
    }

    void pairLists(const Table &table, const std::vector<unsigned> &first, unsigned format1,
                   unsigned format2)
    {
        const std::size_t size = 2 + sizeOf(format1) + sizeOf(format2);
        for (std::size_t i = 0; i < first.size() && i < table.u16(8); ++i) {
            const Table list = table.at(table.u16(10 + 2 * i));
            for (std::size_t j = 0; j < list.u16(0); ++j)
                add(first[i], list.u16(2 + size * j),
                    list.s16(2 + size * j + 2 + advanceAt(format1)));
        }
    }

    void classPairs(const Table &table, const std::vector<unsigned> &first, unsigned format1,
                    unsigned format2)
    {
        const auto class1 = classes(table.at(table.u16(8)));
        const auto class2 = classes(table.at(table.u16(10)));
        const std::size_t count2 = table.u16(14), size = sizeOf(format1) + sizeOf(format2);
        for (const unsigned glyph : first) {
            const auto known = class1.find(glyph);
            const std::size_t row = known == class1.end() ? 0 : known->second;
            for (const auto &[second, column] : class2)
                add(glyph, second,
                    table.s16(16 + (row * count2 + column) * size + advanceAt(format1)));
        }
    }

    void add(unsigned first, unsigned second, int move)
    {
        constexpr std::size_t enough = 100'000; // a damaged table may claim any number
        if (move != 0 && pairs.size() < enough) pairs.try_emplace(first << 16 | second, move);
    }
};

} // namespace

std::unordered_map<std::uint32_t, int> kerningPairs(std::span<const unsigned char> gpos)
{
    const Table table(gpos);
    const Table lookups = table.at(table.u16(8));
    PairReader reader;
    for (unsigned i = 0; i < lookups.u16(0); ++i) reader.lookup(lookups.at(lookups.u16(2 + 2 * i)));
    return std::move(reader.pairs);
}

} // namespace host::display
