// The ID symbols of rows.
#include "tests/content/block_on_sheet.h"

#include "udo/class_names.h"
#include "udo/udo_class.h"
#include "uf_layer.h"
#include "uf_obj.h"
#include "ug_part.hxx"

using QelFmt::SymbolBase;
using QelFmt::SymbolV1;

namespace {

struct SymbolLook {
    int type, density;
    double size;
    int color, layer;
    Lines text;
};

SymbolLook lookOf(const SymbolBase &symbol)
{
    const tag_t object = symbol.GetSymbolObject()->getTag();
    int ints[100];
    double reals[70];
    char radius[27], diameter[27];
    UgException::throwOnFailure(
        UF_DRF_ask_object_preferences(object, ints, reals, radius, diameter));
    int count = 0;
    UF_DRF_draft_aid_text_info_t *info = nullptr;
    UgException::throwOnFailure(UF_DRF_ask_draft_aid_text_info(object, &count, &info));
    Lines text;
    for (int i = 0; i < info->num_lines; ++i) text.push_back(info->text[i].full_string);
    UF_DRF_free_text(count, &info);
    const UF_OBJ_disp_props_t display = shown(object);
    return {ints[UF_DRF_MPI_id_symbol_type],
            ints[UF_DRF_MPI_id_symbol_density],
            reals[UF_DRF_MPR_id_symbol_size],
            display.color,
            display.layer,
            text};
}

At placeOf(const SymbolBase &symbol)
{
    double origin[3] = {};
    UgException::throwOnFailure(UF_DRF_ask_origin(symbol.GetSymbolObject()->getTag(), origin));
    return {origin[0], origin[1]};
}

boost::shared_ptr<SymbolBase> drawn(const Lines &lines,
                                    UF_DRF_id_symbol_type_e type = UF_DRF_sym_circle)
{
    const auto symbol = SymbolBase::createSymbol();
    symbol->createSymbolGeometry(Point3(30.0, 40.0, 0.0), type, lines);
    symbol->setSymbolPreferences(type, 2.5, 1.0, Red, 22);
    return symbol;
}

} // namespace

using Symbols = BlockOnSheet;

TEST_F(Symbols, AreDrawnWithoutALeaderAtTheirOrigin)
{
    Base::log::Recording recording{&QelFmt::info_log()};
    const auto symbol = drawn({"A", "1"}, UF_DRF_sym_divcir);
    EXPECT_EQ(LumUg::GetUDOClassName(symbol->GetUdoObject()), QelFmt::kSymbolV1Classname);
    EXPECT_EQ(placeOf(*symbol), (At{30, 40}));
    EXPECT_EQ(symbol->GetX(), 30.0);
    EXPECT_EQ(symbol->GetY(), 40.0);
    EXPECT_EQ(lookOf(*symbol).text, (Lines{"A", "1"}));
    EXPECT_EQ(lookOf(*symbol).type, UF_DRF_sym_divcir);
    EXPECT_TRUE(recording.has("symbol line 1 = A"));
    EXPECT_TRUE(recording.has("symbol line 2 = 1"));
    EXPECT_NE(nxhost::listSheet(sheet).find("leader 1 2"), std::string::npos)
        << nxhost::listSheet(sheet);
}

TEST_F(Symbols, MissingSecondLineIsEmpty)
{
    EXPECT_EQ(lookOf(*drawn({"A"})).text, Lines{"A"});
    EXPECT_EQ(lookOf(*drawn({"A", ""})).text, Lines{"A"});
    EXPECT_EQ(lookOf(*drawn({})).text, Lines{""});
}

TEST_F(Symbols, SizeFollowsTheLongestLine)
{
    struct Row {
        Lines lines;
        double size;
    };
    for (const Row &row : {
             Row{{"ABC", ""}, 13},    // 3 x 4.3333 = 12.9999, dropped to 12, raised to 13
             Row{{"ABC", "D"}, 16},   // 3 x 5.5 = 16.5
             Row{{"A", "BCDE"}, 22},  // 4 x 5.5
             Row{{"ABCDEF", ""}, 25}, // 6 x 4.3333 = 25.9998
             Row{{"", ""}, 13},       //
             Row{{"Größe", "1"}, 27}, // five characters: 27.5
         }) {
        EXPECT_EQ(lookOf(*drawn(row.lines)).size, row.size) << row.lines[0] << "/" << row.lines[1];
    }
    Base::log::Recording recording{&QelFmt::info_log()};
    drawn({"ABC", "D"});
    EXPECT_TRUE(recording.has("symbol size = 16.5"));
}

TEST_F(Symbols, SizeIsThatOfTheTextAsItIsSeen)
{
    story.partObject()->addStringAttribute("R", "SIXSIX");
    EXPECT_EQ(lookOf(*drawn({"<W@R>"})).size, 25.0);
}

TEST_F(Symbols, ColourLayerAndDensity)
{
    UF_LAYER_set_status(22, UF_LAYER_INACTIVE_LAYER);
    const SymbolLook look = lookOf(*drawn({"A"}));
    EXPECT_EQ(look.color, Red);
    EXPECT_EQ(look.layer, 22);
    EXPECT_EQ(look.density, 1);
    int status = 0;
    UF_LAYER_ask_status(22, &status);
    EXPECT_EQ(status, UF_LAYER_ACTIVE_LAYER);
    story.useSettings("[Format Defaults]\nQEL_SymbolDensity = 3\n");
    EXPECT_EQ(lookOf(*drawn({"A"})).density, 3);
    story.useSettings("[Format Defaults]\nQEL_SymbolDensity = many\n");
    EXPECT_EQ(lookOf(*drawn({"A"})).density, 1);
}

TEST_F(Symbols, NewTextHasTwoLinesOnlyWhenTheSecondSaysSomething)
{
    const auto symbol = drawn({"A", "1"});
    symbol->updateSymbolGeometry({"B", ""});
    EXPECT_EQ(lookOf(*symbol).text, Lines{"B"});
    symbol->updateSymbolGeometry({"C", "2"});
    EXPECT_EQ(lookOf(*symbol).text, (Lines{"C", "2"}));
    symbol->updateSymbolGeometry({std::string(131, 'x') + "ж"});
    EXPECT_EQ(lookOf(*symbol).text, Lines{std::string(131, 'x')});
}

TEST_F(Symbols, RecordForAPointTakesOverAnIdSymbolOnly)
{
    const auto first = drawn({"A"});
    UgDisplayableObject *object = first->GetSymbolObject();
    first->ReleaseSymbolObject();
    EXPECT_EQ(first->GetSymbolObject(), nullptr);
    EXPECT_EQ(UF_OBJ_ask_status(object->getTag()), UF_OBJ_ALIVE);
    const auto second = SymbolBase::createSymbol(Point3(5.0, 6.0, 7.0), object);
    EXPECT_EQ(second->GetSymbolObject(), object);
    EXPECT_EQ(second->GetX(), 5.0);
    EXPECT_EQ(second->GetY(), 6.0);

    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"note"}); });
    place();
    const auto third = SymbolBase::createSymbol(Point3(1.0, 2.0, 0.0), field("A")->GetNote());
    EXPECT_EQ(third->GetSymbolObject(), nullptr);
    EXPECT_EQ(third->checkAndUpgrade()->tag(), third->tag());
}

TEST_F(Symbols, RefusedSymbolLeavesNothing)
{
    const auto symbol = SymbolBase::createSymbol();
    nxhost::failCall("UF_UDOBJ_add_owning_links", 1175001);
    EXPECT_EQ(codeThrownBy(
                  [&] { symbol->createSymbolGeometry(Point3(1, 1, 0), UF_DRF_sym_circle, {"A"}); }),
              1175001);
    EXPECT_EQ(looseObjects(story.part()), 0u);
}

// --- references in their text -------------------------------------------------------------------

TEST_F(Symbols, TextWithoutAReferenceIsItself)
{
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_EQ(QelFmt::evaluateSymbolText({"plain", ""}), (Lines{"plain", ""}));
    EXPECT_TRUE(recording.has("Symbol: EvaluateNoteValue: orig Value = plain"));
    EXPECT_TRUE(recording.has("Symbol: coould not find OLD school W attribute."));
}

TEST_F(Symbols, ReferenceToThePartIsItsAttribute)
{
    story.partObject()->addStringAttribute("REV", "C");
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_EQ(QelFmt::evaluateSymbolText({"<W@REV>"}), Lines{"C"});
    EXPECT_TRUE(recording.has("Symbol: EvaluateNoteValue(): current Value = C"));
}

TEST_F(Symbols, MissingAttributeIsAddedEmpty)
{
    EXPECT_EQ(QelFmt::evaluateSymbolText({"<W@REV>"}), Lines{""});
    EXPECT_EQ(attributeOf(*story.partObject(), "REV"), "");
}

TEST_F(Symbols, ReferenceStandsAtTheStartAndReplacesTheWholeLine)
{
    story.partObject()->addStringAttribute("REV", "C");
    EXPECT_EQ(QelFmt::evaluateSymbolText({"Rev <W@REV>", "<W@REV> and more", "<W@REV"}),
              (Lines{"Rev <W@REV>", "C", "C"}));
    EXPECT_EQ(QelFmt::evaluateSymbolText({"<W@>", "<w@REV>", "<W @REV>"}),
              (Lines{"<W@>", "<w@REV>", "<W @REV>"}));
}

TEST_F(Symbols, ReferenceToAnObjectIsItsAttribute)
{
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"text"}); });
    place();
    UgDisplayableObject *note = field("A")->GetNote();
    note->addStringAttribute("MARK", "7");
    const std::string tag = std::to_string(note->getTag());
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_EQ(QelFmt::evaluateSymbolText({"<W!" + tag + "@MARK>", "<W!" + tag + "@?MARK>"}),
              (Lines{"7", "7"}));
    EXPECT_TRUE(recording.has("Looking for object " + tag));
    EXPECT_EQ(QelFmt::evaluateSymbolText({"<W!" + tag + "@NEW>"}), Lines{""});
    EXPECT_TRUE(note->hasStringAttribute("NEW"));
}

TEST_F(Symbols, ReferenceToNoObjectStaysAndMakesNothing)
{
    const auto changes = story.changesDuring([&] {
        EXPECT_EQ(QelFmt::evaluateSymbolText({"<W!999999@MARK>"}), Lines{"<W!999999@MARK>"});
    });
    EXPECT_EQ(changes, Lines{});
}

// --- of a row -----------------------------------------------------------------------------------

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

TEST_F(RowSymbols, AreEvaluatedAnewWhenTheTableIsPlaced)
{
    rows({"A", ""});
    table()->entry(1)->addSymbol(Point3(200, 100, 0));
    table()->entry(0)->field("REV")->ModifyValue({"B"}); // another row's
    EXPECT_EQ(lookOf(*symbol(1)).text, Lines{"A"});
    table()->locate();
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
