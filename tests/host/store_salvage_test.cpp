// Damaged parts: all that is still there comes back in a new part, what is lost is named, and the damaged
// file stays as it is.
#include "store_forge.h"
#include "store_forgeries.h"
#include "store_processes.h"
#include "store_salvage.h"
#include "store_support.h"

#include "nxhost/control.h"
#include "store/salvage.h"
#include "uf_part.h"

#include <map>
#include <random>
#include <regex>
#include <set>

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
