#include "tests/host/drawing_host.h"

#include "uf_layer.h"
#include "uf_ugfont.h"
#include "uf_view.h"
#include "ug_part.hxx"

#include <cmath>
#include <cstring>

namespace {

using Drafting = DrawingHost;
using Lines = std::vector<std::string>;

// --- notes ----------------------------------------------------------------------------------------

TEST_F(Drafting, ANoteKeepsItsLinesWholeAndHasOneTextRecord)
{
    const std::string longLine(500, 'x');
    const tag_t note = addNote({"first", "", longLine});
    const TextInfo text = textOf(note);
    EXPECT_EQ(text.records, 1);
    EXPECT_EQ(text.lines, (Lines{"first", "", longLine}));
    EXPECT_EQ(text.cutLines[2], longLine.substr(0, 132));
}

TEST_F(Drafting, TheCutCopyNeverEndsInsideACharacter)
{
    const std::string line = std::string(131, 'x') + "\xC3\xA9" + "end"; // é at bytes 131 and 132
    EXPECT_EQ(textOf(addNote({line})).cutLines[0], std::string(131, 'x'));
}

TEST_F(Drafting, ANoteLiesOnTheWorkLayerInTheCurrentSheetsView)
{
    const tag_t sheet = openNewSheet("S1");
    ASSERT_EQ(UF_LAYER_set_status(12, UF_LAYER_WORK_LAYER), 0);
    const tag_t note = addNote({"a"});
    EXPECT_EQ(displayOf(note).layer, 12);
    int type = 0, subtype = 0;
    EXPECT_EQ(UF_OBJ_ask_type_and_subtype(note, &type, &subtype), 0);
    EXPECT_EQ(type, 25);
    EXPECT_EQ(subtype, 1);
    tag_t in = NULL_TAG;
    EXPECT_EQ(UF_VIEW_cycle_objects(viewOf(sheet), UF_VIEW_DEPENDENT_OBJECTS, &in), 0);
    EXPECT_EQ(in, note);
}

TEST_F(Drafting, ANoteWithoutLinesIsRefusedAndNothingIsMade)
{
    tag_t note = 77;
    const std::size_t before = nxhost::countObjects(part());
    EXPECT_EQ(createNote({}, &note), UF_DRF_err_invalid_parameter);
    EXPECT_EQ(note, NULL_TAG);
    EXPECT_EQ(nxhost::countObjects(part()), before);
}

TEST_F(Drafting, AMissingLineOrAnUnknownOrientationIsRefused)
{
    char *lines[] = {nullptr};
    char text[] = "a";
    char *good[] = {text};
    double origin[3] = {0, 0, 0};
    tag_t note = NULL_TAG;
    EXPECT_EQ(UF_DRF_create_note(1, lines, origin, 0, &note), UF_DRF_err_invalid_parameter);
    EXPECT_EQ(UF_DRF_create_note(1, good, origin, 2, &note), UF_DRF_err_invalid_parameter);
    EXPECT_EQ(UF_DRF_create_note(1, good, nullptr, 0, &note), UF_DRF_err_invalid_parameter);
}

TEST_F(Drafting, TheOriginIsSetAndAskedInSheetCoordinates)
{
    const tag_t note = addNote({"a"}, 1.25, -3000.0);
    EXPECT_EQ(originOf(note), (Coordinates{1.25, -3000.0, 0}));
    double to[3] = {7, 8, 0.5};
    EXPECT_EQ(UF_DRF_set_origin(note, to), 0);
    EXPECT_EQ(originOf(note), (Coordinates{7, 8, 0.5}));
}

TEST_F(Drafting, SettingTheSameOriginChangesNothing)
{
    const tag_t note = addNote({"a"}, 1, 2);
    double same[3] = {1, 2, 0};
    EXPECT_TRUE(changesDuring([&] { UF_DRF_set_origin(note, same); }).empty());
}

TEST_F(Drafting, CallsOnSomethingElseThanAnAnnotationHaveTheirOwnCodes)
{
    double origin[3] = {0, 0, 0};
    EXPECT_EQ(UF_DRF_ask_origin(NULL_TAG, origin), UF_DRF_err_null_object);
    EXPECT_EQ(UF_DRF_ask_origin(4000000000u, origin), UF_err_unknown_tag);
    EXPECT_EQ(UF_DRF_ask_origin(addSheet("S1"), origin), UF_DRF_err_invalid_object);
}

// --- replacing a text -----------------------------------------------------------------------------

template <std::size_t N> struct Rows {
    char text[N][133] = {};
    explicit Rows(const std::array<std::string, N> &lines)
    {
        // As long a line as the row takes; a full row has no end.
        for (std::size_t i = 0; i < N; ++i) lines[i].copy(text[i], sizeof text[i]);
    }
};

TEST_F(Drafting, ReplacedTextTakesMoreOrFewerLinesAndKeepsTheNote)
{
    const tag_t note = addNote({"one"}, 5, 6);
    EXPECT_EQ(uc5566(note, 1, 3, Rows<3>({"a", "", "c"}).text), 0);
    EXPECT_EQ(textOf(note).lines, (Lines{"a", "", "c"}));
    EXPECT_EQ(uc5566(note, 1, 1, Rows<1>({"z"}).text), 0);
    EXPECT_EQ(textOf(note).lines, Lines{"z"});
    EXPECT_EQ(originOf(note), (Coordinates{5, 6, 0}));
}

TEST_F(Drafting, ZeroLinesEmptyANoteWhichCanBeFilledAgain)
{
    const tag_t note = addNote({"one"});
    EXPECT_EQ(uc5566(note, 1, 0, nullptr), 0);
    const TextInfo empty = textOf(note);
    EXPECT_EQ(empty.records, 1);
    EXPECT_TRUE(empty.lines.empty());
    EXPECT_EQ(empty.values.height, 0.0);
    EXPECT_EQ(uc5566(note, 1, 1, Rows<1>({"back"}).text), 0);
    EXPECT_EQ(textOf(note).lines, Lines{"back"});
}

TEST_F(Drafting, ARowOf133BytesHolds132)
{
    const tag_t note = addNote({"one"});
    Rows<1> row({std::string()});
    std::memset(row.text[0], 'q', sizeof row.text[0]);
    EXPECT_EQ(uc5566(note, 1, 1, row.text), 0);
    EXPECT_EQ(textOf(note).lines, Lines{std::string(132, 'q')});
}

TEST_F(Drafting, OnlyTheMainTextOfANoteCanBeReplaced)
{
    const tag_t note = addNote({"one"});
    EXPECT_EQ(uc5566(note, 2, 1, Rows<1>({"a"}).text), UF_DRF_err_invalid_parameter);
    EXPECT_EQ(uc5566(note, 1, -1, nullptr), UF_DRF_err_invalid_parameter);
    EXPECT_EQ(uc5566(note, 1, 1, nullptr), UF_DRF_err_invalid_parameter);
    EXPECT_EQ(textOf(note).lines, Lines{"one"});
}

// --- reading --------------------------------------------------------------------------------------

TEST_F(Drafting, HeightOfLinesIsSizesPlusHalfASpaceFactorBetweenThem)
{
    struct Row {
        Lines lines;
        double size, spaceFactor, height;
    };
    for (const Row &row :
         {Row{{"a"}, 3.5, 1.0, 3.5}, Row{{"a", "b"}, 3.5, 1.0, 8.75}, // 2 x 3.5 + 1 x 3.5 x 0.5
          Row{{"a", "b", "c"}, 5.0, 2.0, 25.0}}) {                    // 3 x 5 + 2 x 5 x 2 x 0.5
        const tag_t note = addNote(row.lines);
        Preferences all = preferencesOf(note);
        all.mpr[UF_DRF_MPR_char_size] = row.size;
        all.mpr[UF_DRF_MPR_line_space_factor] = row.spaceFactor;
        ASSERT_EQ(setPreferences(note, all), 0);
        EXPECT_DOUBLE_EQ(textOf(note).values.height, row.height);
    }
}

TEST_F(Drafting, TheAngleOfATextIsInRadiansOthersInDegrees)
{
    const tag_t note = addNote({"a"});
    Preferences all = preferencesOf(note);
    all.mpr[UF_DRF_MPR_text_angle] = 90.0;
    ASSERT_EQ(setPreferences(note, all), 0);
    EXPECT_DOUBLE_EQ(textOf(note).values.angle, PI / 2);
    EXPECT_EQ(preferencesOf(note).mpr[UF_DRF_MPR_text_angle], 90.0);
}

TEST_F(Drafting, StoredTextIsReturnedButTheLengthIsThatOfTheDisplayedOne)
{
    UgPart *target = dynamic_cast<UgPart *>(UgObject::find(part()));
    ASSERT_TRUE(target);
    target->addStringAttribute("TITLE", "WWWWWWWWWW");
    const TextInfo reference = textOf(addNote({"<W@TITLE>"}));
    EXPECT_EQ(reference.lines, Lines{"<W@TITLE>"});
    EXPECT_DOUBLE_EQ(reference.values.length, textOf(addNote({"WWWWWWWWWW"})).values.length);
}

TEST_F(Drafting, LengthFollowsAspectAndSize)
{
    const tag_t note = addNote({"MMMM", "M"});
    const double plain = textOf(note).values.length;
    Preferences all = preferencesOf(note);
    all.mpr[UF_DRF_MPR_aspect_ratio] *= 0.5;
    ASSERT_EQ(setPreferences(note, all), 0);
    EXPECT_NEAR(textOf(note).values.length, plain / 2, 1e-9);
}

TEST_F(Drafting, AFailedReadingHandsOutNothing)
{
    int count = 5;
    UF_DRF_draft_aid_text_info_t *info = reinterpret_cast<UF_DRF_draft_aid_text_info_t *>(&count);
    EXPECT_EQ(UF_DRF_ask_draft_aid_text_info(addSheet("S"), &count, &info),
              UF_DRF_err_invalid_object);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(UF_DRF_free_text(0, &info), 0);
}

// --- lettering ------------------------------------------------------------------------------------

TEST_F(Drafting, NewNotesTakeTheCurrentLettering)
{
    tag_t fonts = NULL_TAG;
    ASSERT_EQ(UF_OBJ_cycle_objs_in_part(part(), UF_font_table_type, &fonts), 0);
    int font = 0;
    char name[] = "leroy";
    ASSERT_EQ(UF_UGFONT_add_font(fonts, &font, name), 0);
    UF_DRF_lettering_preferences_t set{};
    ASSERT_EQ(UF_DRF_ask_lettering_preferences(&set), 0);
    set.align_position = 9;
    set.horiz_text_just = 3;
    set.angle = 30.0;
    set.general_text = {2.5, 1.25, 0.75, 1.5, {4, font, 2}};
    ASSERT_EQ(UF_DRF_set_lettering_preferences(&set), 0);

    const Preferences of = preferencesOf(addNote({"a"}));
    EXPECT_EQ(of.mpi[30], 9);
    EXPECT_EQ(of.mpi[10], 3);
    EXPECT_EQ(of.mpi[87], 4);
    EXPECT_EQ(of.mpi[88], font);
    EXPECT_EQ(of.mpi[89], 2);
    EXPECT_EQ(of.mpr[3], 30.0);
    EXPECT_EQ(of.mpr[44], 2.5);
    EXPECT_EQ(of.mpr[45], 0.75);
    EXPECT_EQ(of.mpr[46], 1.25);
    EXPECT_EQ(of.mpr[47], 1.5);
}

TEST_F(Drafting, LetteringComesBackAsItWasSet)
{
    UF_DRF_lettering_preferences_t set{};
    ASSERT_EQ(UF_DRF_ask_lettering_preferences(&set), 0);
    set.align_position = 5;
    set.gdt_frame_height_factor = 2.25;
    set.dimension_text = {1, 2, 3, 4, {5, 6, 7}};
    set.appended_text = {2, 3, 4, 5, {6, 7, 8}};
    set.tolerance_text = {3, 4, 5, 6, {7, 8, 9}};
    set.dim_dim_line_space_factor = 0.1;
    set.dim_app_text_space_factor = 0.2;
    set.dim_tol_text_space_factor = 0.3;
    ASSERT_EQ(UF_DRF_set_lettering_preferences(&set), 0);
    UF_DRF_lettering_preferences_t read{};
    ASSERT_EQ(UF_DRF_ask_lettering_preferences(&read), 0);
    EXPECT_EQ(read.align_position, 5);
    EXPECT_EQ(read.gdt_frame_height_factor, 2.25);
    EXPECT_EQ(read.dimension_text.cfw.width, 7);
    EXPECT_EQ(read.appended_text.line_space_factor, 5.0);
    EXPECT_EQ(read.tolerance_text.aspect_ratio, 5.0);
    EXPECT_EQ(read.dim_dim_line_space_factor, 0.1);
    EXPECT_EQ(read.dim_app_text_space_factor, 0.2);
    EXPECT_EQ(read.dim_tol_text_space_factor, 0.3);
}

TEST_F(Drafting, LetteringWithASiteOffTheGridOrWithoutASizeIsRefused)
{
    UF_DRF_lettering_preferences_t kept{};
    ASSERT_EQ(UF_DRF_ask_lettering_preferences(&kept), 0);
    for (const int site : {0, 10, -1}) {
        UF_DRF_lettering_preferences_t set = kept;
        set.align_position = site;
        EXPECT_EQ(UF_DRF_set_lettering_preferences(&set), UF_DRF_err_invalid_parameter);
    }
    UF_DRF_lettering_preferences_t set = kept;
    set.general_text.size = 0.0;
    EXPECT_EQ(UF_DRF_set_lettering_preferences(&set), UF_DRF_err_invalid_parameter);
    ASSERT_EQ(UF_DRF_ask_lettering_preferences(&set), 0);
    EXPECT_EQ(set.align_position, kept.align_position);
}

TEST_F(Drafting, AFontIndexOfAnotherPartFallsBackToTheFirstFont)
{
    UF_DRF_lettering_preferences_t set{};
    ASSERT_EQ(UF_DRF_ask_lettering_preferences(&set), 0);
    set.general_text.cfw.font = 9;
    ASSERT_EQ(UF_DRF_set_lettering_preferences(&set), 0);
    EXPECT_EQ(preferencesOf(addNote({"a"})).mpi[UF_DRF_MPI_text_font], 1);
}

TEST_F(Drafting, TheSymbolFileIsRemembered)
{
    EXPECT_FALSE(nxhost::usesCustomerSymbolFile());
    EXPECT_EQ(UF_DRF_set_customer_sbf_file(), 0);
    EXPECT_TRUE(nxhost::usesCustomerSymbolFile());
    EXPECT_EQ(UF_DRF_set_ugdefault_sbf_file(), 0);
    EXPECT_FALSE(nxhost::usesCustomerSymbolFile());
}

// --- preferences of one object --------------------------------------------------------------------

TEST_F(Drafting, PreferencesThatNobodyKnowsComeBackAsTheyWereSet)
{
    const tag_t note = addNote({"a"});
    Preferences all = preferencesOf(note);
    all.mpi[0] = 2;
    all.mpi[95] = 11; // means something on a symbol only
    all.mpi[99] = -5;
    all.mpr[0] = 0.1;
    all.mpr[69] = -1e300;
    ASSERT_EQ(setPreferences(note, all), 0);
    const Preferences read = preferencesOf(note);
    EXPECT_EQ(std::memcmp(read.mpi, all.mpi, sizeof all.mpi), 0);
    EXPECT_EQ(std::memcmp(read.mpr, all.mpr, sizeof all.mpr), 0);
}

TEST_F(Drafting, WritingThePreferencesBackChangesNothing)
{
    const tag_t note = addNote({"a"});
    EXPECT_TRUE(changesDuring([&] { setPreferences(note, preferencesOf(note)); }).empty());
}

TEST_F(Drafting, BadPreferencesAreRefusedAndTheOldOnesStay)
{
    const tag_t note = addNote({"a"});
    const Preferences good = preferencesOf(note);
    struct Row {
        int index, value;
    };
    for (const Row &row : {Row{UF_DRF_MPI_align_site, 0}, Row{UF_DRF_MPI_align_site, 10},
                           Row{UF_DRF_MPI_text_font, 0}, Row{UF_DRF_MPI_text_font, 2}}) {
        Preferences bad = good;
        bad.mpi[row.index] = row.value;
        bad.mpi[UF_DRF_MPI_text_color] = 3;
        EXPECT_EQ(setPreferences(note, bad), UF_DRF_err_invalid_parameter);
    }
    for (const double size : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
        Preferences bad = good;
        bad.mpr[UF_DRF_MPR_char_size] = size;
        EXPECT_EQ(setPreferences(note, bad), UF_DRF_err_invalid_parameter);
    }
    EXPECT_EQ(preferencesOf(note).mpi[UF_DRF_MPI_text_color], good.mpi[UF_DRF_MPI_text_color]);
}

// --- ID symbols -----------------------------------------------------------------------------------

tag_t addSymbol(const char *upper, const char *lower, double x = 1, double y = 2)
{
    double origin[3] = {x, y, 0};
    tag_t symbol = NULL_TAG;
    EXPECT_EQ(UF_DRF_create_id_symbol(UF_DRF_sym_circle, upper, lower, origin,
                                      UF_DRF_without_leader, UF_DRF_leader_attach_screen, nullptr,
                                      origin, &symbol),
              0);
    return symbol;
}

TEST_F(Drafting, ASymbolIsADraftingObjectOfItsOwnSubtype)
{
    int type = 0, subtype = 0;
    const tag_t symbol = addSymbol("1", "");
    EXPECT_EQ(UF_OBJ_ask_type_and_subtype(symbol, &type, &subtype), 0);
    EXPECT_EQ(type, UF_drafting_entity_type);
    EXPECT_EQ(subtype, UF_draft_id_symbol_subtype);
    EXPECT_EQ(originOf(symbol), (Coordinates{1, 2, 0}));
}

TEST_F(Drafting, ASymbolHasASecondLineOnlyWhenOneIsGiven)
{
    EXPECT_EQ(textOf(addSymbol("A", "B")).lines, (Lines{"A", "B"}));
    EXPECT_EQ(textOf(addSymbol("A", "")).lines, Lines{"A"});
    EXPECT_EQ(textOf(addSymbol("A", nullptr)).lines, Lines{"A"});
    EXPECT_EQ(textOf(addSymbol("A", "")).records, 1);
}

TEST_F(Drafting, TheTextOfASymbolIsReplacedByOneOrTwoLines)
{
    const tag_t symbol = addSymbol("A", "B");
    EXPECT_EQ(uc5566(symbol, 1, 1, Rows<1>({"C"}).text), 0);
    EXPECT_EQ(textOf(symbol).lines, Lines{"C"});
    EXPECT_EQ(uc5566(symbol, 1, 2, Rows<2>({"D", "E"}).text), 0);
    EXPECT_EQ(textOf(symbol).lines, (Lines{"D", "E"}));
    EXPECT_EQ(uc5566(symbol, 1, 3, Rows<3>({"D", "E", "F"}).text), UF_DRF_err_invalid_parameter);
    EXPECT_EQ(uc5566(symbol, 1, 0, nullptr), 0);
    EXPECT_EQ(textOf(symbol).lines, Lines{""});
}

TEST_F(Drafting, TypeDensityAndSizeOfASymbolArePreferences)
{
    const tag_t symbol = addSymbol("A", "");
    Preferences all = preferencesOf(symbol);
    EXPECT_EQ(all.mpi[UF_DRF_MPI_id_symbol_type], UF_DRF_sym_circle);
    all.mpi[UF_DRF_MPI_id_symbol_type] = UF_DRF_sym_hexagon;
    all.mpi[UF_DRF_MPI_id_symbol_density] = 2;
    all.mpr[UF_DRF_MPR_id_symbol_size] = 21.5;
    ASSERT_EQ(setPreferences(symbol, all), 0);
    UF_DRF_id_symbol_type_t type = UF_DRF_sym_circle;
    EXPECT_EQ(UF_DRF_ask_id_symbol_type(symbol, &type), 0);
    EXPECT_EQ(type, UF_DRF_sym_hexagon);
    EXPECT_EQ(preferencesOf(symbol).mpi[UF_DRF_MPI_id_symbol_density], 2);
    EXPECT_EQ(preferencesOf(symbol).mpr[UF_DRF_MPR_id_symbol_size], 21.5);
    all.mpi[UF_DRF_MPI_id_symbol_type] = UF_DRF_sym_maximum;
    EXPECT_EQ(setPreferences(symbol, all), UF_DRF_err_invalid_parameter);
    all.mpi[UF_DRF_MPI_id_symbol_type] = UF_DRF_sym_hexagon;
    all.mpr[UF_DRF_MPR_id_symbol_size] = 0.0;
    EXPECT_EQ(setPreferences(symbol, all), UF_DRF_err_invalid_parameter);
}

TEST_F(Drafting, ALeaderOrAnUnknownShapeIsRefused)
{
    double origin[3] = {0, 0, 0};
    tag_t symbol = 5;
    EXPECT_EQ(UF_DRF_create_id_symbol(UF_DRF_sym_circle, "A", "", origin, UF_DRF_with_leader,
                                      UF_DRF_leader_attach_screen, nullptr, origin, &symbol),
              UF_DRF_err_invalid_parameter);
    EXPECT_EQ(symbol, NULL_TAG);
    EXPECT_EQ(UF_DRF_create_id_symbol(UF_DRF_sym_maximum, "A", "", origin, UF_DRF_without_leader,
                                      UF_DRF_leader_attach_screen, nullptr, origin, &symbol),
              UF_DRF_err_invalid_parameter);
}

TEST_F(Drafting, AskingTheShapeOfANoteIsRefused)
{
    UF_DRF_id_symbol_type_t type = UF_DRF_sym_circle;
    EXPECT_EQ(UF_DRF_ask_id_symbol_type(addNote({"a"}), &type), UF_DRF_err_invalid_object);
}

TEST_F(Drafting, AnInjectedFaultIsTheResultAndNothingHappens)
{
    nxhost::failCall("UF_DRF_create_note", 1175002);
    tag_t note = NULL_TAG;
    EXPECT_TRUE(changesDuring([&] { EXPECT_EQ(createNote({"a"}, &note), 1175002); }).empty());
    EXPECT_EQ(createNote({"a"}, &note), 0);
}

TEST_F(Drafting, TextsAndPreferencesAreSavedWithThePart)
{
    const tag_t note = addNote({"<W@TITLE>", "\xC3\x98 20"}, 0.1, 0.2);
    Preferences all = preferencesOf(note);
    all.mpr[UF_DRF_MPR_char_size] = 7.0;
    all.mpi[60] = 42;
    ASSERT_EQ(setPreferences(note, all), 0);
    const std::string before = nxhost::listPart(part());
    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_close(part(), 0, 1), 0);
    tag_t reopened = NULL_TAG;
    UF_PART_load_status_t status{};
    ASSERT_EQ(UF_PART_open((folder() / "drawing.prt").c_str(), &reopened, &status), 0);
    UF_PART_free_load_status(&status);
    EXPECT_EQ(nxhost::listPart(reopened), before);
    tag_t again = NULL_TAG;
    ASSERT_EQ(UF_OBJ_cycle_objs_in_part(reopened, UF_drafting_entity_type, &again), 0);
    EXPECT_EQ(preferencesOf(again).mpi[60], 42);
    EXPECT_EQ(textOf(again).lines, (Lines{"<W@TITLE>", "\xC3\x98 20"}));
}

} // namespace
