#include "salvage.h"

#include "draft.h"
#include "errors.h"
#include "file_layer.h"
#include "image.h"
#include "journal.h"
#include "locks.h"
#include "model/session.h"
#include "open.h"
#include "schema.h"
#include "vfs.h"

#include "uf_part.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sqlite3.h>
#include <unistd.h>

namespace host::store {

namespace {

namespace fs = std::filesystem;

// --- the bytes ------------------------------------------------------------------------------------

std::string readWhole(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    std::string bytes;
    if (in) bytes.assign(std::istreambuf_iterator<char>(in), {});
    if (!in || in.bad()) throw cannotRead(path, std::strerror(errno));
    return bytes;
}

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = (fs::temp_directory_path() / "qelfmt-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw cannotWrite(name, std::strerror(errno));
        m_path = name;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    fs::path operator/(const char *name) const { return m_path / name; }

private:
    fs::path m_path;
};

// A save that was cut off is undone in a copy: the file itself stays as it is.
std::string withJournal(const std::string &path)
{
    const TemporaryFolder folder;
    const std::string copy = (folder / "part").string();
    std::error_code failed;
    fs::copy_file(path, copy, failed);
    if (!failed) fs::copy_file(path + "-journal", copy + "-journal", failed);
    if (failed) return readWhole(path);
    fs::permissions(copy, fs::perms::owner_read | fs::perms::owner_write, failed);
    fs::permissions(copy + "-journal", fs::perms::owner_read | fs::perms::owner_write, failed);
    finishInterruptedSave(copy);
    return readWhole(copy);
}

// As long as it is read nobody may save it. What is too damaged to be locked nobody can save either.
std::string bytesOfFile(const std::string &path)
{
    requireFile(path);
    std::unique_ptr<Database> lock;
    try {
        lock = std::make_unique<Database>(path, SQLITE_OPEN_READONLY, steppingVfs());
        sqlite3_busy_timeout(lock->handle(), kPatienceMilliseconds);
        lock->run("BEGIN; SELECT 1 FROM sqlite_schema");
    } catch (const StoreError &error) {
        if (error.code == UF_PART_err_locked) {
            lock.reset();
            throw lockedError(path);
        }
    }
    std::error_code ignored;
    return fs::exists(path + "-journal", ignored) ? withJournal(path) : readWhole(path);
}

// --- looking --------------------------------------------------------------------------------------

// Why it cannot be opened; nothing: it can.
std::optional<StoreError> refusalOf(std::string_view bytes, const std::string &name)
{
    try {
        loadImage(bytes, name);
        return std::nullopt;
    } catch (const StoreError &error) {
        return error;
    }
}

// What the database itself says of its pages; reading a part overlooks what lies in free space.
std::vector<std::string> troubleOfPages(std::string_view bytes)
{
    std::vector<std::string> said;
    try {
        Database database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
        auto *data = reinterpret_cast<unsigned char *>(const_cast<char *>(bytes.data()));
        const auto size = static_cast<sqlite3_int64>(bytes.size());
        database.check(sqlite3_deserialize(database.handle(), "main", data, size, size,
                                           SQLITE_DESERIALIZE_READONLY));
        Statement check(database, "PRAGMA integrity_check(20)");
        while (check.next()) {
            const std::string line(check.text());
            if (line != "ok") said.push_back(line);
        }
    } catch (const StoreError &) { // the refusal says it
    }
    return said;
}

bool hasDamage(const std::vector<Finding> &findings)
{
    return std::any_of(findings.begin(), findings.end(), [](const Finding &finding) {
        return finding.kind == Finding::Kind::damage || finding.kind == Finding::Kind::dangling;
    });
}

// A part that can be read and whose rows are all right may still not open, or not be saved again.
void addFileFindings(std::string_view bytes, Examination &result)
{
    const std::string fresh = "a new file is written";
    if (result.refusal.empty()) {
        for (const std::string &line : troubleOfPages(bytes))
            result.findings.insert(result.findings.begin(),
                                   {Finding::Kind::damage, 0, "its pages: " + line, fresh});
        return;
    }
    if (!hasDamage(result.findings))
        result.findings.insert(result.findings.begin(),
                               {Finding::Kind::damage, 0, result.refusal, fresh});
}

// --- the new part -----------------------------------------------------------------------------------

// Read and written once more, as every part is: what was mended is accepted, and nothing is left over
// that only the draft knew.
std::string settled(const std::string &image, const std::string &name)
{
    LoadedPart loaded = loadImage(image, name);
    Session &session = Session::get();
    Part &part = session.adoptPart(std::move(loaded.part), std::move(loaded.objects));
    std::string bytes = imageOf(part).bytes;
    session.closePart(part);
    return bytes;
}

} // namespace

Examination examineImage(std::string_view bytes, const std::string &name, const RecordRules &rules)
{
    const std::optional<StoreError> refusal = refusalOf(bytes, name);
    // A part of a newer version is in order, for another program.
    if (refusal && refusal->code == UF_PART_err_newer_version) throw *refusal;
    const Remains remains(bytes);
    if (refusal && refusal->code == UF_PART_err_not_a_part && remains.empty()) throw *refusal;
    Examination result;
    if (refusal) // without the file's name
        result.refusal =
            refusal->message.substr(std::min(refusal->message.size(), name.size() + 2));
    if (remains.empty()) {
        result.findings.push_back({Finding::Kind::damage, 0, result.refusal, {}});
        return result;
    }
    Draft draft;
    takeRows(remains, draft);
    findMissing(draft);
    mendSheetsAndViews(draft);
    mendFontTable(draft);
    mendOwners(draft);
    mendLinks(draft);
    nameLosses(remains, draft);
    mendTexts(draft);
    lookAround(rules, draft);
    std::stable_sort(draft.findings.begin(), draft.findings.end(),
                     [](const Finding &a, const Finding &b) { return a.object < b.object; });
    result.objects = draft.pieces.size();
    result.findings = std::move(draft.findings);
    result.image = imageOf(draft);
    addFileFindings(bytes, result);
    return result;
}

Examination examine(const std::string &path, const RecordRules &rules)
{
    return examineImage(bytesOfFile(path), path, rules);
}

Salvage salvage(const std::string &path, const std::string &newPath)
{
    const StoreError taken{UF_PART_err_file_exists,
                           newPath +
                               ": there is a file of this name already. Choose another name."};
    std::error_code ignored;
    if (fs::exists(newPath, ignored)) throw taken;
    Examination examined = examine(path);
    if (examined.image.empty()) throw damaged(path, "nothing of a part can be read out of it");
    try {
        const auto held = lockedForReplacement(newPath);
        files::putDurably(newPath, settled(examined.image, newPath), files::Existing::keep);
    } catch (const files::FileError &error) {
        if (error.number == EEXIST) throw taken;
        throw StoreError{UF_PART_err_cannot_write,
                         newPath + ": the new part cannot be written: " + describe(error) +
                             ". Check that the folder exists, may be written to and has room."};
    }
    Salvage result{examined.objects, {}};
    for (Finding &finding : examined.findings)
        if (!finding.mended.empty()) result.lost.push_back(std::move(finding));
    return result;
}

} // namespace host::store
