#include "in_place.h"

#include "body_codec.h"
#include "masters.h"
#include "open.h"
#include "pack.h"
#include "part_row.h"
#include "vfs.h"

#include "uf_part.h"

#include <iterator>
#include <sqlite3.h>

namespace host::store {

namespace {

// The file under a writer's lock, found to be the one that the part was loaded from or saved to.
class LockedFile {
public:
    LockedFile(const std::string &path, std::int64_t root)
        : database(path, SQLITE_OPEN_READWRITE, steppingVfs())
    {
        sqlite3_busy_timeout(database.handle(), kPatienceMilliseconds);
        database.run("PRAGMA synchronous=EXTRA");
        database.run("BEGIN IMMEDIATE");
        requireInPlace();
        verifyFormat(database);
        readPartRow();
        if (m_root != root) throw changedOnDisk(path, "it was saved again by somebody else");
        verifyPages(database);
    }

    Database database;
    PartRow row; // its layers do not outlive the constructor

    // Not moved, removed or replaced while we waited, or while we wrote.
    void requireInPlace()
    {
        int moved = 0;
        sqlite3_file_control(database.handle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
        if (moved) throw changedOnDisk(database.path(), "it was removed or replaced");
    }

private:
    void readPartRow()
    {
        Statement select(database, PartRow::kSelect);
        if (!select.next()) throw damaged(database.path(), "the part's own row is missing");
        try {
            m_root = read(select, row);
        } catch (const Malformed &trouble) {
            throw damaged(database.path(), std::string("part 1: ") + trouble.what);
        }
    }

    std::int64_t m_root = 0;
};

class Update {
public:
    Update(Part &part, const std::string &path)
        : m_part(part), m_file(path, part.stored.root),
          m_masters(mastersOf(part, part.stored.masters)), m_encoder(part, m_masters.ids),
          m_row(m_file.row),
          m_checksumOfObject(database(), "SELECT checksum FROM object WHERE ordinal=?"),
          m_putObject(database(), ObjectRow::kInsert),
          m_dropObject(database(), "DELETE FROM object WHERE ordinal=?"),
          m_checksumsOfAttributes(database(), "SELECT checksum FROM attribute WHERE object=? "
                                              "ORDER BY position"),
          m_putAttribute(database(), AttributeRow::kInsert),
          m_dropAttribute(database(), "DELETE FROM attribute WHERE object=? AND position=?")
    {}

    // The new root, not yet committed.
    std::int64_t run()
    {
        for (const std::uint64_t ordinal : m_part.stored.removed) remove(ordinal);
        updateMasters();
        for (const std::uint64_t ordinal : m_part.stored.dirty) {
            const auto found = m_part.objects.find(ordinal); // none: remove() has done it
            if (found != m_part.objects.end()) update(*found->second);
        }
        for (auto made = m_part.objects.lower_bound(m_part.stored.firstNew);
             made != m_part.objects.end(); ++made)
            insert(*made->second);
        updateAttributes(0, m_part.attributes);
        return updatePart();
    }
    void commit()
    {
        database().run("COMMIT");
        m_file.requireInPlace();
    }
    long long rows() { return sqlite3_total_changes64(database().handle()); }
    MastersById takeMasters() { return std::move(m_masters.byId); }

private:
    Database &database() { return m_file.database; }

    // 0 rows or one: its checksum, if there is one.
    static bool ask(Statement &select, std::int64_t key, std::int64_t &checksum)
    {
        select.bind(key);
        const bool found = select.next();
        if (found) checksum = select.integer();
        select.restart();
        return found;
    }

    void remove(std::uint64_t ordinal)
    {
        std::int64_t checksum = 0;
        const auto key = static_cast<std::int64_t>(ordinal);
        if (!ask(m_checksumOfObject, key, checksum)) return;
        m_dropObject.bind(key);
        m_dropObject.run();
        m_row.objects.subtract(checksum);
        updateAttributes(key, {});
    }

    void update(const Object &object)
    {
        const ObjectRow row = m_encoder.row(object);
        std::int64_t checksum = 0;
        const bool known = ask(m_checksumOfObject, row.ordinal, checksum);
        if (!known || checksum != checksumOf(row)) {
            if (known) m_row.objects.subtract(checksum);
            m_row.objects.add(write(m_putObject, row));
        }
        updateAttributes(row.ordinal, object.attributes);
    }

    // One that the file has never seen: there is nothing to look for.
    void insert(const Object &object)
    {
        const ObjectRow row = m_encoder.row(object);
        m_row.objects.add(write(m_putObject, row));
        for (std::size_t i = 0; i < object.attributes.size(); ++i)
            m_row.attributes.add(
                write(m_putAttribute, attributeRow(row.ordinal, i, object.attributes[i])));
    }

    static AttributeRow attributeRow(std::int64_t object, std::size_t position,
                                     const Attribute &attribute)
    {
        return {object, static_cast<std::int64_t>(position), attribute.title, attribute.value};
    }

    void updateAttributes(std::int64_t object, const Attributes &attributes)
    {
        const std::vector<std::int64_t> stored = checksumsOfAttributes(object);
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            const AttributeRow row = attributeRow(object, i, attributes[i]);
            if (i < stored.size() && stored[i] == checksumOf(row)) continue;
            if (i < stored.size()) m_row.attributes.subtract(stored[i]);
            m_row.attributes.add(write(m_putAttribute, row));
        }
        for (std::size_t i = attributes.size(); i < stored.size(); ++i) {
            m_dropAttribute.bind(object);
            m_dropAttribute.bind(static_cast<std::int64_t>(i));
            m_dropAttribute.run();
            m_row.attributes.subtract(stored[i]);
        }
    }

    std::vector<std::int64_t> checksumsOfAttributes(std::int64_t object)
    {
        std::vector<std::int64_t> checksums;
        m_checksumsOfAttributes.bind(object);
        while (m_checksumsOfAttributes.next())
            checksums.push_back(m_checksumsOfAttributes.integer());
        m_checksumsOfAttributes.restart();
        return checksums;
    }

    // Masters never change: they come and go.
    void updateMasters()
    {
        const MastersById &before = m_part.stored.masters;
        Statement put(database(), MasterRow::kInsert);
        for (const auto &[id, master] : m_masters.byId)
            if (!before.count(id)) m_row.masters.add(write(put, m_encoder.row(id, *master)));
        Statement select(database(), "SELECT checksum FROM pattern_master WHERE id=?");
        Statement drop(database(), "DELETE FROM pattern_master WHERE id=?");
        for (const auto &[id, master] : before) {
            std::int64_t checksum = 0;
            if (m_masters.byId.count(id) || !ask(select, id, checksum)) continue;
            drop.bind(id);
            drop.run();
            m_row.masters.subtract(checksum);
        }
    }

    std::int64_t updatePart()
    {
        PartRowSource source(m_part, m_encoder);
        source.row.objects = m_row.objects;
        source.row.attributes = m_row.attributes;
        source.row.masters = m_row.masters;
        const std::int64_t root = checksumOf(source.row);
        if (root == m_part.stored.root) return root;
        Statement put(database(), PartRow::kInsert);
        return write(put, source.row);
    }

    Part &m_part;
    LockedFile m_file;
    StoredMasters m_masters;
    Encoder m_encoder;
    PartRow m_row; // for its tallies
    Statement m_checksumOfObject;
    Statement m_putObject;
    Statement m_dropObject;
    Statement m_checksumsOfAttributes;
    Statement m_putAttribute;
    Statement m_dropAttribute;
};

// What opening says of a missing or foreign file means here that somebody changed it.
template <class Step> void asChangeOnDisk(const std::string &path, Step &&step)
{
    try {
        step();
    } catch (const Malformed &trouble) {
        throw changedOnDisk(path, std::string("it has been damaged: ") + trouble.what);
    } catch (const StoreError &error) {
        switch (error.code) {
        case UF_PART_err_file_not_found:
            throw changedOnDisk(path, "it was removed");
        case UF_PART_err_not_a_part:
        case UF_PART_err_newer_version:
            throw changedOnDisk(path, "something else is there now");
        case UF_PART_err_damaged:
            throw changedOnDisk(path, "it has been damaged");
        default:
            throw;
        }
    }
}

} // namespace

long long saveInPlace(Part &part, const std::string &path)
{
    long long rows = 0;
    asChangeOnDisk(path, [&] {
        requireFile(path);
        Update update(part, path);
        const std::int64_t root = update.run();
        update.commit();
        rows = update.rows();
        part.stored = {path, root, update.takeMasters(), part.nextOrdinal, {}, {}};
    });
    return rows;
}

} // namespace host::store
