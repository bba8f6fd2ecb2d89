#include "app/fleet/images.h"

#include "app/fleet/journal.h"
#include "app/problem.h"

#include <fmt/format.h>
#include <zlib.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace app::fleet {

namespace {

constexpr int kLevel = 1; // drawings shrink to a third already

std::string packed(const std::string &bytes)
{
    uLongf size = compressBound(bytes.size());
    std::string result(size, '\0');
    compress2(reinterpret_cast<Bytef *>(result.data()), &size,
              reinterpret_cast<const Bytef *>(bytes.data()), bytes.size(), kLevel);
    result.resize(size);
    return result;
}

std::string unpacked(const std::string &bytes, std::int64_t length, const std::string &path)
{
    std::string result(static_cast<std::size_t>(length), '\0');
    uLongf size = result.size();
    const int code = uncompress(reinterpret_cast<Bytef *>(result.data()), &size,
                                reinterpret_cast<const Bytef *>(bytes.data()), bytes.size());
    if (code != Z_OK || size != result.size())
        throw Problem(path + ": its image in the journal is damaged: the drawing is left as it is");
    return result;
}

// Whatever file is named, it stays as it is.
void requireImages(const std::string &journal)
{
    Connection looked(journal, Connection::Access::read);
    const auto refuse = [&](const char *what) {
        throw Problem(fmt::format("{}: {}: name the journal that was given to 'qelfmt update'",
                                  journal, what));
    };
    Statement id(looked, "PRAGMA application_id");
    if (!id.step() || id.number(0) != Journal::kApplicationId) refuse("is no journal of qelfmt");
    Statement run(looked, "SELECT command FROM run");
    if (!run.step() || !run.text(0).starts_with("update "))
        refuse("is not the journal of an update");
    Statement table(looked, "SELECT 1 FROM sqlite_schema WHERE type='table' AND name='image'");
    if (!table.step()) refuse("holds no drawings: its update has changed none");
}

} // namespace

ContentSum sumOf(const std::string &bytes)
{
    const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
    return fmt::format("{:016x}{:016x}", hash.high64, hash.low64);
}

std::string readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad()) throw Problem(path + ": cannot be read");
    return bytes;
}

std::string absolutePath(const std::string &path)
{
    return std::filesystem::absolute(path).lexically_normal().string();
}

std::unique_ptr<Images> Images::toKeep(const std::string &journal)
{
    std::unique_ptr<Images> images(new Images(journal));
    images->m_connection.run(
        "CREATE TABLE IF NOT EXISTS image(path TEXT PRIMARY KEY, key TEXT, length INT,"
        " before BLOB, before_sum TEXT, after_sum TEXT)");
    return images;
}

std::unique_ptr<Images> Images::toPutBack(const std::string &journal)
{
    requireImages(journal);
    return std::unique_ptr<Images>(new Images(journal));
}

void Images::keep(const std::string &path, const std::string &bytes)
{
    Statement(m_connection, "INSERT OR REPLACE INTO image VALUES(?,?,?,?,?,NULL)")
        .bind(std::string_view(absolutePath(path)), std::string_view(path),
              static_cast<std::int64_t>(bytes.size()), std::string_view(packed(bytes)),
              std::string_view(sumOf(bytes)))
        .run();
}

void Images::changed(const std::string &path, const ContentSum &after)
{
    Statement(m_connection, "UPDATE image SET after_sum=? WHERE path=?")
        .bind(std::string_view(after), std::string_view(absolutePath(path)))
        .run();
}

bool Images::wasChanged(const std::string &path, const ContentSum &now)
{
    const std::string absolute = absolutePath(path);
    Statement rows(m_connection, "SELECT before_sum,after_sum FROM image WHERE path=?");
    rows.bind(std::string_view(absolute));
    if (!rows.step()) return false;
    const ContentSum before = rows.text(0), after = rows.text(1);
    if (now == before || (!after.empty() && now != after)) return false;
    if (after.empty()) changed(path, now);
    return true;
}

void Images::each(const std::function<void(const Image &)> &take)
{
    Statement rows(m_connection,
                   "SELECT path,length,before,before_sum,after_sum FROM image ORDER BY path");
    while (rows.step()) {
        const std::string path = rows.text(0);
        take({path, unpacked(rows.text(2), rows.number(1), path), rows.text(3), rows.text(4)});
    }
}

void Images::putBack(const std::string &path)
{
    const std::string_view name(path);
    m_connection.run("BEGIN");
    Statement(m_connection, "UPDATE item SET state=0,result=NULL WHERE key=(SELECT key FROM image "
                            "WHERE path=?)")
        .bind(name)
        .run();
    Statement(m_connection, "DELETE FROM image WHERE path=?").bind(name).run();
    m_connection.run("COMMIT");
}

} // namespace app::fleet
