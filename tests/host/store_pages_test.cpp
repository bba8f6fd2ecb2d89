// The pages of a whole image: SQLite finds them in order and reads every row that was written, however big
// the rows are and however many there are.
#include "store_support.h"

#include "store/image.h"

#include "nxhost/control.h"

#include <sqlite3.h>

using namespace store_test;

namespace {

class WrittenPages : public testing::Test {
protected:
    ~WrittenPages() override { nxhost::reset(); }

    Part &newPart() { return session.newPart(folder.file("sample.prt"), 1); }

    Session &session = Session::get();
    Folder folder;
};

// What SQLite answers to a question about a database with these bytes.
std::string answer(const std::string &bytes, const char *sql)
{
    sqlite3 *database = nullptr;
    sqlite3_open(":memory:", &database);
    auto *data = reinterpret_cast<unsigned char *>(const_cast<char *>(bytes.data()));
    const auto size = static_cast<sqlite3_int64>(bytes.size());
    sqlite3_deserialize(database, "main", data, size, size, SQLITE_DESERIALIZE_READONLY);
    std::string result;
    const auto take = [](void *out, int, char **values, char **) {
        *static_cast<std::string *>(out) += std::string(values[0]) + "\n";
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, sql, take, &result, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
    return result;
}

void expectWhole(Part &part)
{
    const std::string bytes = store::imageOf(part).bytes;
    ASSERT_EQ(answer(bytes, "PRAGMA integrity_check"), "ok\n");
    store::LoadedPart loaded = store::loadImage(bytes, "image");
    Part &again = Session::get().adoptPart(std::move(loaded.part), std::move(loaded.objects));
    ASSERT_EQ(listing(again), listing(part));
    Session::get().closePart(again);
}

} // namespace

// A row of about 70 bytes: some 55 stand on a page, so that the first page is full on the way.
TEST_F(WrittenPages, OneObjectMoreAtATime)
{
    Part &part = newPart();
    for (int i = 0; i < 150; ++i) {
        session.create(part, Point{{1.0 * i, 0, 0}}).attributes = {{"NUMBER", std::to_string(i)}};
        expectWhole(part);
    }
}

// A row stays on its page up to 4061 bytes, in the table of attributes up to 1002; what is longer goes on
// elsewhere, by 4092 bytes a page.
TEST_F(WrittenPages, TextsOfEverySizeAroundThoseThatGoOnElsewhere)
{
    Part &part = newPart();
    Object &note = newNote(part, {""});
    for (const std::size_t from : {0, 110, 950, 3930, 4930, 8020, 12110})
        for (std::size_t size = from; size < from + 140; size += 7) {
            note.as<Note>()->lines = {std::string(size, 'x')};
            note.attributes = {{"A", std::string(size, 'y')}, {"B", "z"}};
            expectWhole(part);
        }
}

TEST_F(WrittenPages, TreesOfThreeLevels)
{
    Part &part = newPart();
    for (int i = 0; i < 60000; ++i)
        session.create(part, Point{}).attributes = {
            {"TITLE", std::string(static_cast<std::size_t>(i % 990), 'v')}};
    const std::string bytes = store::imageOf(part).bytes;
    EXPECT_EQ(answer(bytes, "PRAGMA integrity_check"), "ok\n");
    // The font table is an object too.
    EXPECT_EQ(answer(bytes, "SELECT count(*) FROM object"), "60001\n");
    EXPECT_EQ(answer(bytes, "SELECT value FROM attribute WHERE object=40000"),
              std::string((40000 - 2) % 990, 'v') + "\n");
    EXPECT_EQ(answer(bytes, "SELECT count(*) FROM attribute JOIN object ON ordinal=object"),
              "60000\n");
}

// Keys of one to nine bytes.
TEST_F(WrittenPages, OrdinalsOfEveryLength)
{
    Part &part = newPart();
    for (int bits = 1; bits < 61; ++bits) {
        part.nextOrdinal = std::max(part.nextOrdinal, std::uint64_t{1} << bits);
        session.create(part, Point{}).attributes = {{"BITS", std::to_string(bits)}};
    }
    expectWhole(part);
}
