#include "pages.h"

#include "schema.h"

#include <algorithm>
#include <cstring>

namespace host::store {

namespace {

constexpr std::size_t kUsable = kPageSize; // no reserved bytes

std::uint64_t bigEndian(std::string_view bytes, std::size_t at, std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

// Seven bits a byte, eight in the ninth. False: it goes on behind the end.
bool readVarint(std::string_view bytes, std::size_t &at, std::uint64_t &value)
{
    value = 0;
    for (int i = 0; i < 9; ++i) {
        if (at >= bytes.size()) return false;
        const auto byte = static_cast<unsigned char>(bytes[at++]);
        if (i == 8) {
            value = value << 8 | byte;
            return true;
        }
        value = value << 7 | (byte & 0x7f);
        if (!(byte & 0x80)) return true;
    }
    return true;
}

} // namespace

std::size_t localSize(std::uint64_t size, bool table)
{
    const std::size_t most = table ? kUsable - 35 : (kUsable - 12) * 64 / 255 - 23;
    if (size <= most) return static_cast<std::size_t>(size);
    const std::size_t least = (kUsable - 12) * 32 / 255 - 23;
    const std::size_t rest = least + static_cast<std::size_t>((size - least) % (kUsable - 4));
    return rest <= most ? rest : least;
}

namespace {

// How many bytes a value of the type takes.
std::uint64_t sizeOfType(std::uint64_t type)
{
    constexpr std::uint64_t kSizes[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0, 0, 0};
    return type < 12 ? kSizes[type] : (type - 12) / 2;
}

Pages::Value valueOf(std::uint64_t type, std::string_view bytes)
{
    using Type = Pages::Value::Type;
    if (type == 0) return {};
    if (type <= 6) {
        const std::size_t bits = 8 * bytes.size();
        const std::uint64_t raw = bigEndian(bytes, 0, bytes.size()) << (64 - bits);
        return {Type::integer, static_cast<std::int64_t>(raw) >> (64 - bits), {}};
    }
    if (type == 7) return {Type::real, 0, bytes};
    if (type <= 9) return {Type::integer, static_cast<std::int64_t>(type - 8), {}};
    return {type % 2 ? Type::text : Type::blob, 0, bytes};
}

bool readValues(std::string_view payload, std::vector<Pages::Value> &values)
{
    std::size_t at = 0;
    std::uint64_t headerSize = 0;
    if (!readVarint(payload, at, headerSize) || headerSize > payload.size()) return false;
    const std::string_view header = payload.substr(0, static_cast<std::size_t>(headerSize));
    std::size_t body = header.size();
    while (at < header.size()) {
        std::uint64_t type = 0;
        if (!readVarint(header, at, type) || type == 10 || type == 11) return false;
        const std::uint64_t size = sizeOfType(type);
        if (size > payload.size() - body) return false;
        values.push_back(valueOf(type, payload.substr(body, static_cast<std::size_t>(size))));
        body += static_cast<std::size_t>(size);
    }
    return body == payload.size();
}

} // namespace

Pages::Pages(std::string_view bytes) : m_bytes(bytes), m_budget(2 * bytes.size())
{
    const std::size_t torn = bytes.size() % kPageSize;
    if (torn) {
        m_padded.assign(bytes).append(kPageSize - torn, '\0');
        m_bytes = m_padded;
    }
    m_count = static_cast<Number>(m_bytes.size() / kPageSize);
}

std::string_view Pages::bytesOf(Number page) const
{
    return m_bytes.substr(static_cast<std::size_t>(page - 1) * kPageSize, kPageSize);
}

Pages::Kind Pages::kind(Number page) const
{
    if (page < 1 || page > m_count) return Kind::other;
    switch (bytesOf(page)[startOf(page)]) {
    case 0x02:
        return Kind::indexInner;
    case 0x05:
        return Kind::tableInner;
    case 0x0a:
        return Kind::indexLeaf;
    case 0x0d:
        return Kind::tableLeaf;
    default:
        return Kind::other;
    }
}

std::vector<std::size_t> Pages::cellsOf(Number page) const
{
    std::vector<std::size_t> cells;
    const Kind of = kind(page);
    if (of == Kind::other) return cells;
    const std::string_view bytes = bytesOf(page);
    const std::size_t start = startOf(page);
    const bool inner = of == Kind::tableInner || of == Kind::indexInner;
    const std::size_t pointers = start + (inner ? 12 : 8);
    const auto n = static_cast<std::size_t>(bigEndian(bytes, start + 3, 2));
    const std::size_t end = std::min(pointers + 2 * n, bytes.size() - 1);
    for (std::size_t at = pointers; at + 1 < end; at += 2) {
        const auto cell = static_cast<std::size_t>(bigEndian(bytes, at, 2));
        if (cell >= end && cell < bytes.size()) cells.push_back(cell);
    }
    return cells;
}

std::vector<Pages::Number> Pages::childrenOf(Number page) const
{
    const Kind of = kind(page);
    if (of != Kind::tableInner && of != Kind::indexInner) return {};
    const std::string_view bytes = bytesOf(page);
    std::vector<Number> children;
    for (const std::size_t cell : cellsOf(page))
        if (cell + 4 <= bytes.size())
            children.push_back(static_cast<Number>(bigEndian(bytes, cell, 4)));
    children.push_back(static_cast<Number>(bigEndian(bytes, startOf(page) + 8, 4)));
    return children;
}

std::vector<Pages::Number> Pages::tree(Number root, std::vector<Number> &damaged) const
{
    std::vector<Number> pages;
    std::vector<char> seen(m_count + std::size_t{1}, 0);
    std::vector<Number> waiting{root};
    const bool table = kind(root) == Kind::tableInner || kind(root) == Kind::tableLeaf;
    while (!waiting.empty()) {
        const Number page = waiting.back();
        waiting.pop_back();
        const Kind of = kind(page);
        const bool fits = table ? of == Kind::tableInner || of == Kind::tableLeaf
                                : of == Kind::indexInner || of == Kind::indexLeaf;
        if (!fits || seen[page]) {
            damaged.push_back(page);
            continue;
        }
        seen[page] = 1;
        pages.push_back(page);
        const std::vector<Number> children = childrenOf(page);
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
    return pages;
}

std::vector<Pages::Number> Pages::freePages() const
{
    std::vector<Number> pages;
    if (m_count < 1) return pages;
    const auto stored = static_cast<std::size_t>(bigEndian(bytesOf(1), 36, 4));
    for (auto trunk = static_cast<Number>(bigEndian(bytesOf(1), 32, 4)); trunk;) {
        if (trunk < 2 || trunk > m_count || pages.size() > m_count) return {};
        const std::string_view bytes = bytesOf(trunk);
        pages.push_back(trunk);
        const auto n = static_cast<std::size_t>(bigEndian(bytes, 4, 4));
        if (n > kUsable / 4 - 2) return {};
        for (std::size_t i = 0; i < n; ++i)
            pages.push_back(static_cast<Number>(bigEndian(bytes, 8 + 4 * i, 4)));
        trunk = static_cast<Number>(bigEndian(bytes, 0, 4));
    }
    return pages.size() == stored ? pages : std::vector<Number>{};
}

// A row that does not fit its page goes on in a chain of others.
bool Pages::assemble(std::string_view local, std::uint64_t size, Number next,
                     std::string_view &bytes)
{
    if (size > m_budget) return false;
    m_budget -= static_cast<std::size_t>(size);
    std::string whole(local);
    while (whole.size() < size) {
        if (next < 2 || next > m_count) return false;
        const std::string_view page = bytesOf(next);
        whole.append(page.substr(4, static_cast<std::size_t>(size) - whole.size()));
        next = static_cast<Number>(bigEndian(page, 0, 4));
    }
    bytes = m_assembled.emplace_back(std::move(whole));
    return true;
}

bool Pages::payload(Number page, std::size_t at, bool table, Record &record,
                    std::string_view &bytes)
{
    const std::string_view whole = bytesOf(page);
    std::uint64_t size = 0;
    std::uint64_t key = 0;
    if (!readVarint(whole, at, size) || (table && !readVarint(whole, at, key))) return false;
    record.key = static_cast<std::int64_t>(key);
    const std::size_t local = localSize(size, table);
    const bool spills = local < size;
    if (local + (spills ? 4 : 0) > whole.size() - at) return false;
    bytes = whole.substr(at, local);
    if (!spills) return true;
    return assemble(bytes, size, static_cast<Number>(bigEndian(whole, at + local, 4)), bytes);
}

void Pages::forEachRecord(Number page, const std::function<void(const Record &)> &visit)
{
    const Kind of = kind(page);
    if (of == Kind::other || of == Kind::tableInner) return;
    for (std::size_t cell : cellsOf(page)) {
        if (of == Kind::indexInner) cell += 4; // behind the page below
        Record record;
        std::string_view bytes;
        record.whole = payload(page, cell, of == Kind::tableLeaf, record, bytes) &&
                       readValues(bytes, record.values);
        visit(record);
    }
}

} // namespace host::store
