// The note that shows a field's value.
#include "tests/content/block_on_sheet.h"

#include "NXOpen/Annotations_SimpleDraftingAid.hxx"
#include "NXOpen/NXObjectManager.hxx"
#include "uf_layer.h"
#include "uf_obj.h"
#include "uf_ugfont.h"
#include "uf_view.h"

#include <map>

using FieldNote = BlockOnSheet;

namespace {

std::size_t calls(const std::string &function) { return nxhost::callCount(function); }

} // namespace

TEST_F(FieldNote, OneEmptyLineMakesNoNoteTwoDo)
{
    has("A");
    place();
    EXPECT_EQ(field("A")->GetNote(), nullptr);
    field("A")->ModifyValue({""});
    EXPECT_EQ(field("A")->GetNote(), nullptr);
    field("A")->ModifyValue({});
    EXPECT_EQ(field("A")->GetNote(), nullptr);
    EXPECT_EQ(field("A")->GetNumberOfLines(), 1);

    field("A")->ModifyValue({"", ""});
    ASSERT_NE(field("A")->GetNote(), nullptr);
    EXPECT_EQ(field("A")->GetNoteValue(), (Lines{"", ""}));
    EXPECT_EQ(field("A")->GetValue(), (Lines{"", ""}));
}

TEST_F(FieldNote, StandsOnTheBlocksTextLayerWhichBecomesSelectable)
{
    UF_LAYER_set_status(21, UF_LAYER_INACTIVE_LAYER);
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    place();
    EXPECT_EQ(shown(noteTag(*field("A"))).layer, 21);
    int status = 0;
    UF_LAYER_ask_status(21, &status);
    EXPECT_EQ(status, UF_LAYER_ACTIVE_LAYER);
}

TEST_F(FieldNote, LooksAsTheDefinitionSays)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetDefaultString({"A3"});
        def.SetTextSite(5);
        def.SetTextJustification(2);
        def.SetTextAngle(30.0);
        def.SetTextAspect(0.8);
        def.SetTextSize(5.0);
        def.SetLineSpace(1.2);
        def.SetCharSpaceFactor(1.5);
        def.SetTextWidthType(1);
        def.SetTextColor(Red);
        def.SetTextFontName("iso3098");
    });
    place();
    const auto held = field("A");
    const TrFieldBase &one = *held;
    EXPECT_EQ(notePref(one, UF_DRF_MPI_align_site), 5);
    EXPECT_EQ(notePref(one, UF_DRF_MPI_text_justification), 2);
    EXPECT_EQ(notePref(one, UF_DRF_MPI_text_width), 1);
    EXPECT_EQ(notePref(one, UF_DRF_MPI_text_color), Red);
    EXPECT_EQ(noteNumber(one, UF_DRF_MPR_text_angle), 30.0);
    EXPECT_EQ(noteNumber(one, UF_DRF_MPR_aspect_ratio), 0.8);
    EXPECT_EQ(noteNumber(one, UF_DRF_MPR_char_size), 5.0);
    EXPECT_EQ(noteNumber(one, UF_DRF_MPR_line_space_factor), 1.2);
    EXPECT_EQ(noteNumber(one, UF_DRF_MPR_char_space_factor), 1.5);

    tag_t table = NULL_TAG;
    UF_OBJ_cycle_objs_in_part(story.part(), UF_font_table_type, &table);
    char *name = nullptr;
    UF_UGFONT_ask_font_name(table, notePref(one, UF_DRF_MPI_text_font), &name);
    EXPECT_STREQ(name, "iso3098");
    UF_free(name);
}

TEST_F(FieldNote, NoCharacterSpaceFactorIsOne)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetDefaultString({"A3"});
        def.SetCharSpaceFactor(0.0);
    });
    place();
    EXPECT_EQ(noteNumber(*field("A"), UF_DRF_MPR_char_space_factor), 1.0);
}

TEST_F(FieldNote, WhatTheDefinitionLeavesOpenIsThePlatformsOwn)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetDefaultString({"A3"});
        def.SetTextSite(0);
        def.SetTextSize(0.0);
    });
    const UF_DRF_lettering_preferences_t before = lettering();
    place();
    EXPECT_EQ(notePref(*field("A"), UF_DRF_MPI_align_site), before.align_position);
    EXPECT_EQ(noteNumber(*field("A"), UF_DRF_MPR_char_size), before.general_text.size);
    EXPECT_EQ(notePref(*field("A"), UF_DRF_MPI_text_font), before.general_text.cfw.font);
}

TEST_F(FieldNote, LeavesTheLetteringPreferencesAsTheyWere)
{
    UF_DRF_lettering_preferences_t mine = lettering();
    mine.align_position = 3;
    mine.angle = 45.0;
    mine.general_text.cfw.color = Orange;
    mine.general_text.line_space_factor = 1.7;
    UF_DRF_set_lettering_preferences(&mine);
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    place();
    ASSERT_NE(field("A")->GetNote(), nullptr);
    EXPECT_TRUE(sameLettering(lettering(), mine));
}

// --- long values --------------------------------------------------------------------------------

TEST_F(FieldNote, ValueLongerThanTheLimitIsDrawnSmallerOrNarrower)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetAltTextSizeNumChars(5);
        def.SetAltTextSize(2.5);
        def.SetAltTextAspectNumChars(7);
        def.SetAltTextAspect(0.7);
    });
    place();
    struct Row {
        const char *value;
        double size, aspect;
    };
    for (const Row &row :
         {Row{"ABCDE", 3.5, 1.0},  // five are not more than five
          Row{"ABCDEF", 2.5, 1.0}, // the note is there already: it follows
          Row{"ABCDEFGH", 2.5, 0.7}, Row{"Größe", 3.5, 1.0}, // five characters, seven bytes
          Row{"A", 3.5, 1.0}}) {
        SCOPED_TRACE(row.value);
        field("A")->ModifyValue({row.value, "a second line does not count"});
        EXPECT_EQ(noteNumber(*field("A"), UF_DRF_MPR_char_size), row.size);
        EXPECT_EQ(noteNumber(*field("A"), UF_DRF_MPR_aspect_ratio), row.aspect);
    }
}

TEST_F(FieldNote, AlternativeNeedsALimitAndAValue)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetAltTextSize(2.5);         // no limit
        def.SetAltTextAspectNumChars(3); // no aspect
        def.SetDefaultString({"ABCDEFGHIJ"});
    });
    place();
    EXPECT_EQ(noteNumber(*field("A"), UF_DRF_MPR_char_size), 3.5);
    EXPECT_EQ(noteNumber(*field("A"), UF_DRF_MPR_aspect_ratio), 1.0);
}

// --- flipped text -------------------------------------------------------------------------------

TEST_F(FieldNote, FlippedTextIsTurnedRoundItsOrigin)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetDefaultString({"A3"});
        def.SetFlipText(1);
        def.SetTextAngle(30.0);
        def.SetLocationX(10.0);
    });
    place();
    EXPECT_NEAR(noteNumber(*field("A"), UF_DRF_MPR_text_angle), 210.0, 1e-9);
    EXPECT_EQ(noteAt(*field("A")), (At{110.0, 50.0}));

    field("A")->ModifyValue({"another"}); // is not turned back, nor once more
    EXPECT_NEAR(noteNumber(*field("A"), UF_DRF_MPR_text_angle), 210.0, 1e-9);
    field("A")->UpdateDefinition(fieldDef("A", [](TrFieldDefV1 &def) {
        def.SetFlipText(1);
        def.SetTextAngle(40.0);
        def.SetLocationX(10.0);
    }));
    EXPECT_NEAR(noteNumber(*field("A"), UF_DRF_MPR_text_angle), 220.0, 1e-9);
    EXPECT_EQ(noteAt(*field("A")), (At{110.0, 50.0}));
}

// --- another text -------------------------------------------------------------------------------

TEST_F(FieldNote, SameTextChangesNothing)
{
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    place();
    field("A")->ModifyValue({"A3"}); // the attributes are filled by now
    const std::string listing = nxhost::listSheet(sheet);
    nxhost::clearCallCounts();
    Base::log::Recording recording{&QelFmt::info_log()};
    field("A")->ModifyValue({"A3"});
    EXPECT_EQ(calls("uc5566"), 0u);
    EXPECT_EQ(calls("UF_DRF_set_ugdefault_sbf_file"), 0u);
    EXPECT_TRUE(recording.has("IsSameValue == 1 MATCH"));
    EXPECT_FALSE(recording.has("IsSameValue == 0 DONT MATCH"));
    EXPECT_EQ(recording.records().back().text, "IsSameValue == 1 MATCH");
    EXPECT_EQ(nxhost::listSheet(sheet), listing);
}

TEST_F(FieldNote, NewTextKeepsTheNoteAndSaysWhatItDoes)
{
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    place();
    const tag_t note = noteTag(*field("A"));
    Base::log::Recording recording{&QelFmt::info_log()};
    field("A")->ModifyValue({"B4", "C5"});
    EXPECT_EQ(noteTag(*field("A")), note);
    EXPECT_EQ(field("A")->GetNoteValue(), (Lines{"B4", "C5"}));
    for (const char *text : {"ModifyValue(): Modifying field to value:", "    B4", "    C5",
                             "..calling UpdateNote() with value B4", "...in updateNote()",
                             "IsSameValue == 0 DONT MATCH", "Setting default symbol file",
                             "Found previous note - Modify using uc5566",
                             "Modifying field A's note", "  Line 0 = B4", "  Line 1 = C5"})
        EXPECT_TRUE(recording.has(text)) << text;
}

TEST_F(FieldNote, FirstNoteSaysWhatItDoes)
{
    has("A");
    place();
    Base::log::Recording recording{&QelFmt::info_log()};
    field("A")->ModifyValue({"A3", "A4"});
    for (const std::string &text :
         {std::string("Did not find note - CreateNote()"), std::string("line 1 value = A3"),
          std::string("CreateUgNote()...."), std::string("Creating UG note A"),
          std::string("Number of lines = 2"), std::string("  line 0: A3"),
          std::string("  line 1: A4"), "UG noteTag = " + std::to_string(noteTag(*field("A")))})
        EXPECT_TRUE(recording.has(text)) << text;
}

TEST_F(FieldNote, EmptyValueLeavesANoteWithoutLines)
{
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    place();
    field("A")->ModifyValue({});
    ASSERT_NE(field("A")->GetNote(), nullptr);
    EXPECT_EQ(field("A")->GetNoteValue(), Lines{});
    EXPECT_EQ(field("A")->GetValue(), Lines{""});
    EXPECT_EQ(field("A")->GetNumberOfLines(), 1);
    EXPECT_DOUBLE_EQ(field("A")->CalcHeight(), 0.0);
    field("A")->ModifyValue({"back"});
    EXPECT_EQ(field("A")->GetValue(), Lines{"back"});
}

TEST_F(FieldNote, RewrittenLineIsCutAt132BytesButNeverInsideACharacter)
{
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    place();
    // 131 bytes, then a character of two: it would end at 133.
    field("A")->ModifyValue({std::string(131, 'x') + "ж" + "tail"});
    EXPECT_EQ(field("A")->GetNoteValue(), Lines{std::string(131, 'x')});
    field("A")->ModifyValue({std::string(130, 'x') + "ж" + "tail"});
    EXPECT_EQ(field("A")->GetNoteValue(), Lines{std::string(130, 'x') + "ж"});
    field("A")->ModifyValue({std::string(130, 'x') + "图" + "tail"}); // three bytes: ends at 133
    EXPECT_EQ(field("A")->GetNoteValue(), Lines{std::string(130, 'x')});
    EXPECT_EQ(valueAttributes(*field("A")), Lines{std::string(130, 'x') + "图" + "tail"});
}

TEST_F(FieldNote, NewNoteTakesLinesOfAnyLength)
{
    const std::string longLine(1000, 'y');
    has("A", [&](TrFieldDefV1 &def) { def.SetDefaultString({longLine}); });
    place();
    EXPECT_EQ(field("A")->GetValue(), Lines{longLine});
    saveAndReopen();
    EXPECT_EQ(field("A")->GetValue(), Lines{longLine});
}

TEST_F(FieldNote, SymbolFileFollowsTheDefinition)
{
    has("A", [](TrFieldDefV1 &def) { def.SetSymbolFile(1); });
    has("B");
    place();
    Base::log::Recording recording{&QelFmt::info_log()};
    field("A")->ModifyValue({"<&70>"});
    EXPECT_TRUE(nxhost::usesCustomerSymbolFile());
    EXPECT_TRUE(recording.has("Setting customer symbol file"));
    EXPECT_FALSE(recording.has("Setting default symbol file"));
    field("B")->ModifyValue({"<&70>"});
    EXPECT_FALSE(nxhost::usesCustomerSymbolFile());
    EXPECT_TRUE(recording.has("Setting default symbol file"));
}

TEST_F(FieldNote, UserSymbolSizeNeedsBothNumbers)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetUserSymbolLength(7.0);
        def.SetUserSymbolHeight(5.0);
    });
    has("B", [](TrFieldDefV1 &def) { def.SetUserSymbolLength(7.0); });
    place();
    const auto sizeOf = [&](const char *id) {
        using namespace NXOpen;
        auto *note = dynamic_cast<Annotations::SimpleDraftingAid *>(
            NXObjectManager::Get(noteTag(*field(id))));
        Annotations::UserSymbolPreferences::SizeType type{};
        double length = 0.0, height = 0.0;
        note->GetUserSymbolSize(&type, &length, &height);
        return At{length, height};
    };
    field("A")->ModifyValue({"x"});
    field("B")->ModifyValue({"x"});
    EXPECT_EQ(sizeOf("A"), (At{7.0, 5.0}));
    EXPECT_FALSE(sizeOf("B").x == 7.0);
}

// --- made anew, taken away ----------------------------------------------------------------------

TEST_F(FieldNote, RecreatedNoteIsAnotherOneWithTheSameValue)
{
    has("A", [](TrFieldDefV1 &def) { def.SetIndentation(2); });
    place();
    field("A")->ModifyValue({"one", "two"}); // the attributes tell of the first line only
    EXPECT_EQ(valueAttributes(*field("A")), Lines{"one"});
    const tag_t old = noteTag(*field("A"));
    field("A")->RecreateNote();
    EXPECT_EQ(UF_OBJ_ask_status(old), UF_OBJ_DELETED);
    EXPECT_NE(noteTag(*field("A")), old);
    EXPECT_EQ(field("A")->GetValue(), (Lines{"one", "two"}));
    EXPECT_EQ(looseObjects(story.part()), 0u);
}

TEST_F(FieldNote, RecreatingAFieldWithoutANoteLosesNothing)
{
    has("A");
    place();
    field("A")->RecreateNote();
    EXPECT_EQ(field("A")->GetNote(), nullptr);
    EXPECT_EQ(field("A")->GetValue(), Lines{""});

    TrFieldV1 one(field("A")->GetUdoObject());
    one.SetNumberOfLines(1); // the value stands in the attributes only
    one.GetUdoObject()->setStringAttributeValue("VALUE0", "kept");
    field("A")->RecreateNote();
    EXPECT_EQ(field("A")->GetValue(), Lines{"kept"});
}

TEST_F(FieldNote, RecreatedNoteOfAComputedFieldShowsWhatTheDefinitionGivesNow)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetUseDefaultInitially(0);
        def.SetDefaultString({"computed"});
    });
    place();
    field("A")->ModifyValue({"typed"});
    field("A")->RecreateNote();
    EXPECT_EQ(field("A")->GetValue(), Lines{"computed"});
}

TEST_F(FieldNote, ReleasedObjectsLiveOn)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetDefaultString({"A3"});
        def.SetBottomBorderPolicy(1);
        def.SetWidth(30.0);
        def.SetHeight(8.0);
    });
    place();
    const tag_t note = noteTag(*field("A"));
    const tag_t line = borderTags(*field("A")).at(0);
    field("A")->RemoveDraftingObjects(true);
    EXPECT_EQ(noteTag(*field("A")), note);
    EXPECT_EQ(borderTags(*field("A")), std::vector<tag_t>{});
    EXPECT_EQ(UF_OBJ_ask_status(line), UF_OBJ_ALIVE);
    field("A")->RemoveDraftingObjects(false);
    EXPECT_EQ(field("A")->GetNote(), nullptr);
    EXPECT_EQ(UF_OBJ_ask_status(note), UF_OBJ_ALIVE);
}

TEST_F(FieldNote, NoteGoesWithItsField)
{
    has("A", [](TrFieldDefV1 &def) { def.SetDefaultString({"A3"}); });
    place();
    const tag_t note = noteTag(*field("A"));
    boost::shared_ptr<TrBlockBase> gone = block();
    TrDrawing::getDrawing(sheet)->format()->removeBlock(gone);
    EXPECT_EQ(UF_OBJ_ask_status(note), UF_OBJ_DELETED);
}

// --- other sheets -------------------------------------------------------------------------------

TEST_F(FieldNote, NoteMadeWhileAnotherSheetIsCurrentStandsOnItsOwnSheet)
{
    has("A", [](TrFieldDefV1 &def) {
        def.SetWidth(30.0);
        def.SetHeight(8.0);
        def.SetTopBorderPolicy(1);
    });
    place();
    const tag_t other = story.addSheet("OTHER", 420, 297);
    const std::string onOther = nxhost::listSheet(other);
    field("A")->ModifyValue({"A3"});
    EXPECT_EQ(nxhost::listSheet(other), onOther);
    EXPECT_NE(nxhost::listSheet(sheet).find("A3"), std::string::npos);
    saveAndReopen();
    EXPECT_NE(nxhost::listSheet(sheet).find("A3"), std::string::npos);
}

// --- texts of the world -------------------------------------------------------------------------

TEST_F(FieldNote, TextsOfAnyLanguageComeBackUnharmed)
{
    const Lines texts = {"Чертёж № 5", "图纸 标题栏", "Å e\u0301 ñ", "⌀ 12 ±0,05 45°", "a\tb  c"};
    for (const std::string &text : texts) has(text);
    place();
    for (const std::string &text : texts) field(text)->ModifyValue({text});
    for (const std::string &text : texts) field(text)->ModifyValue({text + "!", text});
    saveAndReopen();
    for (const std::string &text : texts) {
        EXPECT_EQ(field(text)->GetValue(), (Lines{text + "!", text}));
        EXPECT_EQ(field(text)->GetFieldDefName(), text);
    }
}
