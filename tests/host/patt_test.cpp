#include "uf_patt.h"

#include "tests/host/drawing_host.h"

#include "nxhost/authoring.h"
#include "uf_curve.h"
#include "uf_layer.h"
#include "uf_trns.h"
#include "uf_view.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <optional>

namespace {

class Variable {
public:
    Variable(const char *name, const std::string &value) : m_name(name)
    {
        if (const char *old = std::getenv(name)) m_old = old;
        setenv(name, value.c_str(), 1);
    }
    ~Variable()
    {
        if (m_old)
            setenv(m_name, m_old->c_str(), 1);
        else
            unsetenv(m_name);
    }

private:
    const char *m_name;
    std::optional<std::string> m_old;
};

class Patterns : public DrawingHost {
protected:
    void SetUp() override
    {
        DrawingHost::SetUp();
        std::filesystem::create_directory(patternFolder());
        m_directory.emplace("UGII_PATDIR", patternFolder().string());
        m_utilities.emplace("UGII_UTIL", (folder() / "none").string());
    }
    void TearDown() override
    {
        m_directory.reset();
        m_utilities.reset();
        DrawingHost::TearDown();
    }

    std::filesystem::path patternFolder() const { return folder() / "patterns"; }

    // A saved and closed part with one line from (0, 0) to (length, 0) and a note.
    void makeMaster(const std::string &name, double length, int units = UF_PART_METRIC,
                    bool saveData = true)
    {
        const tag_t work = UF_ASSEM_ask_work_part();
        const tag_t master = newPart("patterns/" + name, units);
        UF_CURVE_line_t ends{{0, 0, 0}, {length, 0, 0}};
        tag_t line = NULL_TAG;
        ASSERT_EQ(UF_CURVE_create_line(&ends, &line), 0);
        addNote({"Label"});
        nxhost::setPatternDataSaved(master, saveData);
        ASSERT_EQ(UF_PART_save(), 0);
        ASSERT_EQ(UF_PART_close(master, 0, 1), 0);
        ASSERT_EQ(UF_ASSEM_set_work_part(work), 0);
    }

    static int place(std::string file, tag_t *pattern, int autoscale = 1, double scale = 1.0,
                     std::string name = "")
    {
        double transform[13] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 30, 40, 0, scale};
        return uc5823(file.data(), name.data(), autoscale, transform, pattern);
    }

    struct Read {
        std::string name, file;
        int viewDependent = -1, layer = -1, status = -1;
        double transform[13] = {};
    };
    static Read read(tag_t pattern)
    {
        Read all;
        char name[MAX_FSPEC_BUFSIZE], file[MAX_FSPEC_BUFSIZE];
        EXPECT_EQ(
            uc5822(pattern, name, file, &all.viewDependent, &all.layer, &all.status, all.transform),
            0);
        all.name = name;
        all.file = file;
        return all;
    }

private:
    std::optional<Variable> m_directory, m_utilities;
};

TEST_F(Patterns, TheObjectIsNamedExactlyAsTheFileWasPassed)
{
    makeMaster("title_block", 100);
    for (const std::string passed : {"title_block", "title_block.prt"}) {
        tag_t pattern = NULL_TAG;
        ASSERT_EQ(place(passed, &pattern), 0);
        EXPECT_EQ(read(pattern).name, passed);
        EXPECT_EQ(read(pattern).file, passed);
        int type = 0, subtype = -1;
        EXPECT_EQ(UF_OBJ_ask_type_and_subtype(pattern, &type, &subtype), 0);
        EXPECT_EQ(type, 10);
        EXPECT_EQ(subtype, 0);
    }
}

TEST_F(Patterns, AGivenNameIsTakenUpToThirtyCharacters)
{
    makeMaster("frame", 100);
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("frame", &pattern, 1, 1.0, "Frame of A3"), 0);
    EXPECT_EQ(read(pattern).name, "Frame of A3");
    EXPECT_EQ(place("frame", &pattern, 1, 1.0, std::string(31, 'n')), 20);
    EXPECT_EQ(pattern, NULL_TAG);
}

TEST_F(Patterns, APatternLiesOnTheWorkLayerInTheCurrentView)
{
    makeMaster("frame", 100);
    const tag_t sheet = openNewSheet("A");
    ASSERT_EQ(UF_LAYER_set_status(9, UF_LAYER_WORK_LAYER), 0);
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("frame", &pattern), 0);
    EXPECT_EQ(read(pattern).layer, 9);
    EXPECT_EQ(read(pattern).viewDependent, 1);
    tag_t seen = NULL_TAG;
    EXPECT_EQ(UF_VIEW_cycle_objects(viewOf(sheet), UF_VIEW_VISIBLE_OBJECTS, &seen), 0);
    EXPECT_EQ(seen, pattern);
    EXPECT_EQ(UF_VIEW_cycle_objects(viewOf(sheet), UF_VIEW_VISIBLE_OBJECTS, &seen), 0);
    EXPECT_EQ(seen, NULL_TAG);
}

TEST_F(Patterns, AMissingFileAndAPartWithoutPatternDataHaveTheirRawCodes)
{
    makeMaster("plain", 100, UF_PART_METRIC, false);
    tag_t pattern = 3;
    EXPECT_EQ(place("nowhere", &pattern), 1);
    EXPECT_EQ(pattern, NULL_TAG);
    EXPECT_EQ(place("plain", &pattern), 6);
    std::ofstream(patternFolder() / "text.prt") << "this is no part";
    EXPECT_LT(place("text", &pattern), 0);
    std::filesystem::create_directory(patternFolder() / "folder.prt");
    EXPECT_EQ(place("folder", &pattern), 1);
    EXPECT_EQ(place("", &pattern), 1);
}

TEST_F(Patterns, EveryReasonHasAText)
{
    for (const int code :
         {1, 3, 5, 6, 14, 20, 21, 22, UF_PATT_err_unreadable, UF_PATT_err_bad_argument}) {
        char text[133] = "";
        EXPECT_EQ(UF_get_fail_message(code, text), 0) << code;
        EXPECT_NE(std::string(text), "");
    }
}

TEST_F(Patterns, ASkewMatrixOrAScaleThatIsNotPositiveIsRefused)
{
    makeMaster("frame", 100);
    char file[] = "frame", name[] = "";
    tag_t pattern = NULL_TAG;
    double skew[13] = {1, 0.1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(uc5823(file, name, 1, skew, &pattern), 21);
    EXPECT_EQ(place("frame", &pattern, 1, 0.0), 22);
    EXPECT_EQ(place("frame", &pattern, 1, -1.0), 22);
    EXPECT_EQ(place("frame", &pattern, 3), UF_PATT_err_bad_argument);
}

TEST_F(Patterns, UnitsAreConvertedOnDemandOnly)
{
    makeMaster("inches", 10, UF_PART_ENGLISH);
    makeMaster("metric", 10, UF_PART_METRIC);
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("inches", &pattern, 1, 2.0), 0);
    EXPECT_DOUBLE_EQ(read(pattern).transform[12], 2.0 * 25.4);
    ASSERT_EQ(place("inches", &pattern, 2, 2.0), 0);
    EXPECT_EQ(read(pattern).transform[12], 2.0);
    ASSERT_EQ(place("metric", &pattern, 1, 2.0), 0);
    EXPECT_EQ(read(pattern).transform[12], 2.0);
    newPart("english", UF_PART_ENGLISH);
    ASSERT_EQ(place("metric", &pattern, 1, 2.0), 0);
    EXPECT_DOUBLE_EQ(read(pattern).transform[12], 2.0 / 25.4);
}

TEST_F(Patterns, TheDirectoriesAreSearchedInOrder)
{
    makeMaster("frame", 100);
    const auto utilities = folder() / "utilities";
    std::filesystem::create_directory(utilities);
    const Variable list("UGII_PATDIR",
                        ":" + (folder() / "empty").string() + "::" + patternFolder().string());
    tag_t pattern = NULL_TAG;
    EXPECT_EQ(place("frame", &pattern), 0);
    std::ofstream(utilities / "frame.prt") << "an unreadable one comes first";
    const Variable first("UGII_UTIL", utilities.string());
    EXPECT_LT(place("frame", &pattern), 0);
    EXPECT_EQ(place((patternFolder() / "frame").string(), &pattern), 0);
    EXPECT_EQ(read(pattern).name, (patternFolder() / "frame").string());
}

TEST_F(Patterns, TheMasterIsReadFromItsFileAndMakesNoPartOfTheSession)
{
    makeMaster("frame", 100);
    const int parts = UF_PART_ask_num_parts();
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("frame", &pattern), 0);
    EXPECT_EQ(UF_PART_ask_num_parts(), parts);
    EXPECT_EQ(UF_PART_is_loaded((patternFolder() / "frame.prt").c_str()), 0);
}

TEST_F(Patterns, AChangedFileIsReadAgainAndOldInstancesStayAsTheyWere)
{
    makeMaster("frame", 100);
    tag_t first = NULL_TAG, second = NULL_TAG, third = NULL_TAG;
    ASSERT_EQ(place("frame", &first), 0);
    ASSERT_EQ(place("frame", &second), 0);
    const std::string listing = nxhost::listPart(part());
    const std::size_t before = nxhost::countObjects(part());
    std::filesystem::remove(patternFolder() / "frame.prt");
    EXPECT_EQ(place("frame", &third), 1);
    makeMaster("frame", 250);
    ASSERT_EQ(place("frame", &third), 0);
    EXPECT_EQ(nxhost::countObjects(part()), before + 1);
    const std::string change = nxhost::difference(listing, nxhost::listPart(part()));
    EXPECT_EQ(change.find("- "), std::string::npos) << change;
    EXPECT_NE(change.find("250"), std::string::npos) << change;
    EXPECT_EQ(UF_OBJ_ask_status(first), UF_OBJ_ALIVE);
}

TEST_F(Patterns, PatternsSurviveSavingWithoutTheirMaster)
{
    makeMaster("frame", 100);
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("frame", &pattern), 0);
    ASSERT_EQ(place("frame", &pattern), 0);
    const std::string before = nxhost::listPart(part());
    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_close(part(), 0, 1), 0);
    std::filesystem::remove_all(patternFolder());
    tag_t reopened = NULL_TAG;
    UF_PART_load_status_t status{};
    ASSERT_EQ(UF_PART_open((folder() / "drawing.prt").c_str(), &reopened, &status), 0);
    UF_PART_free_load_status(&status);
    EXPECT_EQ(nxhost::listPart(reopened), before);
}

TEST_F(Patterns, AMovedPatternCarriesItsOriginAndOrientation)
{
    makeMaster("frame", 100);
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("frame", &pattern), 0); // at (30, 40)
    double origin[3] = {30, 40, 0}, axis[3] = {0, 0, 1}, degrees = 90, matrix[12];
    int status = -1, count = 1, move = 1, layer = 0, trace = 2;
    FTN(uf5945)(origin, axis, &degrees, matrix, &status);
    matrix[3] += 5;
    FTN(uf5947)(matrix, &pattern, &count, &move, &layer, &trace, nullptr, nullptr, &status);
    ASSERT_EQ(status, 0);
    const Read after = read(pattern);
    EXPECT_EQ(after.transform[9], 35.0);
    EXPECT_EQ(after.transform[10], 40.0);
    EXPECT_EQ(after.transform[0], 0.0); // rows: x' = -y, y' = x
    EXPECT_EQ(after.transform[1], -1.0);
    EXPECT_EQ(after.transform[3], 1.0);
    EXPECT_EQ(after.transform[12], 1.0);
}

TEST_F(Patterns, SwitchesAreSetOnOneOrForNewOnes)
{
    makeMaster("frame", 100);
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("frame", &pattern), 0);
    EXPECT_TRUE(changesDuring([&] {
                    EXPECT_EQ(UF_PATT_set_params(pattern, UF_PATT_off, UF_PATT_off, UF_PATT_off),
                              0);
                }).empty());
    EXPECT_FALSE(changesDuring([&] {
                     EXPECT_EQ(UF_PATT_set_params(pattern, UF_PATT_on, UF_PATT_off, UF_PATT_off),
                               0);
                 }).empty());
    EXPECT_EQ(UF_PATT_set_params(NULL_TAG, UF_PATT_off, UF_PATT_on, UF_PATT_off), 0);
    EXPECT_EQ(UF_PATT_set_params(addNote({"a"}), UF_PATT_off, UF_PATT_off, UF_PATT_off),
              UF_err_wrong_class);
}

TEST_F(Patterns, PlacingTheSameOneOftenReadsItsFileOnce)
{
    makeMaster("frame", 100);
    tag_t pattern = NULL_TAG;
    ASSERT_EQ(place("frame", &pattern), 0);
    const auto begin = clock();
    for (int i = 0; i < 2000; ++i) ASSERT_EQ(place("frame", &pattern), 0);
    // Opening a part file takes a good part of a millisecond: 2000 of them more than a second.
    EXPECT_LT(double(clock() - begin) / CLOCKS_PER_SEC, 0.5);
}

} // namespace
