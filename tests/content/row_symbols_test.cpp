// The ID symbols of rows.
#include "tests/content/symbol_look.h"

#include "uf_obj.h"

#include <limits>

using QelFmt::SymbolBase;

class RowSymbols : public BlockOnSheet {
protected:
    void rows(const std::vector<std::string> &revs, const std::string &line1 = "REV",
              const std::string &line2 = "", const EditTable &more = {})
    {
        const TrFieldDefV1 rev =
            fieldDef("REV", [](TrFieldDefV1 &def) { def.SetMarginHeight(1.0); });
        hasTable(tableDef("REV", {rev}, [&](TrTableDefV1 &def) {
            def.SetSymbol1Value(line1);
            def.SetSymbol2Value(line2);
            if (more) more(def);
        }));
        place();
        for (const std::string &value : revs)
            table()->AppendEntry()->field("REV")->ModifyValue({value});
    }
    boost::shared_ptr<SymbolBase> symbol(std::size_t row, std::size_t index = 0) const
    {
        return table()->entry(row)->getSymbols().at(index);
    }
};

TEST_F(RowSymbols, StandAtTheirPointWithTheRowsText)
{
    rows({"A", "B"}, "REV", "2026",
         [](TrTableDefV1 &def) { def.SetSymbolType(UF_DRF_sym_divcir); });
    table()->entry(1)->addSymbol(Point3(200.0, 100.0, 55.0));
    EXPECT_EQ(placeOf(*symbol(1)), (At{200, 100}));
    const SymbolLook look = lookOf(*symbol(1));
    EXPECT_EQ(look.text, (Lines{"B", "2026"}));
    EXPECT_EQ(look.type, UF_DRF_sym_divcir);
    EXPECT_EQ(look.color, Red);
    EXPECT_EQ(look.layer, 22);
    EXPECT_EQ(look.size, 22.0); // 4 x 5.5
    EXPECT_TRUE(table()->entry(0)->getSymbols().empty());
    saveAndReopen();
    EXPECT_EQ(lookOf(*symbol(1)).text, (Lines{"B", "2026"}));
    EXPECT_EQ(placeOf(*symbol(1)), (At{200, 100}));
}

TEST_F(RowSymbols, SiteMayOverrideALine)
{
    rows({"A"}, "REV", "old");
    story.useSettings("[TITLE-REV Overrides]\nsymbol2Value = site\n");
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(lookOf(*symbol(0)).text, (Lines{"A", "site"}));
}

TEST_F(RowSymbols, TextThatIsNoFieldIsItself)
{
    rows({"A"}, "△");
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(lookOf(*symbol(0)).text, Lines{"△"});
}

TEST_F(RowSymbols, EmptyRowMeansTheLastOneBeforeThatSaysSomething)
{
    rows({"A", "", "", "D"});
    Base::log::Recording recording{&QelFmt::info_log()};
    table()->entry(2)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(lookOf(*symbol(2)).text, Lines{"A"});
    EXPECT_TRUE(recording.has("Getting entry to use for field REV"));
    EXPECT_TRUE(recording.has("Entry field is empty. Looking at entry 1"));
    EXPECT_TRUE(recording.has("Entry field is empty. Looking at entry 0"));
    EXPECT_TRUE(recording.has("Symbol value = A"));
}

TEST_F(RowSymbols, BlankRowsHaveABlankSymbol)
{
    rows({"", "", "C"});
    Base::log::Recording recording{&QelFmt::info_log()};
    table()->entry(1)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(lookOf(*symbol(1)).text, Lines{""});
    EXPECT_TRUE(recording.has("Using current entry since all are blank"));
}

TEST_F(RowSymbols, BlanksAreSomething)
{
    rows({"A", " "});
    table()->entry(1)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(lookOf(*symbol(1)).text, Lines{" "});
}

TEST_F(RowSymbols, FollowTheirValueInTextAndSize)
{
    rows({"A"});
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    const tag_t object = symbol(0)->GetSymbolObject()->getTag();
    table()->entry(0)->field("REV")->ModifyValue({"LONGER"});
    EXPECT_EQ(lookOf(*symbol(0)).text, Lines{"LONGER"});
    EXPECT_EQ(lookOf(*symbol(0)).size, 25.0);
    EXPECT_EQ(symbol(0)->GetSymbolObject()->getTag(), object);
    EXPECT_EQ(placeOf(*symbol(0)), (At{200, 100}));
}

TEST_F(RowSymbols, OfRowsThatSayNothingFollowTheRowBeforeThem)
{
    rows({"C", "", "", "D", ""});
    for (const std::size_t row : {1, 2, 3, 4}) table()->entry(row)->addSymbol(Point3(200, 100, 0));
    const auto said = [&] {
        Lines texts;
        for (const std::size_t row : {1, 2, 3, 4}) texts.push_back(lookOf(*symbol(row)).text[0]);
        return texts;
    };
    EXPECT_EQ(said(), (Lines{"C", "C", "D", "D"}));
    table()->entry(0)->field("REV")->ModifyValue({"Z"});
    EXPECT_EQ(said(), (Lines{"Z", "Z", "D", "D"})); // down to the first that says something itself
    table()->entry(2)->field("REV")->ModifyValue({"Q"});
    EXPECT_EQ(said(), (Lines{"Z", "Q", "D", "D"}));
    table()->entry(3)->field("REV")->ModifyValue({""});
    EXPECT_EQ(said(), (Lines{"Z", "Q", "Q", "Q"}));
    saveAndReopen();
    EXPECT_EQ(said(), (Lines{"Z", "Q", "Q", "Q"}));
    table()->entry(0)->field("REV")->ModifyValue({"LONGER"});
    EXPECT_EQ(lookOf(*symbol(1)).text, Lines{"LONGER"});
    EXPECT_EQ(lookOf(*symbol(1)).size, 25.0); // 6 x 4.3333, dropped
}

TEST_F(RowSymbols, FollowAcrossRowsWithoutOneAndOfRowsThatComeLater)
{
    rows({"A", "", ""});
    table()->entry(0)->field("REV")->ModifyValue({"B"}); // no row has a symbol yet
    table()->entry(2)->addSymbol(Point3(200, 100, 0));
    table()->entry(0)->field("REV")->ModifyValue({"C"});
    EXPECT_EQ(lookOf(*symbol(2)).text, Lines{"C"});
    const auto moved = table()->entry(2);
    table()->removeAndRetainEntry(moved);
    table()->entry(0)->field("REV")->ModifyValue({"D"});
    table()->AddEntry(moved);
    table()->entry(0)->field("REV")->ModifyValue({"E"});
    EXPECT_EQ(lookOf(*symbol(2)).text, Lines{"E"});
    moved->removeSymbol(symbol(2));
    table()->entry(0)->field("REV")->ModifyValue({"F"});
    EXPECT_TRUE(table()->entry(2)->getSymbols().empty());
}

TEST_F(RowSymbols, OfHiddenRowsFollowOutOfSight)
{
    rows({"A", ""});
    table()->entry(1)->addSymbol(Point3(200, 100, 0));
    table()->entry(1)->SetHideEntry(1);
    table()->entry(0)->field("REV")->ModifyValue({"B"});
    EXPECT_EQ(lookOf(*symbol(1)).text, Lines{"B"});
    EXPECT_EQ(shown(symbol(1)->GetSymbolObject()->getTag()).blank_status, UF_OBJ_BLANKED);
    table()->entry(1)->addSymbol(Point3(210, 100, 0)); // on a row that is hidden already
    EXPECT_EQ(shown(symbol(1, 1)->GetSymbolObject()->getTag()).blank_status, UF_OBJ_BLANKED);
}

TEST_F(RowSymbols, AreEvaluatedAnewWhenTheTableIsPlaced)
{
    rows({"A", "", ""});
    for (const std::size_t row : {1, 2}) table()->entry(row)->addSymbol(Point3(200, 100, 0));
    // Behind the library's back.
    char line[1][133] = {"B"};
    uc5566(noteTag(*table()->entry(0)->field("REV")), 1, 1, line);
    table()->entry(0)->field("REV")->GetUdoObject()->deleteStringAttribute("VALUE0");
    EXPECT_EQ(lookOf(*symbol(2)).text, Lines{"A"});
    table()->locate();
    EXPECT_EQ(lookOf(*symbol(1)).text, Lines{"B"});
    EXPECT_EQ(lookOf(*symbol(2)).text, Lines{"B"});
}

// A value is read from the attribute that other programs read, and from the note while there is
// none: that is so after the first value.
TEST_F(RowSymbols, ReadTheFirstLinesAttributeElseTheNote)
{
    rows({"A"});
    const auto rev = table()->entry(0)->field("REV");
    rev->GetUdoObject()->deleteStringAttribute("VALUE0");
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(lookOf(*symbol(0)).text, Lines{"A"}); // the note's
    rev->GetUdoObject()->addStringAttribute("VALUE0", "X");
    table()->entry(0)->updateSymbols();
    EXPECT_EQ(lookOf(*symbol(0)).text, Lines{"X"}); // the attribute's, whatever the note says
}

TEST_F(RowSymbols, TextSizeAndAspectAreTheDefinitions)
{
    rows({"A"}, "REV", "", [](TrTableDefV1 &def) {
        def.SetSymbolTextSize(4.25);
        def.SetSymbolTextAspect(0.75);
    });
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(lookOf(*symbol(0)).textSize, 4.25);
    EXPECT_EQ(lookOf(*symbol(0)).aspect, 0.75);
}

TEST_F(RowSymbols, StandOnTheirFormatsSheetWhicheverIsCurrent)
{
    rows({"A"});
    const tag_t first = sheet;
    const tag_t second = story.addSheet("S2", 420, 297); // the current one now
    const std::string before = nxhost::listSheet(second);
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    EXPECT_NE(nxhost::listSheet(first).find("leader"), std::string::npos);
    EXPECT_EQ(nxhost::listSheet(second), before);
}

// --- what is refused ----------------------------------------------------------------------------

TEST_F(RowSymbols, ThatCannotBeDrawnLeaveNoRecord)
{
    rows({"A"});
    const std::string before = nxhost::listSheet(sheet);
    for (const char *call : {"UF_DRF_create_id_symbol", "UF_DRF_set_object_preferences",
                             "UF_UDOBJ_add_links", "UF_UDOBJ_add_owning_links"}) {
        nxhost::failCall(call, 1155000);
        EXPECT_EQ(codeThrownBy([&] { table()->entry(0)->addSymbol(Point3(200, 100, 0)); }), 1155000)
            << call;
        EXPECT_TRUE(table()->entry(0)->getSymbols().empty()) << call;
        EXPECT_EQ(nxhost::listSheet(sheet), before) << call;
    }
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    EXPECT_EQ(table()->entry(0)->getSymbols().size(), 1u);
}

TEST_F(RowSymbols, OnALayerThatThereIsNotLeaveNothing)
{
    rows({"A"}, "REV", "", [](TrTableDefV1 &def) { def.SetSymbolLayer(0); });
    const std::string before = nxhost::listSheet(sheet);
    EXPECT_NE(codeThrownBy([&] { table()->entry(0)->addSymbol(Point3(200, 100, 0)); }), 0);
    EXPECT_TRUE(table()->entry(0)->getSymbols().empty());
    EXPECT_EQ(nxhost::listSheet(sheet), before);
}

TEST_F(RowSymbols, NeedAFinitePoint)
{
    rows({"A"});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    for (const Point3 &point :
         {Point3(nan, 1, 0), Point3(1, nan, 0), Point3(infinite, 1, 0), Point3(1, -infinite, 0)})
        EXPECT_EQ(textThrownBy([&] { table()->entry(0)->addSymbol(point); }),
                  "A symbol cannot be placed: give its X and Y as finite numbers");
    EXPECT_TRUE(table()->entry(0)->getSymbols().empty());
    table()->entry(0)->addSymbol(Point3(1, 1, nan)); // Z counts for nothing
    EXPECT_EQ(placeOf(*symbol(0)), (At{1, 1}));
}

TEST_F(RowSymbols, NeedADefinition)
{
    rows({"A"});
    table()->retainDefinition();
    EXPECT_EQ(textThrownBy([&] { table()->entry(0)->addSymbol(Point3(1, 1, 0)); }),
              "Table REV has no definition: bring the format up to date first");
    EXPECT_TRUE(table()->entry(0)->getSymbols().empty());
}

TEST_F(RowSymbols, ThatCannotFollowLeaveTheValueAsItWas)
{
    rows({"A", ""});
    for (const std::size_t row : {0, 1}) table()->entry(row)->addSymbol(Point3(200, 100, 0));
    // The third of the three: note, own symbol, the next row's.
    for (const unsigned nth : {2u, 3u}) {
        nxhost::failCall("uc5566", 1155000, nth);
        EXPECT_EQ(codeThrownBy([&] { table()->entry(0)->field("REV")->ModifyValue({"B"}); }),
                  1155000);
        EXPECT_EQ(table()->entry(0)->field("REV")->GetValue(), Lines{"A"});
        EXPECT_EQ(lookOf(*symbol(0)).text, Lines{"A"});
        EXPECT_EQ(lookOf(*symbol(1)).text, Lines{"A"});
    }
    table()->entry(0)->field("REV")->ModifyValue({"B"});
    EXPECT_EQ(lookOf(*symbol(1)).text, Lines{"B"});
}

TEST_F(RowSymbols, GeometryCanBeTakenAwayAndMadeAnew)
{
    rows({"A"});
    const auto row = table()->entry(0);
    row->addSymbol(Point3(200, 100, 0));
    row->addSymbol(Point3(210, 100, 0));
    const tag_t object = symbol(0)->GetSymbolObject()->getTag();
    row->removeAllSymbolGeometry();
    EXPECT_EQ(UF_OBJ_ask_status(object), UF_OBJ_DELETED);
    EXPECT_EQ(row->getSymbols().size(), 2u);
    row->updateSymbols(); // nothing to update
    row->makeGeometryOfAllSymbols();
    EXPECT_EQ(placeOf(*symbol(0)), (At{200, 100}));
    EXPECT_EQ(placeOf(*symbol(0, 1)), (At{210, 100}));
    const tag_t kept = symbol(0)->GetSymbolObject()->getTag();
    row->makeGeometryOfAllSymbols(); // for those that lack one
    EXPECT_EQ(symbol(0)->GetSymbolObject()->getTag(), kept);
    EXPECT_EQ(looseObjects(story.part()), 0u);
}

TEST_F(RowSymbols, GoWithTheirRow)
{
    rows({"A", "B"});
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    const tag_t record = symbol(0)->tag(), object = symbol(0)->GetSymbolObject()->getTag();
    table()->RemoveEntry(table()->entry(0));
    EXPECT_EQ(UF_OBJ_ask_status(record), UF_OBJ_DELETED);
    EXPECT_EQ(UF_OBJ_ask_status(object), UF_OBJ_DELETED);
}

TEST_F(RowSymbols, AreHiddenWithTheirRow)
{
    rows({"A"});
    table()->entry(0)->addSymbol(Point3(200, 100, 0));
    table()->HidePreviousEntries(1);
    EXPECT_EQ(shown(symbol(0)->GetSymbolObject()->getTag()).blank_status, UF_OBJ_BLANKED);
    table()->entry(0)->SetHideEntry(0);
    EXPECT_EQ(shown(symbol(0)->GetSymbolObject()->getTag()).blank_status, UF_OBJ_NOT_BLANKED);
}

TEST_F(RowSymbols, CanBeTakenOffOrDeletedOneByOne)
{
    rows({"A"});
    const auto row = table()->entry(0);
    row->addSymbol(Point3(200, 100, 0));
    row->addSymbol(Point3(210, 100, 0));
    const auto first = symbol(0), second = symbol(0, 1);
    row->removeAndRetainSymbol(first);
    EXPECT_EQ(UF_OBJ_ask_status(first->tag()), UF_OBJ_ALIVE);
    EXPECT_EQ(row->getSymbols().size(), 1u);
    const tag_t gone = second->tag();
    row->removeSymbol(second);
    EXPECT_EQ(UF_OBJ_ask_status(gone), UF_OBJ_DELETED);
    row->addSymbol(first);
    EXPECT_EQ(row->getSymbols().size(), 1u);
}

// Zones 52.5 wide, counted from the right; 49.5 high, letters from the bottom.
TEST_F(RowSymbols, TellTheirZones)
{
    rows({"A"});
    const auto row = table()->entry(0);
    row->addSymbol(Point3(400.0, 10.0, 0));  // (420 - 400) / 52.5 = 0, 10 / 49.5 = 0
    row->addSymbol(Point3(200.0, 120.0, 0)); // 220 / 52.5 = 4, 120 / 49.5 = 2
    EXPECT_EQ(row->symbolsZoneList(), (Lines{"A1", "C5"}));
}
