// What tests and embedders see and steer: nxhost/control.h.
#include "host_fixture.h"

#include "nxhost/authoring.h"
#include "uf_drf.h"
#include "ug_exception.hxx"
#include "ug_extension.hxx"
#include "ug_info_window.hxx"
#include "ug_point.hxx"
#include "ug_typed.hxx"

#include <stdexcept>

using namespace host_test;

namespace {

class Control : public HostTest {};

tag_t newNote(std::vector<std::string> texts, double x = 0.0, double y = 0.0)
{
    std::vector<char *> lines;
    for (std::string &text : texts) lines.push_back(text.data());
    double origin[3] = {x, y, 0.0};
    tag_t note = NULL_TAG;
    EXPECT_EQ(UF_DRF_create_note(static_cast<int>(lines.size()), lines.data(), origin, 0, &note),
              0);
    return note;
}

std::size_t count(const std::string &text, const std::string &part)
{
    std::size_t found = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size())
        ++found;
    return found;
}

} // namespace

// --- faults ---------------------------------------------------------------------------------------

TEST_F(Control, TheNextCallFailsWithTheCodeAndDoesNothing)
{
    nxhost::failCall("UF_UDOBJ_create_udo", 6);
    EXPECT_TRUE(nxhost::faultsPending());
    tag_t udo = NULL_TAG;
    EXPECT_EQ(UF_UDOBJ_create_udo(classId("HOST_PROBE"), &udo), 6);
    EXPECT_EQ(udo, NULL_TAG);
    EXPECT_EQ(nxhost::countObjects(part), 0u);
    EXPECT_FALSE(nxhost::faultsPending());
    EXPECT_EQ(UF_UDOBJ_create_udo(classId("HOST_PROBE"), &udo), 0);
}

TEST_F(Control, TheNthCallFails)
{
    const tag_t point = newPoint();
    nxhost::failCall("UF_OBJ_set_color", 1155002, 3);
    EXPECT_EQ(UF_OBJ_set_color(point, 1), 0);
    EXPECT_EQ(UF_OBJ_set_color(point, 2), 0);
    EXPECT_EQ(UF_OBJ_set_color(point, 3), 1155002);
    EXPECT_EQ(UF_OBJ_set_color(point, 4), 0);
}

TEST_F(Control, TwoFaultsMeetTwoCalls)
{
    const tag_t point = newPoint();
    nxhost::failCall("UF_OBJ_set_color", 1);
    nxhost::failCall("UF_OBJ_set_color", 3);
    EXPECT_EQ(UF_OBJ_set_color(point, 1), 1);
    EXPECT_EQ(UF_OBJ_set_color(point, 1), 3);
    EXPECT_EQ(UF_OBJ_set_color(point, 1), 0);
}

TEST_F(Control, ACxxMemberRaisesTheCode)
{
    nxhost::failCall("UgPoint::create", 21);
    try {
        UgPoint::create(Point3(0, 0, 0));
        FAIL() << "nothing was raised";
    } catch (const UgException &error) {
        EXPECT_EQ(error.askErrorCode(), 21);
        EXPECT_EQ(error.askErrorText(), messageOf(21));
    }
}

TEST_F(Control, AnActionRunsBeforeTheCallAndMayThrow)
{
    const tag_t point = newPoint();
    nxhost::onCall("UF_OBJ_set_color", [&] { EXPECT_EQ(UF_OBJ_delete_object(point), 0); });
    EXPECT_EQ(UF_OBJ_set_color(point, 1), UF_err_unknown_tag);
    nxhost::onCall("UF_OBJ_set_color", [] { throw std::runtime_error("interrupted"); });
    EXPECT_THROW(UF_OBJ_set_color(point, 1), std::runtime_error);
    EXPECT_FALSE(nxhost::faultsPending());
}

TEST_F(Control, FaultsAreForgottenOnRequestAndByReset)
{
    nxhost::failCall("UF_OBJ_set_color", 1);
    nxhost::clearFaults();
    EXPECT_FALSE(nxhost::faultsPending());
    nxhost::failCall("UF_OBJ_set_color", 1);
    nxhost::reset();
    EXPECT_FALSE(nxhost::faultsPending());
}

// --- calls ----------------------------------------------------------------------------------------

TEST_F(Control, CallsAreCountedByNameAndRecordedWhenAskedFor)
{
    nxhost::clearCallCounts();
    const tag_t udo = newUdo();
    ASSERT_EQ(own(udo, {newPoint(), newPoint(), newPoint()}), 0);
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_add_owning_links"), 1u) << "one call for the whole list";
    EXPECT_EQ(nxhost::callCount("UF_CURVE_create_point"), 3u);
    EXPECT_EQ(nxhost::totalCalls(), 5u); // with the UDO
    nxhost::recordCalls(true);
    ownedBy(udo);
    const std::vector<std::string> expected{"UF_UDOBJ_ask_owned_objects", "UF_free"};
    EXPECT_EQ(nxhost::recordedCalls(), expected);
    nxhost::recordCalls(false);
    EXPECT_TRUE(nxhost::recordedCalls().empty());
}

TEST_F(Control, ChangesAreRecordedAndReadingIsNoChange)
{
    const tag_t udo = newUdo();
    const tag_t point = newPoint();
    int ints[] = {1};
    ASSERT_EQ(UF_UDOBJ_add_integers(udo, 1, ints), 0);
    ASSERT_EQ(assign(point, "A", "1"), 0);
    nxhost::recordChanges(true);
    linksOf(udo);
    linksTo(point);
    nxhost::listPart(part);
    EXPECT_TRUE(nxhost::recordedChanges().empty());
    EXPECT_EQ(UF_UDOBJ_edit_integers(udo, ints), 0); // the same values
    EXPECT_EQ(UF_OBJ_set_color(point, 7), 0);
    EXPECT_EQ(assign(point, "A", "1"), 0);
    EXPECT_TRUE(nxhost::recordedChanges().empty()) << nxhost::recordedChanges().front();
    int other[] = {2};
    EXPECT_EQ(UF_UDOBJ_edit_integers(udo, other), 0);
    EXPECT_EQ(addLink(udo, 4, point), 0);
    EXPECT_EQ(UF_OBJ_delete_object(udo), 0);
    const std::vector<std::string> &changes = nxhost::recordedChanges();
    ASSERT_EQ(changes.size(), 3u);
    const std::string name = "udo " + std::to_string(udo) + " HOST_PROBE";
    EXPECT_EQ(changes[0], "integers " + name);
    EXPECT_EQ(changes[1], "links " + name);
    EXPECT_EQ(changes[2], "deleted " + name);
    nxhost::recordChanges(false);
    EXPECT_TRUE(nxhost::recordedChanges().empty());
}

// --- reset ----------------------------------------------------------------------------------------

TEST_F(Control, ResetForgetsPartsTextsAndSettingsAndKeepsClasses)
{
    const UF_UDOBJ_class_t id = classId("HOST_PROBE");
    const tag_t point = newPoint();
    UgInfoWindow::open();
    UgInfoWindow::write("text");
    nxhost::setStrictLimits(true);
    nxhost::reset();
    EXPECT_EQ(UF_PART_ask_num_parts(), 0);
    EXPECT_EQ(statusOf(point), UF_OBJ_DELETED);
    EXPECT_EQ(nxhost::takeInfoWindow(), "");
    EXPECT_FALSE(nxhost::infoWindowOpened());
    EXPECT_TRUE(UF_is_initialized());
    ASSERT_EQ(UF_PART_new(folder.file("after").c_str(), 1, &part), 0);
    tag_t udo = NULL_TAG;
    EXPECT_EQ(UF_UDOBJ_create_udo(id, &udo), 0);
    EXPECT_EQ(assign(udo, std::string(60, 't'), ""), 0);
}

// --- listings -------------------------------------------------------------------------------------

TEST_F(Control, ASheetIsListedOneObjectALineWithoutTags)
{
    const tag_t sheet = newSheet("SH1");
    const tag_t owner = newUdo("HOST_FIELD");
    ASSERT_EQ(own(owner, {newNote({"A", "B \"quoted\""}, 10.0, 0.1)}), 0);
    newPoint(1.5, -3000.0);
    EXPECT_EQ(nxhost::listSheet(sheet),
              "sheet \"SH1\" metric 4 scale 1 units 1 projection 2\n"
              "note layer 1 color 7 font 1 width 0 owned by HOST_FIELD (10, 0.1, 0)\n"
              "    lettering site 1 justification 1 angle 0 size 3.5 aspect 1 gap 1 line space 1 "
              "color 7 font 1 width 0\n"
              "    text \"A\"\n"
              "    text \"B \\\"quoted\\\"\"\n"
              "point layer 1 color 7 font 1 width 0 (1.5, -3000, 0)\n");
    EXPECT_THROW(nxhost::listSheet(owner), UgException);
}

TEST_F(Control, APartIsListedWithLinksAndReferencesByPlace)
{
    const tag_t udo = newUdo("HOST_FIELD"); // behind the font table: place 2
    const tag_t point = newPoint();         // 3
    ASSERT_EQ(addLink(udo, 4, point), 0);
    ASSERT_EQ(addLink(udo, 2, NULL_TAG), 0);
    ASSERT_EQ(assign(udo, "VALUE0", "4711"), 0);
    double lengths[] = {0.1};
    ASSERT_EQ(UF_UDOBJ_add_lengths(udo, 1, lengths), 0);
    const tag_t note = newNote({"<W!" + std::to_string(udo) + "@VALUE0>"}); // 4
    ASSERT_EQ(own(udo, {note}), 0);
    const std::string listing = nxhost::listPart(part);
    EXPECT_EQ(listing.find(std::to_string(udo)), std::string::npos) << listing;
    for (const char *line :
         {"part mm work layer 1\n", "1 fonts \"blockfont\"\n",
          "2 udo layer 1 color 7 font 1 width 0 HOST_FIELD\n",
          "    attribute \"VALUE0\" = \"4711\"\n", "    lengths 0.1\n",
          "    link 4 #3\n    link 2 nothing\n    owns #4\n", "    text \"<W!#2@VALUE0>\"\n"})
        EXPECT_NE(listing.find(line), std::string::npos) << line << "is missing in\n" << listing;
}

TEST_F(Control, TheSameContentListsTheSame)
{
    const auto fill = [] {
        const tag_t udo = newUdo();
        const tag_t point = newPoint(1.0 / 3.0, 2.0);
        EXPECT_EQ(addLink(udo, 1, point), 0);
        return newNote({"<W!" + std::to_string(udo) + "@T>"});
    };
    fill();
    tag_t second = NULL_TAG;
    ASSERT_EQ(UF_PART_new(folder.file("second").c_str(), 1, &second), 0);
    ASSERT_EQ(UF_OBJ_delete_object(newPoint()), 0); // leaves no trace
    fill();
    EXPECT_EQ(nxhost::listPart(part), nxhost::listPart(second));
    newPoint();
    EXPECT_NE(nxhost::listPart(part), nxhost::listPart(second));
}

TEST_F(Control, DoublesAreListedInTheShortestFormThatKeepsEveryBit)
{
    const tag_t udo = newUdo();
    double values[] = {0.1, 1.0 / 3.0, 1e-300, -0.0, 297.0};
    ASSERT_EQ(UF_UDOBJ_add_doubles(udo, 5, values), 0);
    EXPECT_NE(nxhost::listPart(part).find("doubles 0.1 0.3333333333333333 1e-300 -0 297\n"),
              std::string::npos)
        << nxhost::listPart(part);
}

TEST_F(Control, EveryKindIsListedWithItsValues)
{
    nxhost::createArc(1, 2, 5, 0, 90);
    nxhost::createFilledArea({{{0, 0}, {10, 0}, {0, 10}}});
    UF_CURVE_line_t ends{{0, 0, 0}, {10, 0.5, 0}};
    tag_t line = NULL_TAG;
    ASSERT_EQ(UF_CURVE_create_line(&ends, &line), 0);
    ASSERT_EQ(UF_OBJ_set_blank_status(line, UF_OBJ_BLANKED), 0);
    double origin[3] = {3.0, 4.0, 0.0};
    tag_t symbol = NULL_TAG;
    ASSERT_EQ(UF_DRF_create_id_symbol(UF_DRF_sym_divcir, "up", "down", origin,
                                      UF_DRF_without_leader, UF_DRF_leader_attach_screen, nullptr,
                                      origin, &symbol),
              0);
    const std::string listing = nxhost::listPart(part);
    for (const char *text : {"(1, 2, 0) radius 5 from 0 to 90\n", "1 outlines\n",
                             "    outline (0, 0, 0) (10, 0, 0) (0, 10, 0)\n",
                             "width 0 blanked (0, 0, 0) to (10, 0.5, 0)\n", "(3, 4, 0) type 2 ",
                             "    text \"up\"\n    text \"down\"\n"})
        EXPECT_NE(listing.find(text), std::string::npos) << text << "is missing in\n" << listing;
}

TEST_F(Control, TheDifferenceOfTwoListingsNamesLinesOfOneSide)
{
    EXPECT_EQ(nxhost::difference("a\nb\nb\nc\n", "b\nc\nd\n"), "- a\n- b\n+ d\n");
    EXPECT_EQ(nxhost::difference("a\nb\n", "b\na\n"), "") << "order alone is no difference";
    const tag_t sheet = newSheet("SH1");
    const std::string before = nxhost::listSheet(sheet);
    newPoint(1.0, 2.0);
    const std::string change = nxhost::difference(before, nxhost::listSheet(sheet));
    EXPECT_EQ(count(change, "\n"), 1u);
    EXPECT_TRUE(change.starts_with("+ point ")) << change;
}

TEST_F(Control, ObjectsAreCountedWithoutPartFontTableAndViews)
{
    EXPECT_EQ(nxhost::countObjects(part), 0u);
    newSheet("SH1");
    newPoint();
    newUdo();
    EXPECT_EQ(nxhost::countObjects(part), 3u);
    EXPECT_THROW(nxhost::countObjects(NULL_TAG), UgException);
}

// --- driving --------------------------------------------------------------------------------------

TEST_F(Control, TheInformationCallbackRunsOnRequest)
{
    static tag_t asked = NULL_TAG;
    ASSERT_EQ(UF_UDOBJ_register_info_obj_cb(classId("HOST_INFO"), [](tag_t udo) { asked = udo; }),
              0);
    const tag_t udo = newUdo("HOST_INFO");
    nxhost::runInfoCallback(udo);
    EXPECT_EQ(asked, udo);
    nxhost::runInfoCallback(newUdo()); // no callback: nothing happens
    EXPECT_EQ(asked, udo);
    EXPECT_THROW(nxhost::runInfoCallback(newPoint()), UgException);
}

namespace {

struct DerivedPoint : UgPoint {
    DerivedPoint() = default;
    ~DerivedPoint() override = default;
    static UgTypedObject *make() { return new DerivedPoint; }
};

} // namespace

TEST_F(Control, ADerivedClassIsMadeByItsName)
{
    const UgDerivedClassManager manager("HostTestPoint", &DerivedPoint::make);
    auto *made = dynamic_cast<DerivedPoint *>(nxhost::createDerived("HostTestPoint"));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->getTag(), NULL_TAG);
    delete made;
    EXPECT_EQ(nxhost::createDerived("Nobody"), nullptr);
}

// --- notes ----------------------------------------------------------------------------------------

TEST_F(Control, MemoryThatIsHandedOutAndNotReturnedShows)
{
    const std::size_t before = nxhost::outstandingAllocations();
    char *name = nullptr;
    ASSERT_EQ(UF_UDOBJ_ask_udo_class_name(newUdo(), &name), 0);
    EXPECT_EQ(nxhost::outstandingAllocations(), before + 1);
    UF_free(name);
    EXPECT_EQ(nxhost::outstandingAllocations(), before);
}
