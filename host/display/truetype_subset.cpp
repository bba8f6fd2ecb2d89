#include "display/truetype_subset.h"

#include <algorithm>
#include <array>
#include <vector>

namespace host::display {

namespace {

class Bytes {
public:
    std::string text;
    void u8(unsigned v) { text += static_cast<char>(v & 0xff); }
    void u16(unsigned v)
    {
        u8(v >> 8);
        u8(v);
    }
    void s16(int v) { u16(static_cast<unsigned>(v)); }
    void u32(std::uint32_t v)
    {
        u16(v >> 16);
        u16(v & 0xffff);
    }
    void pad(std::size_t multiple)
    {
        while (text.size() % multiple != 0) u8(0);
    }
};

// Delta coding of one coordinate: flag bits and bytes.
void putDelta(int delta, unsigned shortBit, unsigned sameBit, unsigned &flag, Bytes &bytes)
{
    if (delta == 0) {
        flag |= sameBit;
    } else if (delta > -256 && delta < 256) {
        flag |= shortBit | (delta > 0 ? sameBit : 0);
        bytes.u8(static_cast<unsigned>(delta > 0 ? delta : -delta));
    } else {
        bytes.s16(delta);
    }
}

void putFlags(const std::vector<unsigned> &flags, Bytes &out)
{
    constexpr unsigned repeat = 8;
    for (std::size_t i = 0; i < flags.size();) {
        std::size_t run = 1;
        while (i + run < flags.size() && flags[i + run] == flags[i] && run < 256) ++run;
        if (run > 2) {
            out.u8(flags[i] | repeat);
            out.u8(static_cast<unsigned>(run - 1));
        } else {
            for (std::size_t k = 0; k < run; ++k) out.u8(flags[i]);
        }
        i += run;
    }
}

void putGlyph(const GlyphShape &shape, Bytes &out)
{
    if (shape.contours.empty()) return; // a space has no entry at all
    out.s16(static_cast<int>(shape.contours.size()));
    for (const int edge : {shape.left, shape.bottom, shape.right, shape.top}) out.s16(edge);
    unsigned last = 0;
    for (const auto &contour : shape.contours) {
        last += static_cast<unsigned>(contour.size());
        out.u16(last - 1);
    }
    out.u16(0); // no instructions
    std::vector<unsigned> flags;
    Bytes xs, ys;
    int x = 0, y = 0;
    for (const auto &contour : shape.contours) {
        for (const GlyphPoint &point : contour) {
            unsigned flag = point.onCurve ? 1 : 0;
            putDelta(point.x - x, 2, 16, flag, xs);
            putDelta(point.y - y, 4, 32, flag, ys);
            flags.push_back(flag);
            x = point.x;
            y = point.y;
        }
    }
    putFlags(flags, out);
    out.text += xs.text + ys.text;
    out.pad(4);
}

class SubsetWriter {
public:
    SubsetWriter(const Face &face, std::span<const GlyphShape *const> shapes) : m_face(face)
    {
        add(face.shape(0));
        for (const GlyphShape *shape : shapes) add(*shape);
        m_loca.u32(static_cast<std::uint32_t>(m_glyf.text.size()));
    }

    std::string write()
    {
        // In the order of their names, as the format demands.
        const std::array<std::pair<const char *, std::string>, 6> tables{{{"glyf", m_glyf.text},
                                                                          {"head", head()},
                                                                          {"hhea", hhea()},
                                                                          {"hmtx", m_hmtx.text},
                                                                          {"loca", m_loca.text},
                                                                          {"maxp", maxp()}}};
        Bytes file;
        file.u32(0x00010000);
        file.u16(static_cast<unsigned>(tables.size()));
        file.u16(64); // search range, entry selector and range shift for six tables
        file.u16(2);
        file.u16(32);
        auto offset = static_cast<std::uint32_t>(12 + 16 * tables.size());
        for (const auto &[name, data] : tables) {
            file.text += name;
            file.u32(checksum(data));
            file.u32(offset);
            file.u32(static_cast<std::uint32_t>(data.size()));
            offset += static_cast<std::uint32_t>((data.size() + 3) / 4 * 4);
        }
        for (const auto &[name, data] : tables) {
            file.text += data;
            file.pad(4);
        }
        return std::move(file.text);
    }

private:
    void add(const GlyphShape &shape)
    {
        m_loca.u32(static_cast<std::uint32_t>(m_glyf.text.size()));
        m_hmtx.u16(static_cast<unsigned>(std::clamp(shape.advance, 0, 0xffff)));
        m_hmtx.s16(shape.left);
        putGlyph(shape, m_glyf);
        ++m_count;
        m_left = std::min(m_left, shape.left);
        m_right = std::max(m_right, shape.right);
        m_bottom = std::min(m_bottom, shape.bottom);
        m_top = std::max(m_top, shape.top);
        unsigned points = 0;
        for (const auto &contour : shape.contours) points += static_cast<unsigned>(contour.size());
        m_points = std::max(m_points, points);
        m_contours = std::max(m_contours, static_cast<unsigned>(shape.contours.size()));
    }

    static std::uint32_t checksum(const std::string &data)
    {
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i < data.size(); ++i)
            sum += static_cast<std::uint32_t>(static_cast<unsigned char>(data[i]))
                   << (24 - 8 * (i % 4));
        return sum;
    }

    std::string head() const
    {
        Bytes table;
        table.u32(0x00010000); // version
        table.u32(0x00010000); // revision
        table.u32(0);          // checksum of the whole, which no reader of a PDF looks at
        table.u32(0x5f0f3cf5);
        table.u16(0); // flags
        table.u16(static_cast<unsigned>(m_face.unitsPerEm()));
        for (int i = 0; i < 4; ++i) table.u32(0); // made and changed: never, so that bytes repeat
        for (const int edge : {m_left, m_bottom, m_right, m_top}) table.s16(edge);
        table.u16(0); // style
        table.u16(8); // smallest readable size
        table.s16(2);
        table.s16(1); // long offsets in loca
        table.s16(0);
        return std::move(table.text);
    }

    std::string hhea() const
    {
        Bytes table;
        table.u32(0x00010000);
        table.s16(m_face.ascender());
        table.s16(m_face.descender());
        table.s16(0);
        table.u16(0xffff); // greatest advance: unknown is allowed
        for (int i = 0; i < 11; ++i) table.s16(i == 3 ? 1 : 0); // caret upright
        table.u16(m_count);
        return std::move(table.text);
    }

    std::string maxp() const
    {
        Bytes table;
        table.u32(0x00010000);
        table.u16(m_count);
        table.u16(m_points);
        table.u16(m_contours);
        for (int i = 0; i < 2; ++i) table.u16(0); // no composites
        table.u16(2);                             // zones
        for (int i = 0; i < 8; ++i) table.u16(0);
        return std::move(table.text);
    }

    const Face &m_face;
    Bytes m_glyf;
    Bytes m_loca;
    Bytes m_hmtx;
    unsigned m_count = 0;
    unsigned m_points = 0;
    unsigned m_contours = 0;
    int m_left = 0;
    int m_right = 0;
    int m_bottom = 0;
    int m_top = 0;
};

} // namespace

std::string trueTypeSubset(const Face &face, std::span<const GlyphShape *const> shapes)
{
    return SubsetWriter(face, shapes).write();
}

} // namespace host::display
