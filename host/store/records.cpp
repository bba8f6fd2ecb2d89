// The records of part files without the parts: a pass over the rows that carry values.
#include "body_codec.h"
#include "geometry_codec.h"
#include "pack.h"
#include "rows.h"
#include "schema.h"
#include "successive.h"
#include "texts.h"
#include "whole_file.h"

#include "nxhost/records.h"

#include <algorithm>
#include <cstring>
#include <memory_resource>
#include <sqlite3.h>

namespace host::store {

namespace {

using nxhost::StoredAttribute;
using nxhost::StoredRecord;
using nxhost::StoredRecords;

std::uint32_t bigEndian(std::string_view bytes)
{
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

// The head of a database file says whose it is: https://www.sqlite.org/fileformat.html.
bool isPart(std::string_view bytes)
{
    return bytes.size() >= 100 && bytes.starts_with(std::string_view("SQLite format 3", 16)) &&
           bigEndian(bytes.substr(68)) == kApplicationId && bigEndian(bytes.substr(60)) == kVersion;
}

// What stands until the next file is read; given back all at once.
class Arena {
public:
    // Not yet filled.
    template <class T> std::span<T> take(std::size_t count)
    {
        return {static_cast<T *>(m_memory.allocate(count * sizeof(T), alignof(T))), count};
    }
    std::span<char> copy(std::string_view text)
    {
        const auto copied = take<char>(text.size());
        std::copy(text.begin(), text.end(), copied.begin());
        return copied;
    }
    std::string_view text(std::string_view text)
    {
        const auto copied = copy(text);
        return {copied.data(), copied.size()};
    }
    void clear() { m_memory.release(); }

private:
    static constexpr std::size_t kUsual = 64 << 10;
    const std::unique_ptr<std::byte[]> m_first{new std::byte[kUsual]};
    std::pmr::monotonic_buffer_resource m_memory{m_first.get(), kUsual};
};

// The values of one part's rows.
class Decoder {
public:
    explicit Decoder(const std::vector<std::string> &classes) : m_classes(classes) {}

    void clear()
    {
        m_found.records.clear(), m_found.notes.clear(), m_found.sheets.clear();
        m_attributes.clear();
        m_arena.clear();
    }
    void take(const ObjectRow &row)
    {
        if (row.status != static_cast<std::int64_t>(Status::alive)) return;
        checkUnused(row);
        const auto number = static_cast<nxhost::RowNumber>(row.ordinal);
        if (row.kind == "udo")
            takeRecord(number, row);
        else if (row.kind == "note")
            takeNote(number, row);
        else
            m_found.sheets.push_back({number, m_arena.text(row.name)});
    }
    void take(const AttributeRow &row)
    {
        m_attributes.push_back({static_cast<nxhost::RowNumber>(row.object), m_arena.text(row.title),
                                m_arena.text(row.value)});
    }

    const StoredRecords &found() const { return m_found; }
    const std::vector<StoredAttribute> &attributes() const { return m_attributes; }

private:
    void takeRecord(nxhost::RowNumber number, const ObjectRow &row)
    {
        StoredRecord &record = m_found.records.emplace_back();
        record.row = number;
        const auto name = std::find(m_classes.begin(), m_classes.end(), row.className);
        if (name == m_classes.end()) return;
        record.className = *name;
        record.strings = linesOf(row.texts);
        record.ints = integersOf(row.numbers);
        record.links = linksOf(row.links);
        parseNumbers(row.owned, m_numbers);
        const auto owned = m_arena.take<nxhost::RowNumber>(m_numbers.size());
        std::copy(m_numbers.begin(), m_numbers.end(), owned.begin());
        record.owned = owned;
    }

    void takeNote(nxhost::RowNumber number, const ObjectRow &row)
    {
        m_found.notes.push_back({number, linesOf(row.texts)});
        Unpacker numbers(row.numbers);
        Note shape;
        unpack(numbers, shape);
        numbers.end();
    }

    std::span<const int> integersOf(std::string_view stored)
    {
        Unpacker numbers(stored);
        const auto integers = m_arena.take<int>(numbers.count(sizeof(int)));
        std::size_t reals = 0;
        for (int kind = 0; kind < 4; ++kind) reals += numbers.count(sizeof(double));
        numbers.values(integers);
        numbers.taken(reals * sizeof(double));
        numbers.end();
        return integers;
    }

    std::span<const nxhost::StoredLink> linksOf(std::string_view stored)
    {
        parseLinks(stored, m_links);
        const auto links = m_arena.take<nxhost::StoredLink>(m_links.size());
        std::transform(m_links.begin(), m_links.end(), links.begin(), [](const StoredLink &link) {
            if (link.type < 1 || link.type > 4) throw Malformed{"a link's type is not 1 to 4"};
            return nxhost::StoredLink{link.type, link.target, link.sequence};
        });
        return links;
    }

    std::span<const std::string_view> linesOf(std::string_view stored)
    {
        if (stored.empty()) return {};
        if (stored.back() != '\n') throw Malformed{"the last text is cut off"};
        const bool escapes = stored.find('\\') != stored.npos;
        const auto lines = m_arena.take<std::string_view>(
            static_cast<std::size_t>(std::count(stored.begin(), stored.end(), '\n')));
        char *at = m_arena.copy(stored).data();
        for (std::string_view &line : lines) {
            auto *const end = static_cast<char *>(std::memchr(at, '\n', stored.size()));
            const auto size = static_cast<std::size_t>(end - at);
            line = {at, escapes ? unescape(at, size) : size};
            at = end + 1;
        }
        return lines;
    }

    const std::vector<std::string> m_classes;
    Arena m_arena;
    StoredRecords m_found;
    std::vector<StoredAttribute> m_attributes;
    std::vector<StoredLink> m_links; // of one record: kept for the room they have
    std::vector<std::uint64_t> m_numbers;
};

// A row that was lost, or that is of another state of the part, shows in the sums.
void require(const Tally &found, const Tally &stored)
{
    if (found != stored) throw Malformed{"rows are missing or of another state of the part"};
}

PartRow partRowOf(Database &database)
{
    Statement &select = database.kept(PartRow::kSelect);
    PartRow row;
    if (!select.next()) throw Malformed{"the part's own row is missing"};
    read(select, row);
    row.layers = {}; // its bytes are the statement's
    select.restart();
    return row;
}

// Of rows without values the checksums alone are read.
bool hasValues(Statement &object)
{
    constexpr int kKind = 1; // column
    object.goTo(kKind);
    const std::string_view kind = object.text();
    object.goTo(0);
    if (kind == "udo" || kind == "note" || kind == "sheet") return true;
    kindIndex(kind);
    return false;
}

void readObjects(Database &database, Decoder &decoder)
{
    constexpr int kChecksum = 17; // column
    Statement &select = database.kept(ObjectRow::kSelect);
    Tally tally;
    ObjectRow row;
    while (select.next())
        if (hasValues(select)) {
            tally.add(read(select, row));
            decoder.take(row);
        } else {
            select.goTo(kChecksum);
            tally.add(select.integer());
        }
    require(tally, partRowOf(database).objects);
}

void readAttributes(Database &database, Decoder &decoder)
{
    Statement &select = database.kept(AttributeRow::kSelect);
    Tally tally;
    AttributeRow row;
    while (select.next()) {
        tally.add(read(select, row));
        decoder.take(row);
    }
    require(tally, partRowOf(database).attributes);
}

} // namespace

} // namespace host::store

class nxhost::RecordReader::Files {
public:
    explicit Files(const std::vector<std::string> &classes) : m_decoder(classes) {}

    const StoredRecords *read(const std::string &path)
    {
        m_decoder.clear();
        m_large.reset();
        m_sound = false;
        m_sound = (m_file.read(path, kInOnePiece, host::store::isPart) || m_file.wasTooLarge()) &&
                  attempt([&] {
                      m_database = &databaseOf(path);
                      readObjects(*m_database, m_decoder);
                  });
        return m_sound ? &m_decoder.found() : nullptr;
    }
    const std::vector<StoredAttribute> *attributes()
    {
        m_sound = m_sound && (!m_decoder.attributes().empty() ||
                              attempt([&] { readAttributes(*m_database, m_decoder); }));
        return m_sound ? &m_decoder.attributes() : nullptr;
    }

private:
    static constexpr std::size_t kInOnePiece = 16 << 20;

    // A large file is read page by page, within one transaction.
    host::store::Database &databaseOf(const std::string &path)
    {
        if (!m_file.wasTooLarge()) return m_databases.exchange(m_file.bytes());
        m_large = std::make_unique<host::store::Database>(path, SQLITE_OPEN_READONLY |
                                                                    SQLITE_OPEN_NOMUTEX);
        m_large->run("BEGIN");
        return *m_large;
    }

    template <class Body> bool attempt(const Body &body)
    {
        try {
            body();
            return true;
        } catch (const host::store::StoreError &) {
        } catch (const host::store::Malformed &) {
        } catch (...) { // memory ran out, say
            m_databases.forget();
            throw;
        }
        m_databases.forget();
        return false;
    }

    host::store::WholeFile m_file;
    std::unique_ptr<host::store::Database> m_large;
    host::store::Decoder m_decoder;
    host::store::SuccessiveDatabase m_databases;
    host::store::Database *m_database = nullptr; // of what was read last, when that is sound
    bool m_sound = false;
};

nxhost::RecordReader::RecordReader(std::vector<std::string> classes)
    : m_files(std::make_unique<Files>(classes))
{}

nxhost::RecordReader::~RecordReader() = default;

const nxhost::StoredRecords *nxhost::RecordReader::read(const std::string &path)
{
    return m_files->read(path);
}

const std::vector<nxhost::StoredAttribute> *nxhost::RecordReader::attributes()
{
    return m_files->attributes();
}
