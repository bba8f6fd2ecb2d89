// Records of one file after another, read without the parts: each file's own, whatever was read before.
#include "store_processes.h"
#include "store_support.h"

#include "store/whole_file.h"

#include "nxhost/control.h"
#include "nxhost/records.h"

#include <sys/stat.h>

using namespace store_test;

namespace {

class StoredRecordsOf : public testing::Test {
protected:
    ~StoredRecordsOf() override { nxhost::reset(); }

    // A part with one record that has `text`, and a note of it that it owns.
    std::string saved(const std::string &name, const std::string &text)
    {
        const std::string path = folder.file(name);
        Session &session = Session::get();
        Part &part = session.newPart(path, 1);
        session.createSheet(part, "SH1", {2, 0, 297, 420, 1.5, 2, 2, 0});
        Object &record = newUdo(part, "TOLD");
        record.as<Udo>()->ints = {7, -1};
        record.as<Udo>()->strings = {text, "a\nb\\"};
        session.own(record, {newNote(part, {text + " shown", ""}).tag});
        record.attributes = {{"VALUE", text}};
        session.addLink(newUdo(part, "UNTOLD"), 2, record.tag);
        store::writeImage(part, path);
        session.closePart(part);
        return path;
    }

    // The text of the record, or why there is none.
    std::string textOf(const std::string &path)
    {
        const nxhost::StoredRecords *found = reader.read(path);
        if (!found) return "unreadable";
        for (const nxhost::StoredRecord &record : found->records)
            if (record.className == "TOLD") return std::string(record.strings[0]);
        return "no record";
    }

    Folder folder;
    nxhost::RecordReader reader{{"TOLD"}};
};

void run(const std::string &path, const std::string &sql)
{
    sqlite3 *database = nullptr;
    sqlite3_open(path.c_str(), &database);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
}

// The same rows with the tables made in another order, so that each begins on another page. The number by
// which a database knows that its tables have changed stays the same.
void makeWithOtherPages(const std::string &from, const std::string &to)
{
    std::vector<std::string> tables;
    sqlite3 *database = nullptr;
    sqlite3_open(from.c_str(), &database);
    const auto keep = [](void *all, int, char **values, char **) {
        static_cast<std::vector<std::string> *>(all)->emplace_back(values[0]);
        return 0;
    };
    sqlite3_exec(database, "SELECT sql FROM sqlite_schema ORDER BY rowid DESC", keep, &tables,
                 nullptr);
    sqlite3_close(database);
    std::string sql =
        "PRAGMA page_size=4096;PRAGMA application_id=1902408311;PRAGMA user_version=1;"
        "BEGIN;";
    for (const std::string &table : tables) sql += table + ';';
    sql += "COMMIT;ATTACH '" + from + "' AS other;";
    for (const char *table : {"part", "object", "attribute", "pattern_master"})
        sql += std::string("INSERT INTO main.") + table + " SELECT * FROM other." + table + ';';
    run(to, sql);
    for (std::size_t at = 40; at < 44; ++at) putByte(to, at, bytesOf(from)[at]);
}

} // namespace

TEST_F(StoredRecordsOf, EachFileTellsItsOwn)
{
    const std::string a = saved("a.qdraw", "first"), b = saved("b.qdraw", "other");
    ASSERT_EQ(bytesOf(a).size(), bytesOf(b).size());
    for (int again = 0; again < 3; ++again) {
        EXPECT_EQ(textOf(a), "first");
        EXPECT_EQ(textOf(b), "other");
    }
}

TEST_F(StoredRecordsOf, ARecordIsToldWithItsNoteItsAttributesAndWhatLinksToIt)
{
    const nxhost::StoredRecords *found = reader.read(saved("a.qdraw", "first"));
    ASSERT_TRUE(found);
    ASSERT_EQ(found->records.size(), 2u);
    const nxhost::StoredRecord &told = found->records[0], &other = found->records[1];
    EXPECT_EQ(std::vector(told.ints.begin(), told.ints.end()), (std::vector{7, -1}));
    ASSERT_EQ(told.strings.size(), 2u);
    EXPECT_EQ(told.strings[1], "a\nb\\");
    ASSERT_EQ(found->notes.size(), 1u);
    ASSERT_EQ(told.owned.size(), 1u);
    EXPECT_EQ(told.owned[0], found->notes[0].row);
    ASSERT_EQ(found->notes[0].lines.size(), 2u);
    EXPECT_EQ(found->notes[0].lines[0], "first shown");
    EXPECT_EQ(found->notes[0].lines[1], "");
    ASSERT_EQ(found->sheets.size(), 1u);
    EXPECT_EQ(found->sheets[0].name, "SH1");
    EXPECT_EQ(other.className, ""); // a class that was not asked for
    EXPECT_TRUE(other.links.empty());
    const auto *attributes = reader.attributes();
    ASSERT_TRUE(attributes);
    ASSERT_EQ(attributes->size(), 1u);
    EXPECT_EQ(attributes->front().owner, told.row);
    EXPECT_EQ(attributes->front().value, "first");
}

TEST_F(StoredRecordsOf, TablesThatBeginOnOtherPagesAreReadThere)
{
    const std::string a = saved("a.qdraw", "first"), moved = folder.file("moved.qdraw");
    makeWithOtherPages(saved("b.qdraw", "other"), moved);
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(textOf(a), "first");
        EXPECT_EQ(textOf(moved), "other");
    }
}

TEST_F(StoredRecordsOf, ADamagedFileSpoilsNoOther)
{
    const std::string a = saved("a.qdraw", "first"), b = saved("b.qdraw", "other");
    const std::string sound = bytesOf(b);
    std::string changed = sound;
    changed[changed.find("other shown")] = 'O';
    for (const std::string &bad : {changed, sound.substr(0, sound.size() - 4096),
                                   sound.substr(0, 4096), sound.substr(0, 50), std::string()}) {
        putBytes(b, bad);
        EXPECT_EQ(textOf(a), "first");
        EXPECT_EQ(textOf(b), "unreadable") << bad.size();
        EXPECT_EQ(reader.attributes(), nullptr);
    }
    EXPECT_EQ(textOf(a), "first");
}

TEST_F(StoredRecordsOf, AFileThatIsBeingSavedIsNotRead)
{
    const std::string a = saved("a.qdraw", "first");
    {
        const LockingProcess writer(a, "BEGIN EXCLUSIVE");
        EXPECT_EQ(textOf(a), "unreadable");
    }
    EXPECT_EQ(textOf(a), "first");
    const LockingProcess reading(a, "BEGIN; SELECT * FROM part");
    EXPECT_EQ(textOf(a), "first");
}

TEST_F(StoredRecordsOf, AnInterruptedSaveIsLeftToWhoOpensThePart)
{
    const std::string a = saved("a.qdraw", "first"), link = folder.file("link.qdraw");
    fs::create_symlink(a, link);
    EXPECT_EQ(textOf(link), "first");
    putBytes(a + "-journal", "what was there before");
    EXPECT_EQ(textOf(a), "unreadable");
    EXPECT_EQ(textOf(link), "unreadable"); // the journal lies beside the file, not beside the link
    Session::get().closePart(opened(a));
    EXPECT_EQ(textOf(link), "first");
}

TEST_F(StoredRecordsOf, ALargeFileIsReadPageByPageAndASmallOneAfterIt)
{
    // 17 MB of text: more than is read in one piece.
    const std::string large = saved("large.qdraw", std::string(17 << 20, 'x'));
    const std::string a = saved("a.qdraw", "first");
    EXPECT_EQ(textOf(large).size(), std::size_t{17 << 20});
    ASSERT_NE(reader.attributes(), nullptr);
    EXPECT_EQ(reader.attributes()->front().value.size(), std::size_t{17 << 20});
    EXPECT_EQ(textOf(a), "first");
    const LockingProcess writer(large, "BEGIN EXCLUSIVE");
    EXPECT_EQ(textOf(large), "unreadable");
}

TEST_F(StoredRecordsOf, AHugeFileThatIsNoPartIsNotReadAtAll)
{
    const std::string huge = folder.file("huge.qdraw");
    putBytes(huge, "no part");
    fs::resize_file(huge, std::uintmax_t{1} << 40); // a hole: it takes no room
    EXPECT_EQ(textOf(huge), "unreadable");
}

TEST(WholeFile, ZerosStandBehindTheBytesAlsoWhereALargerFileStood)
{
    const Folder folder;
    putBytes(folder.file("large"), std::string(3000, 'x'));
    putBytes(folder.file("small"), std::string(1000, 'y'));
    store::WholeFile file;
    for (const auto &[name, size] : {std::pair{"large", 3000u}, {"small", 1000u}}) {
        ASSERT_TRUE(file.read(folder.file(name), 4096));
        ASSERT_EQ(file.bytes().size(), size);
        const std::string behind(file.bytes().data() + size, store::WholeFile::kSlack);
        EXPECT_EQ(behind, std::string(store::WholeFile::kSlack, '\0'));
    }
    EXPECT_FALSE(file.read(folder.file("large"), 2999));
    EXPECT_TRUE(file.wasTooLarge());
}

TEST_F(StoredRecordsOf, APipeIsNotWaitedFor)
{
    const std::string pipe = folder.file("pipe.qdraw");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(textOf(pipe), "unreadable");
}
