#include "rows.h"

#include "checksum.h"
#include "database.h"
#include "pack.h"

namespace host::store {

namespace {

struct Binder {
    Statement &statement;
    Checksum checksum;

    void number(std::int64_t value) { statement.bind(value), checksum.number(value); }
    void text(std::string_view value) { statement.bindText(value), checksum.bytes(value); }
    void blob(std::string_view value) { statement.bindBlob(value), checksum.bytes(value); }
};

struct Reader {
    Statement &statement;
    Checksum checksum;

    void number(std::int64_t &value) { checksum.number(value = statement.integer()); }
    void text(std::string_view &value) { checksum.bytes(value = statement.text()); }
    void blob(std::string_view &value) { checksum.bytes(value = statement.blob()); }
};

struct Summer {
    Checksum checksum;

    void number(std::int64_t value) { checksum.number(value); }
    void text(std::string_view value) { checksum.bytes(value); }
    void blob(std::string_view value) { checksum.bytes(value); }
};

} // namespace

template <class Row> std::int64_t checksumOf(Row row)
{
    Summer summer{Checksum(Row::kTable)};
    row.columns(summer);
    return summer.checksum.value();
}

template <class Row> std::int64_t write(Statement &insert, Row row)
{
    Binder binder{insert, Checksum(Row::kTable)};
    row.columns(binder);
    const std::int64_t checksum = binder.checksum.value();
    insert.bind(checksum);
    insert.run();
    return checksum;
}

template <class Row> std::int64_t read(Statement &select, Row &row)
{
    Reader reader{select, Checksum(Row::kTable)};
    row.columns(reader);
    const std::int64_t checksum = reader.checksum.value();
    if (select.integer() != checksum) throw Malformed{"its checksum does not match"};
    return checksum;
}

template std::int64_t write(Statement &, ObjectRow);
template std::int64_t write(Statement &, AttributeRow);
template std::int64_t write(Statement &, MasterRow);
template std::int64_t write(Statement &, PartRow);
template std::int64_t checksumOf(ObjectRow);
template std::int64_t checksumOf(AttributeRow);
template std::int64_t checksumOf(MasterRow);
template std::int64_t checksumOf(PartRow);
template std::int64_t read(Statement &, ObjectRow &);
template std::int64_t read(Statement &, AttributeRow &);
template std::int64_t read(Statement &, MasterRow &);
template std::int64_t read(Statement &, PartRow &);

} // namespace host::store
