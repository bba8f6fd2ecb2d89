#include "tests/host/drawing_host.h"

#include "nxhost/authoring.h"
#include "uf_attr.h"
#include "uf_curve.h"
#include "uf_udobj.h"
#include "uf_view.h"
#include "ug_line.hxx"
#include "ug_part.hxx"
#include "ug_point.hxx"
#include "ug_session.hxx"
#include "ug_udo.hxx"

#include <ctime>
#include <type_traits>

namespace {

using Objects = DrawingHost;

template <class T> T *as(tag_t tag) { return dynamic_cast<T *>(UgObject::find(tag)); }

int codeOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const UgException &failure) {
        return failure.askErrorCode();
    }
    return 0;
}

// --- wrappers -------------------------------------------------------------------------------------

static_assert(!std::is_destructible_v<UgObject> && !std::is_destructible_v<UgPart>);

TEST_F(Objects, OneWrapperForEachLiveTag)
{
    const tag_t note = addNote({"a"});
    ASSERT_TRUE(UgObject::find(note));
    EXPECT_EQ(UgObject::find(note), UgObject::find(note));
    EXPECT_EQ(UgObject::find(note)->getTag(), note);
    EXPECT_EQ(UgObject::find(part()), UgSession::getWorkPart());
}

TEST_F(Objects, NothingIsFoundForNullUnknownAndDeadTags)
{
    const tag_t note = addNote({"a"});
    UgObject *wrapper = UgObject::find(note);
    EXPECT_TRUE(wrapper->isAlive());
    ASSERT_EQ(UF_OBJ_delete_object(note), 0);
    EXPECT_EQ(UgObject::find(note), nullptr);
    EXPECT_EQ(UgObject::find(NULL_TAG), nullptr);
    EXPECT_EQ(UgObject::find(4000000000u), nullptr);
    EXPECT_FALSE(wrapper->isAlive());
}

TEST_F(Objects, TheMembersOfADeadObjectRaiseAndNeverCrash)
{
    UgLine *line = UgLine::create(Point3(0, 0, 0), Point3(1, 0, 0));
    ASSERT_EQ(UF_OBJ_delete_object(line->getTag()), 0);
    EXPECT_EQ(codeOf([&] { line->getStartPoint(); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { line->setLayer(3); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { line->askType(); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { line->getName(); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { line->addStringAttribute("A", ""); }), UF_err_unknown_tag);
    EXPECT_FALSE(line->hasStringAttribute("A"));
}

TEST_F(Objects, WrappersOutliveTheirPart)
{
    UgPart *closed = UgSession::getWorkPart();
    UgPoint *point = UgPoint::create(Point3(1, 2, 3));
    ASSERT_EQ(UF_PART_close(part(), 0, 1), 0);
    EXPECT_FALSE(closed->isAlive());
    EXPECT_FALSE(point->isAlive());
    EXPECT_EQ(codeOf([&] { closed->isMillimeters(); }), UF_err_unknown_tag);
}

TEST_F(Objects, TheClassOfAWrapperFollowsTheKind)
{
    const tag_t sheet = openNewSheet("A");
    const tag_t udo = addRecord();
    const tag_t arc = nxhost::createArc(0, 0, 1, 0, 90);

    EXPECT_TRUE(as<UgPart>(part()));
    EXPECT_FALSE(as<UgTypedObject>(part()));
    EXPECT_TRUE(as<UgUDO>(udo));
    EXPECT_TRUE(as<UgDisplayableObject>(arc));
    EXPECT_TRUE(as<UgDisplayableObject>(addNote({"a"})));
    EXPECT_FALSE(as<UgUDO>(addNote({"a"})));
    for (const tag_t tag : {sheet, viewOf(sheet)}) {
        EXPECT_TRUE(as<UgTypedObject>(tag));
        EXPECT_FALSE(as<UgDisplayableObject>(tag));
    }
}

TEST_F(Objects, TypesAndSubtypesAreThoseOfTheCCall)
{
    const tag_t sheet = openNewSheet("A");
    for (const tag_t tag :
         {sheet, viewOf(sheet), addNote({"a"}), UgPoint::create(Point3(0, 0, 0))->getTag(),
          nxhost::createArc(0, 0, 1, 0, 90)}) {
        int type = -1, subtype = -1;
        ASSERT_EQ(UF_OBJ_ask_type_and_subtype(tag, &type, &subtype), 0);
        EXPECT_EQ(as<UgTypedObject>(tag)->askType(), type);
        EXPECT_EQ(as<UgTypedObject>(tag)->askSubtype(), subtype);
    }
    EXPECT_EQ(as<UgTypedObject>(sheet)->askType(), 62);
}

TEST_F(Objects, FindingDoesNotWalkThroughTheObjects)
{
    std::vector<tag_t> tags;
    for (int i = 0; i < 20000; ++i) tags.push_back(UgPoint::create(Point3(i, 0, 0))->getTag());
    std::size_t found = 0;
    const auto begin = clock();
    for (int round = 0; round < 10; ++round)
        for (const tag_t tag : tags) found += UgObject::find(tag) != nullptr;
    EXPECT_EQ(found, 200000u);
    // A walk would be 2e9 steps.
    EXPECT_LT(double(clock() - begin) / CLOCKS_PER_SEC, 1.0);
}

// --- names ----------------------------------------------------------------------------------------

TEST_F(Objects, ANameIsKeptAsGivenAndEmptyWithoutOne)
{
    auto *note = as<UgTypedObject>(addNote({"a"}));
    EXPECT_EQ(note->getName(), "");
    note->setName("Mixed Case 1");
    EXPECT_EQ(note->getName(), "Mixed Case 1");
    tag_t found = NULL_TAG;
    EXPECT_EQ(UF_OBJ_cycle_by_name("Mixed Case 1", &found), 0);
    EXPECT_EQ(found, note->getTag());
    EXPECT_THROW(note->setName(std::string(31, 'n')), UgException);
    EXPECT_NO_THROW(note->setName(std::string(30, 'n')));
    EXPECT_EQ(as<UgTypedObject>(addSheet("SHEET 1"))->getName(), "SHEET 1");
}

// --- display --------------------------------------------------------------------------------------

TEST_F(Objects, DisplayPropertiesAreKeptAsGiven)
{
    UgLine *line = UgLine::create(Point3(0, 0, 0), Point3(1, 0, 0));
    line->setLayer(254);
    line->setColor(static_cast<UgColor>(120));
    line->setLineFont(0); // no line font of the platform's list: kept
    line->setLineWidth(1);
    EXPECT_EQ(line->getLayer(), 254);
    EXPECT_EQ(line->getColor(), 120);
    EXPECT_EQ(line->getLineFont(), 0);
    EXPECT_EQ(line->getLineWidth(), 1);
    const UF_OBJ_disp_props_t properties = displayOf(line->getTag());
    EXPECT_EQ(properties.layer, 254);
    EXPECT_EQ(properties.color, 120);
    EXPECT_EQ(properties.line_width, 1);
    line->setColor(Red);
    EXPECT_EQ(line->getColor(), 4);
    for (const int layer : {0, 257, -1})
        EXPECT_EQ(codeOf([&] { line->setLayer(layer); }), UF_err_layer_range);
    EXPECT_EQ(line->getLayer(), 254);
}

// --- points and lines -----------------------------------------------------------------------------

TEST_F(Objects, PointsAndLinesGoIntoTheWorkPartAndTheCurrentView)
{
    const tag_t first = part();
    const tag_t second = newPart("other", UF_PART_METRIC);
    const tag_t sheet = openNewSheet("A");
    UgPoint *point = UgPoint::create(Point3(0, -3000, 0));
    UgPoint *there = UgPoint::create(Point3(1, 1, 1), as<UgPart>(first));
    EXPECT_EQ(point->getOwningPart()->getTag(), second);
    EXPECT_EQ(there->getOwningPart()->getTag(), first);
    EXPECT_EQ(point->getPosition()[1], -3000.0);
    tag_t seen = NULL_TAG;
    ASSERT_EQ(UF_VIEW_cycle_objects(viewOf(sheet), UF_VIEW_DEPENDENT_OBJECTS, &seen), 0);
    EXPECT_EQ(seen, point->getTag());
}

TEST_F(Objects, TheEndsOfALineAreSetOneByOne)
{
    UgLine *line = UgLine::create(Point3(0, 0, 0), Point3(10, 0, 0));
    line->setEndPoint(Point3(10, 5, 0));
    line->setStartPoint(Point3(10, 0, 0));
    EXPECT_EQ(line->getStartPoint()[0], 10.0);
    EXPECT_EQ(line->getEndPoint()[1], 5.0);
    UF_CURVE_line_t ends{};
    ASSERT_EQ(UF_CURVE_ask_line_data(line->getTag(), &ends), 0);
    EXPECT_EQ(ends.start_point[0], 10.0);
}

TEST_F(Objects, ALineOfLengthZeroIsRefusedByAllThree)
{
    const Point3 a(1, 2, 3), b(4, 5, 6);
    EXPECT_EQ(codeOf([&] { UgLine::create(a, a); }), UF_err_zero_length);
    UgLine *line = UgLine::create(a, b);
    EXPECT_EQ(codeOf([&] { line->setStartPoint(b); }), UF_err_zero_length);
    EXPECT_EQ(codeOf([&] { line->setEndPoint(a); }), UF_err_zero_length);
    EXPECT_EQ(nxhost::zeroLengthRefusals(), 3u);
    EXPECT_EQ(line->getStartPoint()[0], 1.0);
    EXPECT_EQ(line->getEndPoint()[0], 4.0);
}

TEST_F(Objects, AnInjectedFaultMakesNoLine)
{
    nxhost::failCall("UgLine::create", 1480007);
    EXPECT_EQ(codeOf([] { UgLine::create(Point3(0, 0, 0), Point3(1, 0, 0)); }), 1480007);
    EXPECT_EQ(nxhost::countObjects(part()), 0u);
    EXPECT_EQ(nxhost::callCount("UgLine::create"), 1u);
}

// --- attributes -----------------------------------------------------------------------------------

TEST_F(Objects, TheFourActionsOnAttributesAreStrict)
{
    auto *note = as<UgAttributableObject>(addNote({"a"}));
    EXPECT_FALSE(note->hasStringAttribute("VALUE0"));
    EXPECT_EQ(codeOf([&] { note->getStringAttributeValue("VALUE0"); }), UF_err_attribute_missing);
    EXPECT_EQ(codeOf([&] { note->setStringAttributeValue("VALUE0", "x"); }),
              UF_err_attribute_missing);
    EXPECT_EQ(codeOf([&] { note->deleteStringAttribute("VALUE0"); }), UF_err_attribute_missing);
    note->addStringAttribute("VALUE0", "");
    EXPECT_TRUE(note->hasStringAttribute("VALUE0"));
    EXPECT_EQ(note->getStringAttributeValue("VALUE0"), "");
    EXPECT_EQ(codeOf([&] { note->addStringAttribute("VALUE0", "y"); }), UF_err_attribute_exists);
    note->setStringAttributeValue("VALUE0", "z");
    EXPECT_EQ(note->getStringAttributeValue("VALUE0"), "z");
    note->deleteStringAttribute("VALUE0");
    EXPECT_FALSE(note->hasStringAttribute("VALUE0"));
}

TEST_F(Objects, TitlesAreComparedExactlyAndListedInOrderOfCreation)
{
    UgPart *target = UgSession::getWorkPart();
    target->addStringAttribute("b", "1");
    target->addStringAttribute("B", "2");
    target->addStringAttribute("a", "3");
    EXPECT_EQ(target->getStringAttributeValue("b"), "1");
    EXPECT_EQ(target->askStringAttributeTitles(), (std::vector<std::string>{"b", "B", "a"}));
}

TEST_F(Objects, AttributesAreTheSameForBothInterfaces)
{
    UgPart *target = UgSession::getWorkPart();
    char title[] = "T", value[] = "from C";
    UF_ATTR_value_t assigned{};
    assigned.type = UF_ATTR_string;
    assigned.value.string = value;
    ASSERT_EQ(UF_ATTR_assign(part(), title, assigned), 0);
    EXPECT_EQ(target->getStringAttributeValue("T"), "from C");
    target->setStringAttributeValue("T", std::string(500, 'v')); // longer than the fixed rows
    EXPECT_EQ(target->getStringAttributeValue("T").size(), 500u);
}

// --- parts ----------------------------------------------------------------------------------------

TEST_F(Objects, APartKnowsItsUnitsItsNameAndItsObjects)
{
    UgPart *metric = UgSession::getWorkPart();
    EXPECT_TRUE(metric->isMillimeters());
    EXPECT_EQ(metric->getFullName(), (folder() / "drawing.prt").string());
    const tag_t first = addNote({"a"});
    const tag_t second = addNote({"b"});
    std::vector<tag_t> notes;
    for (UgTypedObject *at = metric->iterateFirst(); at; at = metric->iterateNext(at))
        if (at->askType() == UF_drafting_entity_type) notes.push_back(at->getTag());
    EXPECT_EQ(notes, (std::vector{first, second}));
    newPart("inches", UF_PART_ENGLISH);
    EXPECT_FALSE(UgSession::getWorkPart()->isMillimeters());
}

// --- classes of applications ----------------------------------------------------------------------

class Marker : public UgPoint {
public:
    static UgTypedObject *create() { return new Marker; }
    static UgTypedObject *createOther() { return nullptr; }
    UgDerivedClassManager manager() const { return askClassManager(); }

private:
    UgDerivedClassManager askClassManager() const override { return s_manager; }
    static UgDerivedClassManager s_manager;
    ~Marker() override = default;
    friend class MarkerEnd;
};
UgDerivedClassManager Marker::s_manager("ObjectsTestMarker", Marker::create);

class MarkerEnd {
public:
    static void destroy(UgTypedObject *marker) { delete dynamic_cast<Marker *>(marker); }
};

TEST_F(Objects, ADerivedClassIsMadeByItsNameAndHasNoTag)
{
    UgTypedObject *made = nxhost::createDerived("ObjectsTestMarker");
    auto *marker = dynamic_cast<Marker *>(made);
    ASSERT_TRUE(marker);
    EXPECT_EQ(marker->getTag(), NULL_TAG);
    EXPECT_EQ(marker->manager().askClassName(), "ObjectsTestMarker");
    EXPECT_EQ(codeOf([&] { marker->getPosition(); }), UF_err_unknown_tag);
    MarkerEnd::destroy(made);
    EXPECT_EQ(nxhost::createDerived("NoSuchClass"), nullptr);
}

TEST_F(Objects, ASecondRegistrationKeepsTheFirstCreator)
{
    const UgDerivedClassManager second("ObjectsTestMarker", Marker::createOther);
    UgTypedObject *made = second.createInstance();
    EXPECT_TRUE(made);
    MarkerEnd::destroy(made);
    EXPECT_EQ(UgDerivedClassManager().createInstance(), nullptr);
    EXPECT_EQ(UgDerivedClassManager().askClassName(), "");
}

class Bound : public UgDisplayableObject {
public:
    explicit Bound(tag_t tag = NULL_TAG) : UgDisplayableObject(tag) {}
    void bind(tag_t tag) { setTag(tag); }
};

TEST_F(Objects, AnApplicationsWrapperStandsBesideTheHostsOwn)
{
    const tag_t note = addNote({"a"});
    auto *own = new Bound; // kept by the object table once it is bound
    own->bind(note);
    own->setLayer(17);
    EXPECT_EQ(displayOf(note).layer, 17);
    EXPECT_NE(UgObject::find(note), static_cast<UgObject *>(own));
    EXPECT_EQ(new Bound(note) == nullptr, false);
    Bound local(note);
    EXPECT_EQ(local.getLayer(), 17);
}

} // namespace
