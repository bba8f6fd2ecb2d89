// The ID symbols of rows.
#include "tests/content/symbol_look.h"

#include "udo/class_names.h"
#include "udo/udo_class.h"
#include "uf_layer.h"
#include "uf_obj.h"
#include "ug_part.hxx"

using QelFmt::SymbolBase;

namespace {

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
