// Parts: made, found, opened, saved, closed.
#include "host_fixture.h"

#include "uf_assem.h"
#include "uf_drf.h"

#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace host_test;
namespace fs = std::filesystem;

namespace {

class PartFiles : public HostTest {
protected:
    // Opens quietly; a failure's arrays are freed one by one as old callers do it.
    int open(const std::string &name, tag_t *opened)
    {
        UF_PART_load_status_t status{};
        const int code = UF_PART_open_quiet(name.c_str(), opened, &status);
        EXPECT_EQ(status.failed, code != 0);
        EXPECT_FALSE(status.user_abort);
        EXPECT_EQ(status.n_parts, code != 0 ? 1 : 0);
        if (code != 0) {
            EXPECT_EQ(status.statuses[0], code);
            EXPECT_NE(std::string(status.file_names[0]).find("/"), std::string::npos);
        }
        UF_free_string_array(status.n_parts, status.file_names);
        UF_free(status.statuses);
        return code;
    }
    std::string nameOf(tag_t asked)
    {
        char name[MAX_FSPEC_BUFSIZE];
        EXPECT_EQ(UF_PART_ask_part_name(asked, name), 0);
        return name;
    }
};

} // namespace

TEST_F(PartFiles, ANewPartIsTheDisplayAndTheWorkPart)
{
    EXPECT_EQ(UF_PART_ask_display_part(), part);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), part);
    EXPECT_EQ(nameOf(part), folder.file("work.prt")) << "the default extension";
    int units = 0;
    ASSERT_EQ(UF_PART_ask_units(part, &units), 0);
    EXPECT_EQ(units, UF_PART_METRIC);
    tag_t inches = NULL_TAG;
    ASSERT_EQ(UF_PART_new(folder.file("second.qdraw").c_str(), UF_PART_ENGLISH, &inches), 0);
    ASSERT_EQ(UF_PART_ask_units(inches, &units), 0);
    EXPECT_EQ(units, UF_PART_ENGLISH);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), inches);
    EXPECT_EQ(nameOf(inches), folder.file("second.qdraw"));
}

TEST_F(PartFiles, ANewPartHasAFontTableWithTheBlockFont)
{
    EXPECT_NE(nxhost::listPart(part).find("fonts \"blockfont\""), std::string::npos)
        << nxhost::listPart(part);
    EXPECT_EQ(nxhost::countObjects(part), 0u);
}

TEST_F(PartFiles, ANewPartRefusesAnExistingFileAndWrongUnits)
{
    ASSERT_EQ(UF_PART_save(), 0);
    tag_t again = 77;
    EXPECT_EQ(UF_PART_new(folder.file("work.prt").c_str(), UF_PART_METRIC, &again),
              UF_PART_err_file_exists);
    EXPECT_EQ(again, NULL_TAG);
    EXPECT_NE(nxhost::lastPartMessage().find(folder.file("work.prt")), std::string::npos);
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    EXPECT_EQ(UF_PART_new(folder.file("work").c_str(), UF_PART_METRIC, &again),
              UF_PART_err_file_exists);
    EXPECT_EQ(UF_PART_new(folder.file("other").c_str(), 3, &again), UF_err_bad_parameter_number_2);
    EXPECT_EQ(UF_PART_new("", 1, &again), UF_err_bad_parameter_number_1);
}

TEST_F(PartFiles, LoadedPartsAreFoundByPathOrFileNameWithOrWithoutExtension)
{
    for (const std::string &name : {folder.file("work.prt"), folder.file("work"),
                                    std::string("work.prt"), std::string("work")}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(UF_PART_is_loaded(name.c_str()), 1);
        EXPECT_EQ(UF_PART_ask_part_tag(name.c_str()), part);
    }
    for (const char *name : {"wor", "work.qdraw", "/elsewhere/work.prt", "", "prt"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(UF_PART_is_loaded(name), 0);
        EXPECT_EQ(UF_PART_ask_part_tag(name), NULL_TAG);
    }
    EXPECT_EQ(UF_PART_is_loaded(nullptr), 0);
}

TEST_F(PartFiles, RelativeNamesAreMeantFromTheCurrentFolder)
{
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    tag_t made = NULL_TAG;
    EXPECT_EQ(UF_PART_new("sub/../near", UF_PART_METRIC, &made), 0);
    EXPECT_EQ(nameOf(made), (fs::current_path() / "near.prt").string());
    fs::current_path(before);
}

TEST_F(PartFiles, ASavedPartReopensWithTheSameContentUnderNewTags)
{
    const tag_t sheet = newSheet("SH1");
    const tag_t format = newUdo("HOST_FORMAT");
    const tag_t field = newUdo("HOST_FIELD");
    ASSERT_EQ(addLink(format, 1, sheet), 0);
    ASSERT_EQ(addLink(format, 2, field), 0);
    ASSERT_EQ(addLink(format, 2, NULL_TAG), 0);
    ASSERT_EQ(assign(field, "VALUE0", "4711"), 0);
    std::string line = "<W!" + std::to_string(field) + "@VALUE0>";
    char *lines[] = {line.data()};
    double origin[3] = {10.0, 0.1, 0.0};
    tag_t note = NULL_TAG;
    ASSERT_EQ(UF_DRF_create_note(1, lines, origin, 0, &note), 0);
    ASSERT_EQ(own(field, {note}), 0);
    ASSERT_EQ(UF_LAYER_set_status(254, UF_LAYER_INACTIVE_LAYER), 0);
    ASSERT_EQ(assign(part, "PART_NO", "x"), 0);
    const std::string before = nxhost::listPart(part);
    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    EXPECT_EQ(statusOf(field), UF_OBJ_DELETED);

    tag_t reopened = NULL_TAG;
    ASSERT_EQ(open(folder.file("work.prt"), &reopened), 0);
    EXPECT_EQ(nxhost::listPart(reopened), before);
    EXPECT_GT(reopened, note);
    EXPECT_EQ(nxhost::lastPartMessage(), "");
}

TEST_F(PartFiles, OpeningQuietlyKeepsTheWorkPartAndOpeningMakesOne)
{
    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), NULL_TAG);
    tag_t opened = NULL_TAG;
    ASSERT_EQ(open(folder.file("work"), &opened), 0) << "the extension is found";
    EXPECT_EQ(UF_ASSEM_ask_work_part(), NULL_TAG);
    EXPECT_EQ(UF_PART_ask_display_part(), NULL_TAG);
    ASSERT_EQ(UF_PART_close(opened, 0, 1), 0);
    UF_PART_load_status_t status{};
    ASSERT_EQ(UF_PART_open(folder.file("work.prt").c_str(), &opened, &status), 0);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), opened);
    EXPECT_EQ(UF_PART_ask_display_part(), opened);
    EXPECT_EQ(UF_PART_is_modified(opened), 0);
}

TEST_F(PartFiles, APartThatIsLoadedAlreadyIsAnsweredWithACode)
{
    ASSERT_EQ(UF_PART_save(), 0);
    tag_t again = NULL_TAG;
    EXPECT_EQ(open(folder.file("work.prt"), &again), UF_PART_err_already_loaded);
    EXPECT_EQ(again, part);
}

TEST_F(PartFiles, AMissingFileIsToldInTheStatusInTheLogAndInWords)
{
    nxhost::takeSyslog();
    tag_t opened = 77;
    EXPECT_EQ(open(folder.file("nowhere.prt"), &opened), UF_PART_err_file_not_found);
    EXPECT_EQ(opened, NULL_TAG);
    EXPECT_NE(nxhost::lastPartMessage().find(folder.file("nowhere.prt")), std::string::npos);
    EXPECT_EQ(nxhost::takeSyslog(), nxhost::lastPartMessage() + "\n");
}

TEST_F(PartFiles, AFileThatIsNoPartIsRefusedAndLeftAsItIs)
{
    const std::string name = folder.file("letter.prt");
    std::ofstream(name) << "Dear reader";
    tag_t opened = 77;
    EXPECT_EQ(open(name, &opened), UF_PART_err_not_a_part);
    EXPECT_EQ(opened, NULL_TAG);
    std::ifstream file(name);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(file), {}}), "Dear reader");
    EXPECT_NE(nxhost::lastPartMessage().find(name), std::string::npos);
}

TEST_F(PartFiles, TheLoadStatusHasAReleaseOfItsOwn)
{
    tag_t opened = NULL_TAG;
    UF_PART_load_status_t status{};
    ASSERT_NE(UF_PART_open_quiet(folder.file("nowhere").c_str(), &opened, &status), 0);
    EXPECT_EQ(UF_PART_free_load_status(&status), 0);
    EXPECT_EQ(status.n_parts, 0);
    EXPECT_EQ(UF_PART_free_load_status(&status), 0) << "an empty status is released harmlessly";
}

TEST_F(PartFiles, ClosingMindsChangesOnlyInMode2)
{
    newPoint();
    EXPECT_EQ(UF_PART_is_modified(part), 1);
    EXPECT_EQ(UF_PART_close(part, 0, 2), UF_PART_err_modified);
    EXPECT_EQ(UF_PART_close(part, 2, 1), UF_err_bad_parameter_number_2);
    EXPECT_EQ(UF_PART_close(part, 0, 3), UF_err_bad_parameter_number_3);
    EXPECT_EQ(UF_PART_is_loaded("work"), 1);
    ASSERT_EQ(UF_PART_save(), 0);
    EXPECT_EQ(UF_PART_is_modified(part), 0);
    EXPECT_EQ(UF_PART_close(part, 0, 2), 0);
    EXPECT_EQ(UF_PART_close(part, 0, 1), UF_err_unknown_tag);
}

TEST_F(PartFiles, ClosingKillsAllTagsOfThePartAlone)
{
    const tag_t point = newPoint();
    tag_t other = NULL_TAG;
    ASSERT_EQ(UF_PART_new(folder.file("other").c_str(), UF_PART_METRIC, &other), 0);
    const tag_t elsewhere = newPoint();
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    EXPECT_EQ(statusOf(point), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(part), UF_OBJ_DELETED);
    EXPECT_EQ(statusOf(elsewhere), UF_OBJ_ALIVE);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), other);
    ASSERT_EQ(UF_PART_close_all(), 0);
    EXPECT_EQ(UF_PART_ask_num_parts(), 0);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), NULL_TAG);
}

TEST_F(PartFiles, PartsAreCountedFromZero)
{
    tag_t other = NULL_TAG;
    ASSERT_EQ(UF_PART_new(folder.file("other").c_str(), UF_PART_METRIC, &other), 0);
    EXPECT_EQ(UF_PART_ask_num_parts(), 2);
    EXPECT_EQ(UF_PART_ask_nth_part(0), part);
    EXPECT_EQ(UF_PART_ask_nth_part(1), other);
    EXPECT_EQ(UF_PART_ask_nth_part(2), NULL_TAG);
    EXPECT_EQ(UF_PART_ask_nth_part(-1), NULL_TAG);
}

TEST_F(PartFiles, TheWorkPartFollowsTheDisplayPartOrIsSetApart)
{
    tag_t other = NULL_TAG;
    ASSERT_EQ(UF_PART_new(folder.file("other").c_str(), UF_PART_METRIC, &other), 0);
    ASSERT_EQ(UF_ASSEM_set_work_part(part), 0);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), part);
    EXPECT_EQ(UF_PART_ask_display_part(), other);
    ASSERT_EQ(UF_ASSEM_set_work_part(NULL_TAG), 0);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), other);
    ASSERT_EQ(UF_PART_set_display_part(part), 0);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), part);
    EXPECT_EQ(UF_ASSEM_set_work_part(1), UF_err_unknown_tag);
}

TEST_F(PartFiles, SavingAsMovesThePartToTheNewFile)
{
    newPoint();
    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_save_as(folder.file("copy").c_str()), 0);
    EXPECT_EQ(nameOf(part), folder.file("copy.prt"));
    EXPECT_TRUE(fs::exists(folder.file("work.prt")));
    EXPECT_EQ(UF_PART_is_loaded("work"), 0);
    EXPECT_EQ(UF_PART_save_as(folder.file("work.prt").c_str()), UF_PART_err_file_exists);
    EXPECT_EQ(nameOf(part), folder.file("copy.prt"));
    EXPECT_EQ(UF_PART_save_work_only(), 0);
}

TEST_F(PartFiles, APartStaysUsableWhenItCannotBeSaved)
{
    const tag_t point = newPoint();
    const std::string target = folder.file("missing/folder/x.prt");
    EXPECT_NE(UF_PART_save_as(target.c_str()), 0);
    EXPECT_NE(nxhost::lastPartMessage().find("missing/folder"), std::string::npos)
        << nxhost::lastPartMessage();
    EXPECT_EQ(nameOf(part), folder.file("work.prt"));
    EXPECT_EQ(UF_PART_is_modified(part), 1);
    EXPECT_EQ(UF_OBJ_set_color(point, 2), 0);
    EXPECT_EQ(UF_PART_save(), 0);
    EXPECT_EQ(nxhost::lastPartMessage(), "");
}

TEST_F(PartFiles, WithoutAWorkPartNothingIsSaved)
{
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    EXPECT_EQ(UF_PART_save(), UF_PART_err_no_work_part);
    EXPECT_FALSE(fs::exists(folder.file("work.prt")));
}

TEST_F(PartFiles, UdosOfAClassThatIsNotRegisteredAreThereUnderTheirStoredName)
{
    // Written by another process, which knows the class.
    const pid_t child = fork();
    if (child == 0) {
        UF_UDOBJ_class_t id = 0;
        tag_t udo = NULL_TAG;
        const bool done = UF_UDOBJ_create_class("HOST_FOREIGN", "Foreign", &id) == 0 &&
                          UF_UDOBJ_create_udo(id, &udo) == 0 && UF_PART_save() == 0;
        _exit(done ? 0 : 1);
    }
    int exitStatus = -1;
    ASSERT_EQ(waitpid(child, &exitStatus, 0), child);
    ASSERT_EQ(exitStatus, 0);
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);

    tag_t opened = NULL_TAG;
    UF_PART_load_status_t status{};
    ASSERT_EQ(UF_PART_open(folder.file("work.prt").c_str(), &opened, &status), 0);
    tag_t udo = NULL_TAG;
    ASSERT_EQ(UF_OBJ_cycle_objs_in_part(opened, UF_user_defined_object_type, &udo), 0);
    char *name = nullptr;
    ASSERT_EQ(UF_UDOBJ_ask_udo_class_name(udo, &name), 0);
    EXPECT_STREQ(name, "HOST_FOREIGN");
    UF_free(name);

    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    const UF_UDOBJ_class_t met = data.class_id;
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    tag_t another = NULL_TAG;
    EXPECT_EQ(UF_UDOBJ_create_udo(met, &another), UF_err_unknown_class_id);
    EXPECT_EQ(nxhost::ownedObjectSelection("HOST_FOREIGN"), 0);
    EXPECT_EQ(classId("HOST_FOREIGN"), met) << "registered late, it takes its objects over";
    EXPECT_EQ(UF_UDOBJ_create_udo(met, &another), 0);
}
