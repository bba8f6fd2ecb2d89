// What rows say to others, and what others do to rows.
#include "tests/content/table_rows.h"

// --- shared values ------------------------------------------------------------------------------

TEST_F(TableRows, SharedValuesCarryTheNumberOfTheRow)
{
    revisions(0, [](TrFieldDefV1 &def) {
        def.SetBroadcastString(def.GetId() + "_");
        def.SetBroadcastType(1);
        def.SetBroadcastTableType(1);
        if (def.GetId() == "TEXT") def.SetMultiline(1);
    });
    append("A", {"one", "two"});
    append("B", {"three"});
    const UgAttributableObject &part = *story.partObject();
    EXPECT_EQ(attributeOf(part, "REV_0"), "A");
    EXPECT_EQ(attributeOf(part, "REV_1"), "B");
    EXPECT_EQ(attributeOf(part, "TEXT_00"), "one");
    EXPECT_EQ(attributeOf(part, "TEXT_01"), "two");
    EXPECT_EQ(attributeOf(part, "TEXT_10"), "three");

    set(*table()->entry(1), "REV", {""}); // an empty row never overwrites
    EXPECT_EQ(attributeOf(part, "REV_1"), "B");
    set(*table()->entry(1), "REV", {"C"});
    table()->MoveEntryUp(1);
    EXPECT_EQ(attributeOf(part, "REV_0"), "A"); // not before it is asked for
    table()->RebroadcastValues();
    EXPECT_EQ(attributeOf(part, "REV_0"), "C");
    EXPECT_EQ(attributeOf(part, "REV_1"), "A");
}

TEST_F(TableRows, EmptyRowsOfOtherTypesOverwrite)
{
    revisions(0, [](TrFieldDefV1 &def) {
        def.SetBroadcastString(def.GetId());
        def.SetBroadcastType(1);
        def.SetBroadcastTableType(2);
    });
    append("A");
    EXPECT_EQ(attributeOf(*story.partObject(), "TEXT0"), "");
}

TEST_F(TableRows, RecreatedNotesKeepTheirValues)
{
    revisions();
    append("A", {"one", "two"});
    append("B", {"three"});
    const tag_t old = noteTag(*table()->entry(0)->field("TEXT"));
    table()->RecreateNotes();
    EXPECT_NE(noteTag(*table()->entry(0)->field("TEXT")), old);
    EXPECT_EQ(table()->entry(0)->field("TEXT")->GetValue(), (Lines{"one", "two"}));
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 47.25}}));
}

// --- behind the library's back ------------------------------------------------------------------

TEST_F(TableRows, NoteChangedBehindTheLibrarysBackIsSeenWhenTheTableIsPlaced)
{
    revisions();
    append("A", {"one"});
    append("B", {"two"});
    char rows[3][133] = {"now", "three", "lines"}; // 2 + 3 x 3.5 + 2 x 1.75 = 16
    uc5566(noteTag(*table()->entry(0)->field("TEXT")), 1, 3, rows);
    table()->locate();
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 42}}));
    append("C", {"three"});
    EXPECT_EQ(textPlaces().back(), (At{125, 36.5}));
}

TEST_F(TableRows, RowsThatComeOrGoBehindTheLibrarysBackAreSeen)
{
    revisions();
    append("A", {"one"});
    append("B", {"two"});
    append("C", {"three"});
    const auto middle = table()->entry(1);
    table()->removeLink(2, middle->GetUdoObject());
    EXPECT_EQ(table()->entryCount(), 2u);
    EXPECT_EQ(table()->entry(1)->field("REV")->GetValue(), Lines{"C"});
    UF_UDOBJ_link_t link{2, middle->tag(), 0};
    UF_UDOBJ_add_links(table()->tag(), 1, &link);
    EXPECT_EQ(table()->entryCount(), 3u);
    EXPECT_EQ(table()->entry(2)->tag(), middle->tag());
    table()->locate();
    // A 5.5, C 5.5, B
    EXPECT_EQ(textPlaces(), (std::vector<At>{{125, 58}, {125, 52.5}, {125, 47}}));
    EXPECT_FALSE(table()->entry(3));
}

// What is remembered of the rows after a deleted one moves up with them.
TEST_F(TableRows, RowsStandRightAfterOthersWereDeletedAndNothingElseWasDone)
{
    revisions();
    append("A", {"one"});
    append("B", {"two", "lines"});
    append("C", {"three"});
    append("D", {"four"});
    table()->RemoveEntry(table()->entry(1));
    EXPECT_EQ(table()->indexOf(*table()->entry(2)), 2u);
    append("E", {"five"}); // behind A, C and D of 5.5 each: 57 - 16.5 + 1
    EXPECT_EQ(revs(), "ACDE");
    EXPECT_EQ(noteAt(*table()->entry(3)->field("TEXT")), (At{125, 41.5}));
    set(*table()->entry(2), "TEXT", {"four", "now"}); // 10.75: 57 - 21.75 + 1
    EXPECT_EQ(noteAt(*table()->entry(3)->field("TEXT")), (At{125, 36.25}));
}
