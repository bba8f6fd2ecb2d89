#include "remains.h"

#include "checksum.h"
#include "pack.h"
#include "schema.h"

#include <algorithm>
#include <iterator>

namespace host::store {

namespace {

using Value = Pages::Value;

// A record's values as the columns of a row, as Statement reads them.
struct Columns {
    const std::vector<Value> &values;
    Checksum checksum;
    std::size_t next = 0;

    void number(std::int64_t &value)
    {
        const Value &stored = values.at(next++);
        if (stored.type != Value::Type::integer) throw Malformed{"a value is not an integer"};
        checksum.number(value = stored.number);
    }
    void text(std::string_view &value) { bytes(value, Value::Type::text); }
    void blob(std::string_view &value) { bytes(value, Value::Type::blob); }

private:
    void bytes(std::string_view &value, Value::Type type)
    {
        const Value &stored = values.at(next++);
        if (stored.type != Value::Type::null && stored.type != type)
            throw Malformed{"a value is of another type"};
        if (stored.type == type && stored.bytes.empty())
            throw Malformed{"an empty value is not stored as NULL"};
        checksum.bytes(value = stored.bytes);
    }
};

struct Counter {
    std::size_t columns = 1; // the checksum
    void number(std::int64_t &) { ++columns; }
    void text(std::string_view &) { ++columns; }
    void blob(std::string_view &) { ++columns; }
};

template <class Row> std::size_t columnsOf()
{
    Row row;
    Counter counter;
    row.columns(counter);
    return counter.columns;
}

std::int64_t firstNumber(const Pages::Record &record)
{
    if (record.values.empty() || record.values[0].type != Value::Type::integer) return record.key;
    return record.values[0].number;
}

// Where the tables begin: as the file says, else where they are in every part.
std::map<std::string_view, Pages::Number> rootsOf(Pages &pages)
{
    std::map<std::string_view, Pages::Number> roots;
    for (std::size_t i = 0; i < std::size(kTables); ++i)
        roots[kTables[i]] = static_cast<Pages::Number>(i + 2);
    pages.forEachRecord(1, [&](const Pages::Record &record) {
        if (!record.whole || record.values.size() != 5) return;
        const auto known = roots.find(record.values[1].bytes);
        if (known != roots.end() && record.values[3].number > 1 &&
            record.values[3].number <= pages.count())
            known->second = static_cast<Pages::Number>(record.values[3].number);
    });
    return roots;
}

} // namespace

Remains::Remains(std::string_view bytes) : m_pages(bytes), m_used(m_pages.count() + 1, 0)
{
    takeTrees();
    if (!complete()) takeStrayPages();
}

bool Remains::complete() const
{
    const auto has = [](const Tally &tally, const auto &rows) {
        return tally.rows == static_cast<std::int64_t>(rows.size());
    };
    return part && damagedPages.empty() && spoiled.empty() && has(part->objects, objects) &&
           has(part->attributes, attributes) && has(part->masters, masters);
}

void Remains::takeTrees()
{
    for (const auto &[table, root] : rootsOf(m_pages)) {
        std::vector<Pages::Number> damaged;
        for (const Pages::Number page : m_pages.tree(root, damaged)) {
            m_used[page] = 1;
            take(page, table, false);
        }
        damagedPages.insert(damagedPages.end(), damaged.begin(), damaged.end());
    }
}

// Rows that no tree leads to any more. Free pages hold rows that were deleted: they stay so.
void Remains::takeStrayPages()
{
    for (const Pages::Number page : m_pages.freePages())
        if (page < m_used.size()) m_used[page] = 1;
    for (Pages::Number page = 2; page <= m_pages.count(); ++page)
        if (!m_used[page]) take(page, {}, true);
}

// A wrong row is put down to the table whose page it stands on; on a stray page it may be anything.
void Remains::take(Pages::Number page, std::string_view tableOfPage, bool stray)
{
    m_pages.forEachRecord(page, [&](const Pages::Record &record) {
        const Taken taken = take(record, stray);
        if (taken.good) return;
        const std::string_view table = stray ? taken.table : tableOfPage;
        if (table.empty()) return;
        Spoiled &row = spoiled.emplace_back();
        row.table = table;
        row.key = firstNumber(record);
        if (taken.table != ObjectRow::kTable) return;
        try {
            ObjectRow object;
            std::vector<Value> values = record.values;
            values[0] = {Value::Type::integer, record.key, {}};
            Columns read{values, Checksum(ObjectRow::kTable)};
            object.columns(read);
            row.object = object;
        } catch (const Malformed &) {
        }
    });
}

Remains::Taken Remains::take(const Pages::Record &record, bool stray)
{
    if (!record.whole) return {};
    const std::size_t n = record.values.size();
    if (n == columnsOf<ObjectRow>()) return {ObjectRow::kTable, takeAs<ObjectRow>(record, stray)};
    if (n == columnsOf<AttributeRow>())
        return {AttributeRow::kTable, takeAs<AttributeRow>(record, stray)};
    if (n == columnsOf<MasterRow>()) return {MasterRow::kTable, takeAs<MasterRow>(record, stray)};
    if (n == columnsOf<PartRow>()) return {PartRow::kTable, takeAs<PartRow>(record, stray)};
    return {};
}

template <class Row> bool Remains::takeAs(const Pages::Record &record, bool stray)
{
    std::vector<Value> values = record.values;
    // The key of a table's row stands beside the row.
    if (values[0].type == Value::Type::null) values[0] = {Value::Type::integer, record.key, {}};
    Columns columns{values, Checksum(Row::kTable)};
    Row row;
    try {
        row.columns(columns);
    } catch (const Malformed &) {
        return false;
    }
    const Value &checksum = values.back();
    if (checksum.type != Value::Type::integer || checksum.number != columns.checksum.value()) {
        if constexpr (std::is_same_v<Row, PartRow>) doubtfulPart = row;
        return false;
    }
    keep(row, stray);
    return true;
}

void Remains::keep(const PartRow &row, bool)
{
    if (!part) part = row;
}

void Remains::keep(const MasterRow &row, bool stray)
{
    strayRows += masters.try_emplace(row.id, row).second && stray;
}

void Remains::keep(const ObjectRow &row, bool stray)
{
    strayRows += objects.try_emplace(row.ordinal, row).second && stray;
}

void Remains::keep(const AttributeRow &row, bool stray)
{
    strayRows +=
        attributes.try_emplace(std::make_pair(row.object, row.position), row).second && stray;
}

} // namespace host::store
