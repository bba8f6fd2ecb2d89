// Sheets after the library's own update, which leaves some of what is drawn as it was: copy and definition agree,
// the sheet does not.
#include "app/drift.h"
#include "app/update.h"
#include "definitions/field_def.h"
#include "definitions/table_def.h"
#include "tests/drawing/stage.h"

#include "uf_draw.h"

namespace {

using Names = std::vector<std::string>;

class HalfUpdated : public Stage {
protected:
    HalfUpdated() { nameField().width = 40, nameField().height = 8; }

    FieldDesc &nameField() { return catalog.field("TITLE", "NAME"); }
    std::string state() const { return app::nameOf(app::driftOf(sheet).state); }
    // "field NAME: bottom border: off -> on", of the block TITLE
    Names placed() const
    {
        Names lines;
        for (const app::Difference &one : app::driftOf(*block("TITLE")).placed)
            lines.push_back((one.where.empty() ? "" : one.where + ": ") + one.what + ": " +
                            one.stored + " -> " + one.disk);
        return lines;
    }
    void placeAndLoad()
    {
        reload();
        addFormat("A3");
        set("TITLE", "NUMBER", "4711");
        ASSERT_EQ(state(), "current");
    }
    void updateByTheLibrary()
    {
        reload();
        drawing()->updateFormat();
        ASSERT_TRUE(drawing()->isFormatUptoDate());
    }
    // Says so, is repaired, and is then what a sheet placed today is.
    void expectFoundAndRepaired(const Names &differences)
    {
        EXPECT_EQ(placed(), differences);
        EXPECT_EQ(state(), "drifted");
        app::updateSheet(sheet, "the sheet");
        EXPECT_EQ(state(), "current");
        EXPECT_EQ(value("TITLE", "NUMBER"), "4711");
        const std::string repaired = nxhost::listSheet(sheet);
        drawing()->removeFormat();
        addFormat("A3");
        set("TITLE", "NUMBER", "4711");
        EXPECT_EQ(nxhost::difference(nxhost::listSheet(sheet), repaired), "");
    }
};

TEST_F(HalfUpdated, ABorderThatIsDrawnFromNowOnIsMissed)
{
    placeAndLoad();
    nameField().borders[0] = 1;
    updateByTheLibrary();
    expectFoundAndRepaired({"field NAME: bottom border: off -> on"});
}

TEST_F(HalfUpdated, ABorderThatIsDrawnNoMoreIsSeen)
{
    nameField().borders = {1, 1, 0, 1, 1};
    placeAndLoad();
    nameField().borders = {1, 0, 0, 1, 1};
    updateByTheLibrary();
    expectFoundAndRepaired({"field NAME: left border: on -> off"});
}

TEST_F(HalfUpdated, LinesOfAFieldThatHasNoBoxAnyMoreAreSeen)
{
    nameField().borders = {1, 1, 0, 1, 1};
    placeAndLoad();
    nameField().width = 0;
    updateByTheLibrary();
    expectFoundAndRepaired({"field NAME: border lines: 4 -> 0"});
}

// "PART" stands there without the three blanks, of which the library reads the value "T".
TEST_F(HalfUpdated, AnIndentationThatTheNoteDoesNotHaveIsSeenAndCostsNoLetter)
{
    placeAndLoad();
    nameField().more = [](TrFieldDefV1 &def) { def.SetIndentation(3); };
    updateByTheLibrary();
    EXPECT_EQ(value("TITLE", "NAME"), "T");
    expectFoundAndRepaired({"field NAME: indentation of the note: 0 -> 3"});
    EXPECT_EQ(value("TITLE", "NAME"), "PART");
}

TEST_F(HalfUpdated, AnIndentationThatTheNoteStillHasIsSeenAndIsNoPartOfTheValue)
{
    nameField().more = [](TrFieldDefV1 &def) { def.SetIndentation(3); };
    placeAndLoad();
    nameField().more = {};
    updateByTheLibrary();
    EXPECT_EQ(value("TITLE", "NAME"), "   PART");
    expectFoundAndRepaired({"field NAME: indentation of the note: 3 -> 0"});
    EXPECT_EQ(value("TITLE", "NAME"), "PART");
}

// Its first blanks are its own.
TEST_F(HalfUpdated, BlanksThatWereTypedAreNoIndentation)
{
    placeAndLoad();
    set("TITLE", "NAME", "  GEAR");
    EXPECT_EQ(state(), "current");
    catalog.block("TITLE").textLayer = 31; // made anew
    reload();
    app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(value("TITLE", "NAME"), "  GEAR");
    nameField().more = [](TrFieldDefV1 &def) { def.SetIndentation(1); };
    reload();
    app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(value("TITLE", "NAME"), "  GEAR");
    EXPECT_EQ(field("TITLE", "NAME")->GetNoteValue(), TrFieldBase::Value{"   GEAR"});
}

TEST_F(HalfUpdated, PatternsOnAnotherLayerAreSeen)
{
    placeAndLoad();
    catalog.format("ISO").sizes[0].frameLayer = 12;
    catalog.block("TITLE").patternLayer = 40;
    updateByTheLibrary();
    const auto format = app::driftOf(sheet).placed;
    ASSERT_EQ(format.size(), 1u);
    EXPECT_EQ(format[0].what + " " + format[0].stored + " " + format[0].disk,
              "layer of the pattern 10 12");
    expectFoundAndRepaired({"layer of the pattern: 20 -> 40"});
}

TEST_F(HalfUpdated, ABorderOfTheUsersIsKept)
{
    nameField().borders = {4, 0, 0, 0, 0}; // drawn at first
    placeAndLoad();
    field("TITLE", "NAME")->SetHasBottomBorder(0);
    field("TITLE", "NAME")->fitBorders();
    EXPECT_EQ(state(), "current");
    catalog.block("TITLE").textLayer = 31;
    reload();
    app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(field("TITLE", "NAME")->GetHasBottomBorder(), 0);
    nameField().borders[0] = 1; // another policy is another border
    reload();
    app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(field("TITLE", "NAME")->GetHasBottomBorder(), 1);
}

// The text is at the right of its cell, a margin of 1 from the edge; a free block is not located anew.
TEST_F(HalfUpdated, ATextThatStaysBehindInABlockAtAPointOfTheUsersIsSeen)
{
    catalog.block("TITLE").movable = 1;
    nameField().textSite = 9;
    placeAndLoad();
    const double point[] = {100, 100};
    block("TITLE")->locateBlock(point);
    nameField().width = 60;
    updateByTheLibrary();
    EXPECT_EQ(placed(), Names{"field NAME: x: 145 -> 165"});
    app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{165, 105}));
}

// --- the sheet and its patterns -------------------------------------------------------------------------

// A2 is the metric size 3; 3 in inches is another one.
TEST_F(HalfUpdated, ASheetOfTheSameCodeInOtherUnitsIsAnotherSize)
{
    addFormat("A2");
    UF_DRAW_info_t info{};
    ASSERT_EQ(UF_DRAW_ask_drawing_info(sheet, &info), 0);
    info.size_state = UF_DRAW_ENGLISH_SIZE;
    info.size.english_size_code = static_cast<UF_DRAW_english_size_t>(3);
    info.units = 2;
    ASSERT_EQ(UF_DRAW_set_drawing_info(sheet, &info), 0);
    const auto drift = app::driftOf(sheet);
    ASSERT_EQ(drift.placed.size(), 1u);
    EXPECT_EQ(drift.placed[0].stored, "standard size 3 in");
    EXPECT_EQ(drift.placed[0].disk, "standard size 3 mm");
    app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(drawing()->drawingSize()[0], 594.0);
}

TEST_F(HalfUpdated, ASizeThatIsGoneStaysADifferenceAndIsNotUpdatedForEver)
{
    addFormat("A3");
    set("TITLE", "NAME", "GEAR");
    auto &sizes = catalog.format("ISO").sizes;
    sizes.erase(sizes.begin());
    reload();
    EXPECT_TRUE(app::updateSheet(sheet, "the sheet").changed());
    for (int i = 0; i < 2; ++i) {
        const auto drift = app::driftOf(sheet);
        EXPECT_EQ(app::nameOf(drift.state), "drifted");
        ASSERT_EQ(drift.placed.size(), 1u);
        EXPECT_EQ(drift.placed[0].where, "size A3");
        EXPECT_NE(drift.placed[0].disk.find("none any more"), std::string::npos);
        EXPECT_FALSE(app::updateSheet(sheet, "the sheet").changed());
    }
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    resize("A2");
    EXPECT_EQ(state(), "current");
}

TEST_F(HalfUpdated, ArtThatCannotBeReadIsNamed)
{
    addFormat("A3");
    boost::filesystem::remove(story.patternsFolder() + "/title.prt");
    EXPECT_EQ(app::driftOf(sheet).unreadable, Names{"title"});
}

TEST_F(HalfUpdated, AnotherPatternIsTheLibrarysToDraw)
{
    placeAndLoad();
    catalog.block("TITLE").pattern = "rev";
    reload();
    const auto report = app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(report.blocks.at(0).method, app::UpdateMethod::library);
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(patternNames(*block("TITLE")), Names{"rev"});
}

TEST_F(HalfUpdated, AnOrphanThatNothingCanBeDoneForIsNotChanged)
{
    addFormat("A3");
    format()->addBlock("NOTES");
    catalog.blocks.erase(catalog.blocks.begin()); // TITLE
    reload();
    EXPECT_FALSE(app::updateSheet(sheet, "the sheet").changed());
    catalog.block("NOTES").textLayer = 31;
    reload();
    EXPECT_TRUE(app::updateSheet(sheet, "the sheet").changed());
    EXPECT_FALSE(app::updateSheet(sheet, "the sheet").changed());
}

} // namespace
