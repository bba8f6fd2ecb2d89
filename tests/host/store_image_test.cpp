// A new part is written as one image: what comes back, and that the bytes depend on the content
// alone.
#include "store_support.h"

#include "nxhost/control.h"
#include "nxhost/part_files.h"
#include "uf.h"
#include "ug_exception.hxx"

#include <sqlite3.h>

using namespace store_test;

namespace {

class StoredPart : public testing::Test {
protected:
    ~StoredPart() override { nxhost::reset(); }

    Session &session = Session::get();
    Folder folder;
    std::string path = folder.file("sample.prt");
};

Pattern patternOf(std::shared_ptr<const PatternMaster> master)
{
    Pattern pattern;
    pattern.master = std::move(master);
    return pattern;
}

// Values of the query's columns, row by row, as the sqlite3 shell shows them.
std::string query(const std::string &path, const std::string &sql)
{
    sqlite3 *database = nullptr;
    sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    std::string result;
    const auto addRow = [](void *out, int columns, char **values, char **) {
        for (int i = 0; i < columns; ++i)
            *static_cast<std::string *>(out) +=
                (i ? "|" : "") + std::string(values[i] ? values[i] : "");
        *static_cast<std::string *>(out) += "\n";
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), addRow, &result, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
    return result;
}

} // namespace

TEST_F(StoredPart, ThreeSheetsAndTwoThousandObjectsComeBackToTheLastBit)
{
    Part &part = samplePart(path, 2000);
    const std::string before = listing(part);
    const std::string listed = nxhost::listPart(part.tag);
    Part &again = reopened(part, path);
    EXPECT_GE(again.objects.size(), 2000u);
    EXPECT_EQ(again.byKind.at(Body(Sheet{}).index()).size(), 3u);
    EXPECT_EQ(listing(again), before);
    EXPECT_EQ(nxhost::listPart(again.tag), listed);
    EXPECT_FALSE(again.modified);
    EXPECT_TRUE(again.everSaved);
    EXPECT_EQ(again.path, path);
}

TEST_F(StoredPart, NotANumberKeepsItsPayloadAndZeroItsSign)
{
    Part &part = session.newPart(path, 2);
    Object &udo = newUdo(part, "SAMPLE_BITS");
    udo.as<Udo>()->doubles = {nanWithPayload(), -0.0, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::denorm_min()};
    const std::uint64_t ordinal = udo.ordinal;
    Part &again = reopened(part, path);
    const auto &doubles = again.objects.at(ordinal)->as<Udo>()->doubles;
    ASSERT_EQ(doubles.size(), 4u);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(doubles[0]), 0xfff4dead00beef01u);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(doubles[1]), 0x8000000000000000u);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(doubles[2]), 0x7ff0000000000000u);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(doubles[3]), 1u);
}

TEST_F(StoredPart, EveryByteOfATextIsKept)
{
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    const std::vector<std::string> texts{all, "", "\n", "\\", "\\n", "a\n\n", all + all, ""};
    Part &part = session.newPart(path, 1);
    Object &udo = newUdo(part, "SAMPLE_TEXTS");
    udo.as<Udo>()->strings = texts;
    udo.attributes = {{"8 bit", "\x80\xff\n\\"}};
    session.rename(udo, "n\xe4me");
    Object &note = newNote(part, texts);
    const std::uint64_t first = udo.ordinal;
    const std::uint64_t second = note.ordinal;
    Part &again = reopened(part, path);
    EXPECT_EQ(again.objects.at(first)->as<Udo>()->strings, texts);
    EXPECT_EQ(again.objects.at(first)->name, "n\xe4me");
    EXPECT_EQ(again.objects.at(first)->attributes[0].value, "\x80\xff\n\\");
    EXPECT_EQ(again.objects.at(second)->as<Note>()->lines, texts);
}

TEST_F(StoredPart, OneEmptyLineIsNotNoLine)
{
    Part &part = session.newPart(path, 1);
    const std::uint64_t none = newNote(part, {}).ordinal;
    const std::uint64_t one = newNote(part, {""}).ordinal;
    Part &again = reopened(part, path);
    EXPECT_EQ(again.objects.at(none)->as<Note>()->lines.size(), 0u);
    EXPECT_EQ(again.objects.at(one)->as<Note>()->lines.size(), 1u);
}

TEST_F(StoredPart, ReferencesInTextsFollowTheirObjectsToTheNewTags)
{
    Part &part = session.newPart(path, 1);
    Object &point = session.create(part, Point{});
    point.attributes = {{"REV", "C"}};
    part.attributes = {{"NUMBER", "D-1"}};
    const Tag oldTag = point.tag;
    const std::string tag = std::to_string(oldTag);
    newNote(part, {"Rev <W!" + tag + "@REV>, again <W!" + tag + "@?REV>",
                   "<W!" + std::to_string(part.tag) + "@NUMBER>", "<W@NUMBER>"});
    IdSymbol symbol;
    symbol.upper = "<W!" + tag + "@REV>";
    session.create(part, symbol);
    Part &again = reopened(part, path);
    EXPECT_EQ(session.find(oldTag), nullptr);
    const auto &lines = again.objects.at(3)->as<Note>()->lines;
    EXPECT_EQ(session.evaluated(again, lines[0]), "Rev C, again C");
    EXPECT_EQ(session.evaluated(again, lines[1]), "D-1");
    EXPECT_EQ(session.evaluated(again, lines[2]), "D-1");
    EXPECT_EQ(session.evaluated(again, again.objects.at(4)->as<IdSymbol>()->upper), "C");
}

TEST_F(StoredPart, ReferencesToWhatIsNotInThePartFindNothingLater)
{
    Part &other = session.newPart(folder.file("other.prt"), 1);
    const Tag foreign = session.create(other, Point{}).tag;
    Part &part = session.newPart(path, 1);
    const Tag gone = session.create(part, Point{}).tag;
    session.remove(gone);
    const auto reference = [](auto number) { return "<W!" + std::to_string(number) + "@REV>"; };
    newNote(part, {reference(gone), reference(foreign), reference(other.tag), reference(7),
                   reference(5000000000), "<W!99999999999999999999999@REV>", "<W! +9@REV>",
                   "$<W!9@REV>", "<W!@REV>", "<W!9", "$"});
    Part &again = reopened(part, path);
    const std::vector<std::string> expected{
        "<W!0@REV>",   "<W!0@REV>",  "<W!0@REV>", "<W!0@REV>", "<W!0@REV>", "<W!0@REV>",
        "<W! +0@REV>", "$<W!9@REV>", "<W!@REV>",  "<W!9",      "$"};
    EXPECT_EQ(again.objects.rbegin()->second->as<Note>()->lines, expected);
}

TEST_F(StoredPart, LinksKeepTheirOrderTheirPlacesAndTheOrderInWhichTheyWereMade)
{
    Part &part = session.newPart(path, 1);
    Object &a = newUdo(part, "SAMPLE_A");
    Object &b = newUdo(part, "SAMPLE_B");
    const Tag points[] = {session.create(part, Point{}).tag, session.create(part, Point{}).tag,
                          session.create(part, Point{}).tag};
    session.addLink(a, 2, points[0]);
    session.addLink(b, 3, points[1]);
    session.addLink(a, 4, points[1]);
    session.addLink(a, 1, 0);
    session.replaceLinks(a, 0, 2, points[2]);
    session.touch(points[1]);
    const std::uint64_t next = part.nextLinkSequence;
    const std::uint64_t aOrdinal = a.ordinal;
    const std::string before = listing(part);
    Part &again = reopened(part, path);
    EXPECT_EQ(listing(again), before);
    EXPECT_EQ(again.nextLinkSequence, next);
    const auto &links = again.objects.at(aOrdinal)->as<Udo>()->links;
    ASSERT_EQ(links.size(), 3u);
    EXPECT_EQ(session.find(links[0].target)->ordinal, 6u); // fonts 1, a 2, b 3, points 4, 5, 6
    EXPECT_EQ(links[0].sequence, 1u);
    EXPECT_EQ(links[2].target, 0u);
    const auto inbound = session.linksTo(links[1].target);
    ASSERT_EQ(inbound.size(), 2u);
    EXPECT_EQ(session.find(inbound[0].udo)->ordinal, 3u);
    EXPECT_EQ(inbound[0].link.status, 1u);
}

TEST_F(StoredPart, CondemnedObjectsStayCondemned)
{
    Part &part = session.newPart(path, 1);
    Object &holder = newUdo(part, "SAMPLE_HOLDER");
    const Object &held = session.create(part, Point{});
    const std::uint64_t ordinal = held.ordinal;
    session.addLink(holder, 2, held.tag);
    session.remove(held.tag);
    ASSERT_EQ(held.status, Status::condemned);
    EXPECT_EQ(reopened(part, path).objects.at(ordinal)->status, Status::condemned);
}

TEST_F(StoredPart, UdosOfAClassThatNobodyRegisteredKeepTheirClass)
{
    Part &part = session.newPart(path, 1);
    const std::uint64_t ordinal = newUdo(part, "CLASS OF ANOTHER PROGRAM \xfc").ordinal;
    Part &again = reopened(part, path);
    const ClassId id = again.objects.at(ordinal)->as<Udo>()->classId;
    EXPECT_EQ(session.classRecord(id).name, "CLASS OF ANOTHER PROGRAM \xfc");
    EXPECT_FALSE(session.classRecord(id).registered);
}

TEST_F(StoredPart, TheSameContentGivesTheSameBytes)
{
    const std::string second = folder.file("second.prt");
    store::writeImage(samplePart(path, 300), path);
    store::writeImage(samplePart(second, 300), second); // all tags differ
    EXPECT_EQ(bytesOf(path), bytesOf(second));
    store::writeImage(opened(path), second); // also after a round trip
    EXPECT_EQ(bytesOf(path), bytesOf(second));
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"sample.prt", "second.prt"}));
}

TEST_F(StoredPart, OneWholeImageLeavesNothingInTheNext)
{
    const std::string small = folder.file("small.prt");
    store::writeImage(session.newPart(small, 2), small);
    const std::string alone = bytesOf(small);
    store::writeImage(samplePart(path, 300), path);
    store::writeImage(opened(small), small);
    EXPECT_EQ(bytesOf(small), alone);
}

TEST_F(StoredPart, AKeptPartOpensManyTimesAsItWas)
{
    ASSERT_EQ(UF_initialize(), 0);
    Part &original = samplePart(path, 300);
    PatternMaster referring = *sampleMaster();
    std::get<Note>(referring.shapes[3].geometry).lines = {
        "<W!" + std::to_string(original.currentSheet) + "@REV>"};
    session.create(original, patternOf(std::make_shared<const PatternMaster>(referring)));
    newNote(original, {"<W!" + std::to_string(original.tag) + "@NUMBER>"});
    store::writeImage(original, path);
    const std::string stored = bytesOf(path);
    const nxhost::KeptPartFile kept(path);
    fs::remove(path); // it is not read again
    for (const char *copyName : {"first.prt", "second.prt"}) {
        Part &copy = opened(path);
        const std::string saved = folder.file(copyName);
        store::writeImage(copy, saved);
        EXPECT_EQ(bytesOf(saved), stored);
        const auto &note = *copy.objects.rbegin()->second->as<Note>();
        EXPECT_EQ(session.evaluated(copy, note.lines[0]), "D-100");
        for (const auto &[ordinal, object] : copy.objects)
            if (Udo *udo = object->as<Udo>()) udo->strings = {"changed"};
        newNote(copy, {"another"});
        session.closePart(copy);
    }
}

TEST_F(StoredPart, APartIsReadAgainWhenItIsKeptNoLonger)
{
    ASSERT_EQ(UF_initialize(), 0);
    store::writeImage(session.newPart(path, 1), path);
    {
        const nxhost::KeptPartFile kept(path);
    }
    store::writeImage(session.newPart(folder.file("inches.prt"), 2), path);
    EXPECT_EQ(opened(path).units, 2);
    fs::remove(path);
    EXPECT_THROW(nxhost::KeptPartFile again(path), UgException);
}

TEST_F(StoredPart, PatternsOfEqualMastersShareOneStoredMaster)
{
    Part &part = session.newPart(path, 1);
    for (int i = 0; i < 3; ++i) session.create(part, patternOf(sampleMaster()));
    PatternMaster other = *sampleMaster();
    other.shapes.pop_back();
    session.create(part, patternOf(std::make_shared<const PatternMaster>(other)));
    session.create(part, Pattern{});
    Part &again = reopened(part, path);
    EXPECT_EQ(query(path, "SELECT id,file_name FROM pattern_master"), "1|FRAME_A3\n2|FRAME_A3\n");
    EXPECT_EQ(again.objects.at(2)->as<Pattern>()->master,
              again.objects.at(4)->as<Pattern>()->master);
    EXPECT_EQ(*again.objects.at(3)->as<Pattern>()->master, *sampleMaster());
    EXPECT_EQ(*again.objects.at(5)->as<Pattern>()->master, other);
    EXPECT_EQ(again.objects.at(6)->as<Pattern>()->master, nullptr);
}

TEST_F(StoredPart, ReadsInTheStockShell)
{
    Part &part = session.newPart(path, 1);
    Object &udo = newUdo(part, "SAMPLE_READ");
    Object &note = newNote(part, {"first", "second"});
    session.rename(note, "NOTE1");
    session.addLink(udo, 4, note.tag);
    session.own(udo, {note.tag});
    note.attributes = {{"REV", "B"}};
    store::writeImage(part, path);
    EXPECT_EQ(query(path, "SELECT ordinal,kind,class,name,owner FROM object"),
              "1|font_table|||0\n2|udo|SAMPLE_READ||0\n3|note||NOTE1|2\n");
    EXPECT_EQ(query(path, "SELECT texts FROM object WHERE name='NOTE1'"), "first\nsecond\n\n");
    EXPECT_EQ(query(path, "SELECT ordinal,value->>0,value->>1 FROM object,json_each(links)"),
              "2|4|3\n");
    EXPECT_EQ(query(path, "SELECT title,value FROM attribute WHERE object=3"), "REV|B\n");
    EXPECT_EQ(query(path, "PRAGMA integrity_check"), "ok\n");
}

TEST_F(StoredPart, WritingOverAPartReplacesItWhole)
{
    store::writeImage(samplePart(path, 300), path);
    fs::permissions(path, fs::perms{0640});
    Part &small = session.newPart(folder.file("small.prt"), 2);
    store::writeImage(small, path);
    EXPECT_EQ(listing(opened(path)), listing(small));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0640});
}
