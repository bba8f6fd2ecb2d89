// Damaged parts: all that is still there comes back in a new part, what is lost is named, and the damaged
// file stays as it is.
#include "store_forge.h"
#include "store_forgeries.h"
#include "store_processes.h"
#include "store_support.h"

#include "nxhost/control.h"
#include "store/salvage.h"
#include "uf_part.h"

#include <map>
#include <random>
#include <regex>
#include <set>

#include <sys/resource.h>

using namespace store_test;
using Kind = host::store::Finding::Kind;

namespace {

class SalvagedPart : public testing::Test {
protected:
    SalvagedPart() { make(60); }
    ~SalvagedPart() override { nxhost::reset(); }

    void make(int objects)
    {
        store::writeImage(samplePart(path, objects), path);
        sound = bytesOf(path);
        soundLines = linesOf(listing(*Session::get().parts().back()));
        nxhost::reset();
    }
    // A line of the listing by ordinal; 0 is the part's own.
    using Lines = std::map<int, std::string>;
    static Lines linesOf(const std::string &text)
    {
        Lines lines;
        std::istringstream in(text);
        static const std::regex object("^#(\\d+) (\\w+) .*");
        int ordinal = 0;
        for (std::string line; std::getline(in, line);) {
            std::smatch match; // a text may go over several lines
            if (std::regex_match(line, match, object)) ordinal = std::stoi(match[1]);
            lines[ordinal] += line + '\n';
        }
        return lines;
    }

    void damage(const std::string &sql, bool sealed = false)
    {
        putBytes(path, sound);
        Forge smith(path);
        smith.run(sql);
        if (sealed) smith.seal();
    }

    // What is left as lines. Without files: they take long to be synced.
    Lines salvage()
    {
        const store::Examination examined = store::examineImage(bytesOf(path), path);
        if (examined.image.empty()) throw store::StoreError{UF_PART_err_damaged, "nothing"};
        lost.clear();
        for (const store::Finding &finding : examined.findings)
            if (!finding.mended.empty()) lost.push_back(finding);
        store::LoadedPart loaded = store::loadImage(examined.image, rescued);
        Part &part = Session::get().adoptPart(std::move(loaded.part), std::move(loaded.objects));
        EXPECT_EQ(part.objects.size(), examined.objects);
        Lines lines = linesOf(listing(part));
        Session::get().closePart(part);
        return lines;
    }

    // The same with a new part in its file; everything around it is checked on the way.
    Lines salvageFile()
    {
        const std::string before = bytesOf(path);
        fs::remove(rescued);
        const store::Salvage result = store::salvage(path, rescued);
        lost = result.lost;
        EXPECT_EQ(bytesOf(path), before);
        Part &part = opened(rescued);
        EXPECT_EQ(part.objects.size(), result.objects);
        Lines lines = linesOf(listing(part));
        Session::get().closePart(part);
        expectUsable();
        return lines;
    }
    // It can be changed and saved like any other.
    void expectUsable()
    {
        Part &part = opened(rescued);
        newNote(part, {"after the salvage"});
        const std::string expected = listing(part);
        store::save(part, rescued);
        Session::get().closePart(part);
        Part &again = opened(rescued);
        EXPECT_EQ(listing(again), expected);
        Session::get().closePart(again);
    }

    // Objects whose rows are said to be lost.
    std::set<int> lostObjects() const
    {
        std::set<int> ordinals;
        for (const store::Finding &finding : lost)
            if (finding.object && finding.text.find(": its row is ") != std::string::npos)
                ordinals.insert(static_cast<int>(finding.object));
        return ordinals;
    }
    std::size_t count(Kind kind) const
    {
        return static_cast<std::size_t>(
            std::count_if(lost.begin(), lost.end(),
                          [&](const store::Finding &finding) { return finding.kind == kind; }));
    }
    bool said(const std::string &text) const
    {
        return std::any_of(lost.begin(), lost.end(), [&](const store::Finding &finding) {
            return (finding.text + "; " + finding.mended).find(text) != std::string::npos;
        });
    }
    std::string allSaid() const
    {
        std::string all;
        for (const store::Finding &finding : lost)
            all += finding.text + "; " + finding.mended + '\n';
        return all;
    }

    // How often a line names the object.
    static std::size_t mentions(const std::string &line, int ordinal)
    {
        const std::regex name("#" + std::to_string(ordinal) + "\\b");
        const auto n = std::distance(std::sregex_iterator(line.begin(), line.end(), name), {});
        return static_cast<std::size_t>(n);
    }

    Folder folder;
    std::string path = folder.file("damaged.prt");
    std::string rescued = folder.file("rescued.prt");
    std::string sound;
    Lines soundLines;
    std::vector<store::Finding> lost;
};

} // namespace

TEST_F(SalvagedPart, NothingIsLostOfASoundOne)
{
    EXPECT_EQ(salvageFile(), soundLines);
    EXPECT_TRUE(lost.empty()) << allSaid();
    EXPECT_EQ(bytesOf(rescued).substr(0, 16), bytesOf(path).substr(0, 16));
    EXPECT_EQ(store::examine(path).refusal, "");
}

// --- rows -------------------------------------------------------------------------------------------

// One object after the other: it alone is lost, and with it what others said of it. Sheets, views and the
// font table are made again: what needs them would vanish.
TEST_F(SalvagedPart, AFlippedBitInARowLosesThatObjectAlone)
{
    int tried = 0;
    for (const auto &[ordinal, line] : soundLines) {
        if (ordinal == 0) continue;
        SCOPED_TRACE(line);
        damage("UPDATE object SET color=color+1 WHERE ordinal=" + std::to_string(ordinal));
        const Lines after = salvage();
        EXPECT_EQ(lostObjects(), std::set<int>{ordinal}) << allSaid();
        ++tried;
        const bool made =
            line.find(" sheet ") < 8 || line.find(" view ") < 8 || line.find(" fonts ") < 8;
        std::size_t named = 0;
        for (const auto &[other, before] : soundLines) {
            if (other == ordinal) continue;
            ASSERT_TRUE(after.count(other)) << other;
            const std::size_t here = mentions(before, ordinal);
            if (!here || made) {
                EXPECT_EQ(after.at(other), before);
            } else {
                EXPECT_EQ(mentions(after.at(other), ordinal), 0u);
            }
            named += here;
        }
        EXPECT_EQ(after.count(ordinal), made ? 1u : 0u);
        if (!made) {
            EXPECT_EQ(count(Kind::dangling), named) << allSaid();
        }
        if (HasFailure()) return;
    }
    EXPECT_GT(tried, 50);
}

TEST_F(SalvagedPart, SwappedRowsAreTheOnlyOnesLost)
{
    damage("CREATE TEMP TABLE a AS SELECT * FROM object WHERE kind='symbol' OR kind='id_symbol' "
           "ORDER BY ordinal LIMIT 2;"
           "DELETE FROM object WHERE ordinal IN (SELECT ordinal FROM a);"
           "UPDATE a SET ordinal=(SELECT sum(ordinal) FROM a)-ordinal;"
           "INSERT INTO object SELECT * FROM a");
    const Lines after = salvageFile();
    EXPECT_EQ(lostObjects(), (std::set<int>{14, 22})) << allSaid();
    EXPECT_EQ(after.size(), soundLines.size() - 2);
}

TEST_F(SalvagedPart, ALostRowWithoutATraceIsNamedByWhatRefersToIt)
{
    damage("DELETE FROM object WHERE ordinal=16"); // the first child; the root links to it
    salvage();
    EXPECT_EQ(lostObjects(), std::set<int>{16}) << allSaid();
    EXPECT_TRUE(said("object 8 (UDO SAMPLE_ROOT): link 1, of type 2, leads to object 16, which is "
                     "not there; it leads nowhere"))
        << allSaid();
    EXPECT_TRUE(said("object 13 (note \"note 1\"): its owner, object 16, is not there; it stands "
                     "free"))
        << allSaid();
    EXPECT_TRUE(said("object 16: its attribute \"TITLE\" is there, but not the object"));
}

TEST_F(SalvagedPart, LostRowsThatNothingRefersToAreCounted)
{
    // Symbols: nobody links to them. Some ordinals are those of deleted objects.
    damage("DELETE FROM object WHERE ordinal IN (14,22)");
    salvage();
    EXPECT_EQ(lostObjects(), std::set<int>{});
    EXPECT_TRUE(said("table object: 2 more rows were stored and cannot be read")) << allSaid();
}

TEST_F(SalvagedPart, WithoutDeletedObjectsGapsNameTheLostOnes)
{
    nxhost::reset();
    Part &part = Session::get().newPart(path, 1);
    for (int i = 0; i < 9; ++i) newNote(part, {"note " + std::to_string(i)}); // ordinals 2 to 10
    store::writeImage(part, path);
    sound = bytesOf(path);
    nxhost::reset();
    damage("DELETE FROM object WHERE ordinal IN (4,5,10)");
    salvage();
    EXPECT_EQ(lostObjects(), (std::set<int>{4, 5, 10})) << allSaid();
}

TEST_F(SalvagedPart, WrongCountsCostNothing)
{
    for (const char *column : {"objects", "attributes", "pattern_masters"}) {
        for (const char *by : {"+1000000000000", "-1"}) {
            putBytes(path, sound);
            Forge(path).run("UPDATE part SET " + std::string(column) + "=" + column + by);
            Forge(path).sealPartRow();
            EXPECT_EQ(salvage(), soundLines);
            EXPECT_EQ(lost.size(), 1u) << allSaid();
            EXPECT_TRUE(said("table ")) << allSaid();
        }
    }
}

TEST_F(SalvagedPart, ARowFromAnOlderStateIsTakenAndSaid)
{
    damage("UPDATE object SET name='older' WHERE ordinal=9", true);
    const std::string copy = folder.file("older.prt");
    putBytes(copy, bytesOf(path));
    damage("ATTACH '" + copy +
           "' AS older;DELETE FROM object WHERE ordinal=9;"
           "INSERT INTO object SELECT * FROM older.object WHERE ordinal=9");
    Lines after = salvage();
    EXPECT_NE(after[9].find("'older'"), std::string::npos);
    EXPECT_EQ(lost.size(), 1u) << allSaid();
    EXPECT_TRUE(said("rows are from another state of the part")) << allSaid();
}

// --- the part's own row, masters, attributes, fonts ---------------------------------------------------

TEST_F(SalvagedPart, APartWhoseOwnRowIsDamagedKeepsItsValuesInDoubt)
{
    damage("UPDATE part SET next_ordinal=next_ordinal+1");
    Lines after = salvage();
    EXPECT_TRUE(said("the part's own row: its checksum does not match")) << allSaid();
    EXPECT_EQ(lost.size(), 1u) << allSaid();
    EXPECT_EQ(after[0], soundLines[0]);
}

TEST_F(SalvagedPart, APartWithoutItsOwnRowGetsNewOnes)
{
    damage("DELETE FROM part");
    const Lines after = salvageFile();
    EXPECT_TRUE(said("the part's own row: it is not there")) << allSaid();
    for (const auto &[ordinal, line] : soundLines)
        if (ordinal > 0) {
            EXPECT_EQ(after.at(ordinal), line);
        }
    Part &part = opened(rescued);
    EXPECT_EQ(part.units, 2); // of its sheets
    EXPECT_EQ(part.attributes.size(), 3u);
    EXPECT_EQ(part.layerStatus[1], 1);
    EXPECT_EQ(part.layerStatus[7], 2);
}

TEST_F(SalvagedPart, PatternsOfALostMasterShowNothing)
{
    damage("UPDATE pattern_master SET texts=texts||'x'");
    salvage();
    EXPECT_TRUE(said("pattern master 1: its row is damaged; it is left out")) << allSaid();
    EXPECT_TRUE(
        said("object 15 (pattern): pattern master 1, which it shows, is not there; it shows "
             "nothing"))
        << allSaid();
    EXPECT_TRUE(lostObjects().empty());
}

TEST_F(SalvagedPart, AnAttributeIsLostAlone)
{
    damage("UPDATE attribute SET value='other' WHERE object=16 AND position=0");
    Lines after = salvage();
    EXPECT_EQ(lost.size(), 1u) << allSaid();
    EXPECT_TRUE(said("object 16 (UDO SAMPLE_ODD): 1 attribute cannot be read; it is left out"))
        << allSaid();
    EXPECT_EQ(after[16].find("TITLE="), std::string::npos);
    EXPECT_NE(after[16].find("[\xff\xfe=\x80]"), std::string::npos); // the second one
}

TEST_F(SalvagedPart, ALostFontTableIsMadeAgain)
{
    damage("DELETE FROM object WHERE kind='font_table'");
    salvageFile();
    EXPECT_EQ(lostObjects(), std::set<int>{1});
    Part &part = opened(rescued);
    EXPECT_TRUE(Session::get().find(part.fontTable));
}

// --- sheets and views -----------------------------------------------------------------------------------

TEST_F(SalvagedPart, WhatStandsOnALostSheetStandsOnANewOneOfItsName)
{
    for (const char *which : {"2", "2,3", "3"}) {
        SCOPED_TRACE(which);
        damage("DELETE FROM object WHERE ordinal IN (" + std::string(which) + ")");
        const Lines after = salvageFile();
        EXPECT_EQ(after.size(), soundLines.size());
        EXPECT_NE(after.at(2).find(which == std::string("2,3") ? "'SALVAGED1'" : "'SH1'"),
                  std::string::npos)
            << after.at(2);
        EXPECT_NE(after.at(2).find("shown by #3"), std::string::npos);
        EXPECT_NE(after.at(3).find("of #2"), std::string::npos);
        for (const auto &[ordinal, line] : soundLines)
            if (ordinal != 2 && ordinal != 3) {
                EXPECT_EQ(after.at(ordinal), line);
            }
        EXPECT_TRUE(said("is made in its place")) << allSaid();
    }
}

// One ordinal, asked for twice: as a sheet by its view, as a font table by the part.
TEST_F(SalvagedPart, AFontTableDoesNotTakeThePlaceOfASheetMadeAgain)
{
    damage("UPDATE part SET font_table=2", true);
    Forge(path).run("UPDATE object SET checksum=0 WHERE ordinal=2 OR kind='font_table'");
    const Lines after = salvageFile();
    EXPECT_NE(after.at(2).find("sheet"), std::string::npos) << after.at(2);
    EXPECT_TRUE(said("the part's font table is no font table")) << allSaid();
}

// --- links and owners -----------------------------------------------------------------------------------

TEST_F(SalvagedPart, DanglingAndCyclicLinksAreCutOneByOne)
{
    struct Row {
        const char *sql;
        const char *said;
    };
    for (const Row &row :
         {Row{"UPDATE object SET links='[[2,999,0,1]]' WHERE ordinal=8",
              "object 8 (UDO SAMPLE_ROOT): link 1, of type 2, leads to object 999, which is not "
              "there; it leads nowhere"},
          Row{"UPDATE object SET links='[[2,8,0,1]]' WHERE ordinal=8",
              "object 8 (UDO SAMPLE_ROOT): link 1, of type 2, to object 8 (UDO SAMPLE_ROOT) closes "
              "a cycle; it leads nowhere"},
          Row{"UPDATE object SET links='[[4,8,0,2]]' WHERE ordinal=16",
              "object 16 (UDO SAMPLE_ODD): link 1, of type 4, to object 8 (UDO SAMPLE_ROOT) closes "
              "a cycle; it leads nowhere"},
          Row{"UPDATE object SET owned='[13,10,11,999]' WHERE ordinal=16",
              "object 16 (UDO SAMPLE_ODD): it owns object 999, which is not there; the list goes "
              "on without it"},
          Row{"UPDATE object SET owner=8 WHERE ordinal=9",
              "object 9 (point): its owner, object 8 (UDO SAMPLE_ROOT), does not list it; it "
              "stands free"}}) {
        SCOPED_TRACE(row.sql);
        damage(row.sql, true);
        const Lines after = salvage();
        EXPECT_TRUE(said(row.said)) << allSaid();
        EXPECT_EQ(after.size(), soundLines.size());
    }
}

TEST_F(SalvagedPart, OwnersInACircleAreSetFree)
{
    damage("UPDATE object SET owner=24,owned='[24]' WHERE ordinal=16;"
           "UPDATE object SET owner=16,owned='[16]' WHERE ordinal=24;"
           "UPDATE object SET owner=0 WHERE owner IN (16,24) AND kind<>'udo'",
           true);
    Lines after = salvage();
    EXPECT_TRUE(said("objects own each other in a cycle; it stands free")) << allSaid();
    EXPECT_EQ(lost.size(), 1u) << allSaid();
    EXPECT_NE(after[16].find("owner -"), std::string::npos); // the one that was met first
    EXPECT_NE(after[24].find("owner #16"), std::string::npos);
}

TEST_F(SalvagedPart, WhateverIsForgedComesBackAsAPartThatOpens)
{
    for (const Forgery &row : kForgeries) {
        SCOPED_TRACE(row.sql);
        damage(row.sql, true);
        const Lines after = salvage();
        EXPECT_FALSE(lost.empty());
        for (const auto &[ordinal, line] : soundLines) {
            if (ordinal == 0) continue;
            const bool leftOut = std::any_of(
                lost.begin(), lost.end(), [&, gone = ordinal](const store::Finding &finding) {
                    return finding.object == static_cast<std::uint64_t>(gone) &&
                           finding.mended == "it is left out" &&
                           finding.text.find("attribute") == std::string::npos;
                });
            EXPECT_NE(after.count(ordinal) > 0, leftOut) << ordinal << '\n' << allSaid();
        }
    }
}

// --- pages ------------------------------------------------------------------------------------------------

TEST_F(SalvagedPart, APartWithoutItsFirstPageIsWhole)
{
    putBytes(path, std::string(4096, '\0') + sound.substr(4096));
    EXPECT_EQ(salvageFile(), soundLines);
    EXPECT_TRUE(lostObjects().empty());
}

// Big enough for trees of several levels: each page in turn is gone.
TEST_F(SalvagedPart, AMissingPageLosesWhatStoodOnItAndThatIsNamedOrCounted)
{
    make(2000);
    const std::size_t pages = sound.size() / 4096;
    ASSERT_GT(pages, 60u);
    std::size_t mostLost = 0;
    for (std::size_t page = 1; page < pages; page += page < 6 ? 1 : 3) {
        SCOPED_TRACE(page + 1);
        std::string bytes = sound;
        bytes.replace(page * 4096, 4096, std::string(4096, '\0'));
        putBytes(path, bytes);
        const Lines after = salvage();
        std::size_t gone = 0;
        const std::set<int> named = lostObjects();
        for (const auto &[ordinal, line] : soundLines)
            gone += ordinal > 0 && (!after.count(ordinal) || named.count(ordinal)) ? 1 : 0;
        mostLost = std::max(mostLost, gone);
        std::size_t counted = named.size();
        std::smatch match;
        const std::string all = allSaid();
        if (std::regex_search(all, match, std::regex("table object: (\\d+) more row")))
            counted += static_cast<std::size_t>(std::stoi(match[1]));
        EXPECT_EQ(counted, gone) << all;
        for (const int ordinal : named)
            EXPECT_TRUE(soundLines.count(ordinal)) << ordinal << " was never there";
    }
    EXPECT_GT(mostLost, 5u);
    EXPECT_LT(mostLost, 120u) << "the pages below a lost one are found";
}

TEST_F(SalvagedPart, ATruncatedPartGivesWhatIsLeft)
{
    make(400);
    std::size_t before = soundLines.size();
    int rescuedParts = 0;
    for (std::size_t size = sound.size(); size > 97 * 29; size -= 97 * 29) {
        SCOPED_TRACE(size);
        putBytes(path, sound.substr(0, size));
        try {
            const Lines after = salvage();
            ++rescuedParts;
            for (const auto &[ordinal, line] : after)
                EXPECT_TRUE(soundLines.count(ordinal) ||
                            said("object " + std::to_string(ordinal)) || line.find("fonts") < 8)
                    << line;
            EXPECT_LE(after.size(), before + 1); // less and less, but for sheets made again
            before = std::min(before, after.size());
            EXPECT_EQ(lost.empty(), size == sound.size());
        } catch (const store::StoreError &error) {
            EXPECT_LT(size, 3 * 4096u) << error.message;
        }
    }
    EXPECT_GT(rescuedParts, 20);
}

namespace {

// Nothing but a part that opens, or a refusal.
void expectPartOrRefusal(const std::string &bytes)
{
    try {
        const store::Examination examined = store::examineImage(bytes, "damaged.prt");
        if (!examined.image.empty()) store::loadImage(examined.image, "rescued.prt");
    } catch (const store::StoreError &error) {
        EXPECT_EQ(error.message.rfind("damaged.prt: ", 0), 0u) << error.message;
    }
}

} // namespace

TEST_F(SalvagedPart, AFlippedBitAnywhereNeverBringsTheSalvageDown)
{
    for (std::size_t at = 0; at < sound.size(); at += 11) {
        SCOPED_TRACE(at);
        std::string bytes = sound;
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << at % 8));
        expectPartOrRefusal(bytes);
        if (HasFailure()) return;
    }
}

TEST_F(SalvagedPart, ScrambledPagesNeverBringTheSalvageDownSoak)
{
    std::mt19937 random(5);
    const int rounds = static_cast<int>(6000 * std::max(0.02, soakShare()));
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        std::string bytes = sound;
        for (unsigned n = 1 + random() % 40; n; --n) {
            const std::size_t at = random() % bytes.size();
            const std::size_t size = std::min<std::size_t>(1 + random() % 64, bytes.size() - at);
            if (random() % 2)
                bytes.replace(at, size, bytes.substr(random() % (bytes.size() - size), size));
            else
                bytes[at] = static_cast<char>(random());
        }
        expectPartOrRefusal(bytes);
        if (HasFailure()) return;
    }
}

// --- files --------------------------------------------------------------------------------------------------

TEST_F(SalvagedPart, ASaveThatWasCutOffIsUndoneInTheNewPartAlone)
{
    // A journal that says how the first pages were, beside a file that has new ones.
    {
        Part &part = opened(path);
        Session::get().closePart(part);
    }
    const pid_t child = ::fork();
    if (child == 0) {
        sqlite3 *database = nullptr;
        sqlite3_open(path.c_str(), &database);
        sqlite3_exec(database,
                     "PRAGMA cache_spill=1;PRAGMA cache_size=2;BEGIN;"
                     "UPDATE object SET name=name||'cut off'",
                     nullptr, nullptr, nullptr);
        ::_exit(0); // in the middle of it
    }
    statusOf(child);
    ASSERT_TRUE(fs::exists(path + "-journal"));
    const std::string journal = bytesOf(path + "-journal");
    EXPECT_EQ(salvageFile(), soundLines);
    EXPECT_TRUE(lost.empty()) << allSaid();
    EXPECT_EQ(bytesOf(path + "-journal"), journal);
}

TEST_F(SalvagedPart, WhatIsNoPartOrMissingOrTakenIsRefused)
{
    const auto code = [&](const std::string &from, const std::string &to) {
        try {
            store::salvage(from, to);
            return 0;
        } catch (const store::StoreError &error) {
            EXPECT_NE(error.message.find(".prt: "), std::string::npos) << error.message;
            return error.code;
        }
    };
    EXPECT_EQ(code(folder.file("none.prt"), rescued), UF_PART_err_file_not_found);
    EXPECT_EQ(code(path, path), UF_PART_err_file_exists);
    putBytes(folder.file("letter.prt"), std::string(9000, 'x'));
    EXPECT_EQ(code(folder.file("letter.prt"), rescued), UF_PART_err_not_a_part);
    putBytes(folder.file("empty.prt"), "");
    EXPECT_EQ(code(folder.file("empty.prt"), rescued), UF_PART_err_not_a_part);
    putBytes(folder.file("shell.prt"), sound.substr(0, 4096));
    EXPECT_EQ(code(folder.file("shell.prt"), rescued), UF_PART_err_damaged);
    Forge(path).run("PRAGMA user_version=2");
    EXPECT_EQ(code(path, rescued), UF_PART_err_newer_version);
    EXPECT_FALSE(fs::exists(rescued));
}

TEST_F(SalvagedPart, APartThatIsBeingSavedIsNotLookedAt)
{
    const LockingProcess holder(path, "BEGIN EXCLUSIVE");
    try {
        store::examine(path);
        ADD_FAILURE() << "was looked at";
    } catch (const store::StoreError &error) {
        EXPECT_EQ(error.code, UF_PART_err_locked);
        EXPECT_NE(error.message.find(std::to_string(holder.id())), std::string::npos);
    }
}

TEST_F(SalvagedPart, SalvageTakesNoMoreMemoryThanTwentyTimesTheFile)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer reserves memory of its own";
#endif
    make(4000);
    const pid_t child = ::fork();
    if (child == 0) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limit{pages * static_cast<rlim_t>(::getpagesize()) + 20 * sound.size(),
                           RLIM_INFINITY};
        ::setrlimit(RLIMIT_AS, &limit);
        try {
            for (std::size_t at = 0; at < sound.size(); at += sound.size() / 20) {
                std::string bytes = sound;
                bytes[at] = static_cast<char>(bytes[at] ^ 0x40);
                store::examineImage(bytes, "damaged.prt");
            }
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    EXPECT_EQ(statusOf(child), 0);
}

// --- looking only ---------------------------------------------------------------------------------------------

namespace {

std::vector<std::string> textsOf(const store::Examination &examined, Kind kind)
{
    std::vector<std::string> texts;
    for (const store::Finding &finding : examined.findings)
        if (finding.kind == kind) texts.push_back(finding.text);
    return texts;
}

} // namespace

TEST_F(SalvagedPart, CondemnedObjectsDeadReferencesAndOrphansAreFoundInASoundPart)
{
    Part &part = opened(path);
    Session &session = Session::get();
    const auto tagOf = [&](std::uint64_t ordinal) { return part.objects.at(ordinal)->tag; };
    session.remove(tagOf(16)); // the root holds it
    session.remove(tagOf(17)); // the point that the second note refers to
    newUdo(part, "ALONE");
    session.addLink(newUdo(part, "FORMAT"), 1, tagOf(9));
    session.addLink(newUdo(part, "FORMAT"), 1, tagOf(2));
    store::save(part, path);
    const store::Examination examined =
        store::examine(path, {{"SAMPLE_ODD", "SAMPLE_EVEN", "ALONE"}, {"FORMAT"}});
    EXPECT_EQ(examined.refusal, "");
    EXPECT_EQ(textsOf(examined, Kind::damage), std::vector<std::string>{});
    EXPECT_EQ(textsOf(examined, Kind::condemned),
              (std::vector<std::string>{"object 16 (UDO SAMPLE_ODD): it is deleted, but object 8 "
                                        "(UDO SAMPLE_ROOT) still holds it by a link of type 2"}));
    EXPECT_EQ(textsOf(examined, Kind::dangling),
              (std::vector<std::string>{
                  "object 21 (note \"note 2\"): its text refers to an object that is gone"}));
    const auto orphans = textsOf(examined, Kind::orphan);
    ASSERT_EQ(orphans.size(), 2u);
    EXPECT_NE(orphans[0].find("(UDO ALONE): it belongs to no other record"), std::string::npos);
    EXPECT_NE(orphans[1].find("(UDO FORMAT): it stands on no sheet"), std::string::npos);
}

TEST_F(SalvagedPart, DamageThatOpeningOverlooksIsFoundByALook)
{
    // Deleted rows leave free pages; a flip there is never read.
    Part &part = opened(path);
    for (int i = 0; i < 40; ++i) newNote(part, {std::string(900, 'x')});
    store::save(part, path);
    for (int i = 0; i < 40; ++i) Session::get().remove(part.objects.rbegin()->second->tag);
    store::save(part, path);
    nxhost::reset();
    EXPECT_TRUE(store::examine(path).findings.empty());
    putByte(path, 39, 0x55); // how many pages are free
    const store::Examination examined = store::examine(path);
    EXPECT_FALSE(examined.findings.empty());
    EXPECT_EQ(examined.findings[0].kind, Kind::damage);
    EXPECT_NE(examined.findings[0].text.find("its pages: "), std::string::npos)
        << examined.findings[0].text;
}
