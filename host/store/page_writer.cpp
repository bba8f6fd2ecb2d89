#include "page_writer.h"

#include "pages.h"
#include "schema.h"

#include <algorithm>
#include <iterator>

namespace host::store {

namespace {

// Where the database's locks are: a page that holds nothing.
constexpr PageWriter::Number kLockPage = 0x40000000 / kPageSize + 1;

// Big-endian.
void appendBytes(std::string &out, std::uint64_t value, int size)
{
    for (int i = size - 1; i >= 0; --i) out += static_cast<char>(value >> (8 * i));
}

void putBytes(char *at, std::uint64_t value, int size)
{
    for (int i = size - 1; i >= 0; --i) *at++ = static_cast<char>(value >> (8 * i));
}

// Seven bits a byte, eight in the ninth.
void appendVarint(std::string &out, std::uint64_t value)
{
    char bytes[9];
    char *const end = std::end(bytes);
    char *at = end;
    if (value >> 56) {
        *--at = static_cast<char>(value);
        value >>= 8;
        for (int i = 0; i < 8; ++i, value >>= 7) *--at = static_cast<char>(value | 0x80);
    } else {
        *--at = static_cast<char>(value & 0x7f);
        while (value >>= 7) *--at = static_cast<char>(value | 0x80);
    }
    out.append(at, static_cast<std::size_t>(end - at));
}

} // namespace

// --- rows -----------------------------------------------------------------------------------

void RowBytes::number(std::int64_t value)
{
    if (value == 0 || value == 1) {
        m_types += static_cast<char>(8 + value);
        return;
    }
    constexpr int kSizes[] = {1, 2, 3, 4, 6, 8};
    std::size_t type = 0;
    while (kSizes[type] < 8 && value >> (8 * kSizes[type] - 1) != value >> 63) ++type;
    m_types += static_cast<char>(type + 1);
    appendBytes(m_values, static_cast<std::uint64_t>(value), kSizes[type]);
}

void RowBytes::bytes(std::string_view value, unsigned type)
{
    if (value.empty()) return null();
    appendVarint(m_types, 2 * value.size() + type);
    m_values.append(value);
}

void RowBytes::appendTo(std::string &out) const
{
    const std::size_t size = m_types.size() + 1; // its own size in front
    appendVarint(out, size > 0x7f ? size + 1 : size);
    out.append(m_types).append(m_values);
}

// --- pages ----------------------------------------------------------------------------------

PageWriter::PageWriter(std::string &file, Number root, Kind kind)
    : m_file(file), m_root(root), m_kind(kind)
{}

PageWriter::Number PageWriter::newPage()
{
    if (m_file.size() / kPageSize + 1 == kLockPage) m_file.append(kPageSize, '\0');
    m_file.append(kPageSize, '\0');
    return static_cast<Number>(m_file.size() / kPageSize);
}

// What of a row does not stand on its page: a chain of pages, each begins with the number of the next.
PageWriter::Number PageWriter::putRest(std::string_view rest)
{
    constexpr std::size_t kRoom = kPageSize - 4;
    const Number first = newPage();
    for (Number page = first;;) {
        const std::size_t at = std::size_t{page - 1} * kPageSize;
        m_file.replace(at + 4, std::min(rest.size(), kRoom), rest.substr(0, kRoom));
        if (rest.size() <= kRoom) return first;
        rest.remove_prefix(kRoom);
        page = newPage();
        putBytes(m_file.data() + at, page, 4);
    }
}

void PageWriter::append(Page &page, std::string_view cell)
{
    page.cells.append(cell);
    page.sizes.push_back(static_cast<std::uint16_t>(cell.size()));
}

std::string PageWriter::takeLast(Page &page)
{
    const std::size_t rest = page.cells.size() - page.sizes.back();
    std::string cell = page.cells.substr(rest);
    page.cells.resize(rest);
    page.sizes.pop_back();
    return cell;
}

bool PageWriter::fits(const Page &page, std::size_t size, bool inner)
{
    const std::size_t places = 2 * (page.sizes.size() + 1);
    return (inner ? 12 : 8) + places + page.cells.size() + size <= kPageSize;
}

// Cells from the end of the page, their places behind its header.
void PageWriter::put(Number number, const Page &page, bool inner, Number right)
{
    char *const start = m_file.data() + std::size_t{number - 1} * kPageSize;
    std::size_t at = kPageSize;
    std::size_t from = 0;
    char *place = start + (inner ? 12 : 8);
    for (const std::uint16_t size : page.sizes) {
        at -= size;
        page.cells.copy(start + at, size, from);
        from += size;
        putBytes(place, at, 2);
        place += 2;
    }
    *start = static_cast<char>((m_kind == Kind::table ? 0x05 : 0x02) + (inner ? 0 : 8));
    putBytes(start + 3, page.sizes.size(), 2);
    putBytes(start + 5, at, 2);
    if (inner) putBytes(start + 8, right, 4);
}

PageWriter::Number PageWriter::putNew(const Page &page, bool inner, Number right)
{
    const Number number = newPage();
    put(number, page, inner, right);
    return number;
}

// The page `below` is full and `key` follows it. A full page on this level ends with the page that its last
// cell leads to, and the key of that cell goes further up.
void PageWriter::ascend(std::size_t level, Number below, std::string_view key)
{
    if (level == m_inner.size()) m_inner.emplace_back();
    std::string cell;
    appendBytes(cell, below, 4);
    cell.append(key);
    if (!fits(m_inner[level], cell.size(), true)) {
        const std::string last = takeLast(m_inner[level]);
        Number right = 0;
        for (int i = 0; i < 4; ++i) right = right << 8 | static_cast<unsigned char>(last[i]);
        const Number number = putNew(m_inner[level], true, right);
        m_inner[level] = {};
        ascend(level + 1, number, std::string_view(last).substr(4));
    }
    append(m_inner[level], cell);
}

void PageWriter::add(std::int64_t key, const RowBytes &row)
{
    const bool table = m_kind == Kind::table;
    m_row.clear();
    row.appendTo(m_row);
    m_cell.clear();
    appendVarint(m_cell, m_row.size());
    if (table) appendVarint(m_cell, static_cast<std::uint64_t>(key));
    const std::size_t local = localSize(m_row.size(), table);
    m_cell.append(m_row, 0, local);
    if (local < m_row.size())
        appendBytes(m_cell, putRest(std::string_view(m_row).substr(local)), 4);
    if (!fits(m_leaf, m_cell.size(), false)) {
        // Between two leaves of a table stands the last key of the first, between those of an index a row.
        std::string between;
        if (table)
            appendVarint(between, static_cast<std::uint64_t>(m_lastKey));
        else
            between = takeLast(m_leaf);
        const Number number = putNew(m_leaf, false);
        m_leaf.cells.clear(), m_leaf.sizes.clear();
        ascend(0, number, between);
    }
    append(m_leaf, m_cell);
    m_lastKey = key;
}

void PageWriter::finish()
{
    const Page *page = &m_leaf;
    Number right = 0;
    bool inner = false;
    for (const Page &above : m_inner) {
        right = putNew(*page, inner, right);
        page = &above;
        inner = true;
    }
    put(m_root, *page, inner, right);
}

} // namespace host::store
