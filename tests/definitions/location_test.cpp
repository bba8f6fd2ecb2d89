// Places of blocks: the corner they are measured from, the sheet they are for, both generations.
#include "definitions/locations.h"

#include "foundation/log.h"
#include "tests/definitions/slot_walk.h"
#include "tests/support/definitions.h"

#include "uf_obj.h"

#include <limits>

using namespace QelFmt;

namespace {

using Texts = std::vector<std::string>;

class OnASheet : public testing::Test {
protected:
    OnASheet() { sheet = story.newSheet(420, 297); }

    std::size_t records(const LumUg::UDOClass &of) const
    {
        return LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), of.GetClassId()).size();
    }
    // Size A3 (420 x 297) of format F. The size is of the suite BIG, the format of FAMILY.
    boost::shared_ptr<TrDrawing> drawing()
    {
        const auto onSheet = TrDrawing::getDrawing(sheet);
        if (!onSheet->hasFormat()) {
            const boost::shared_ptr<TrFormatDefV1> format(
                new TrFormatDefV1(makeFormat("F", {"A3"})));
            TrFormatSizeV1 size = format->GetSizeDef("A3");
            size.SetSuiteName("BIG");
            format->SetSuiteName("FAMILY");
            onSheet->addFormat(format, size);
        }
        return onSheet;
    }

    Story story;
    tag_t sheet;
};

class Location : public OnASheet {};
class SizeLocation : public OnASheet {};
class BlockLocation : public OnASheet {};
class OldBlockLocation : public OnASheet {};

Texts names(const std::vector<LocationInfoType> &places)
{
    Texts all;
    for (const LocationInfoType &place : places) all.push_back(place.name);
    return all;
}

void expectPlace(const LocationInfoType &place, const std::string &name, double x, double y)
{
    EXPECT_EQ(place.name, name);
    EXPECT_EQ(place.location[0], x);
    EXPECT_EQ(place.location[1], y);
}

template <class Base> boost::shared_ptr<LocationV1> asV1(const boost::shared_ptr<Base> &location)
{
    return boost::dynamic_pointer_cast<LocationV1>(location);
}

} // namespace

// --- one place ------------------------------------------------------------------------------------

TEST_F(Location, StoredPointIsMeasuredFromTheCornerItsOffsetTypeNames) // on a 420 x 297 sheet
{
    struct Row {
        int offsetType;
        double x, y;
    };
    // 297 - 10 = 287 from the upper edge, 420 - 10 = 410 from the right one.
    for (const Row &row : {Row{0, 10, 10}, Row{1, 10, 287}, Row{2, 410, 10}, Row{3, 410, 287},
                           Row{7, 10, 10}, Row{-1, 10, 10}}) {
        SCOPED_TRACE(row.offsetType);
        const Point2 at = fromCorner(row.offsetType, {10, 10}, {420, 297});
        EXPECT_EQ(at[0], row.x);
        EXPECT_EQ(at[1], row.y);
    }
}

TEST_F(Location, ANewOneIsToBeRenamed)
{
    const auto location = LocationBase::createLocation();
    ASSERT_TRUE(asV1(location));
    EXPECT_EQ(LumUg::GetUDOClassName(location->GetUdoObject()), "KORVAN_FORMAT_LOCATION_V1");
    EXPECT_EQ(location->GetName(), "Change Me");
    EXPECT_EQ(location->GetOffsetType(), 0);
    EXPECT_EQ(location->GetDoubles(), (std::vector<double>{0, 0}));
    EXPECT_EQ(SizeLocationBase::createSizeLocation()->GetSizeId(), "change_me");
    EXPECT_EQ(BlockLocationBase::createBlockLocation()->GetFormatId(), "changeMe");
}

TEST_F(Location, ValuesStandInTheirStoredOrder)
{
    const auto location = makePlace("left", 12.5, 13.5, 3);
    EXPECT_EQ(location->GetStrings(), Texts{"left"});
    EXPECT_EQ(location->GetDoubles(), (std::vector<double>{12.5, 13.5}));
    EXPECT_EQ(location->GetInts(), std::vector<int>{3});
    EXPECT_EQ(location->getLocation()[0], 12.5);
    EXPECT_EQ(location->getLocation()[1], 13.5);
}

TEST_F(Location, ADifferenceInAnySlotIsSeen)
{
    const auto location = makePlace("left", 12.5, 13.5, 3);
    EXPECT_TRUE(location->equalTo(location->clone().get()));
    EXPECT_FALSE(location->equalTo(nullptr));
    forEachSlot(LocationV1::kLayout, [&](const auto &slot) {
        SCOPED_TRACE(slot.name);
        const auto copy = location->clone();
        change(*copy, slot);
        EXPECT_FALSE(copy->equalTo(location.get()));
        EXPECT_FALSE(location->equalTo(copy.get()));
    });
    location->SetX(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(location->equalTo(location.get()));
}

TEST_F(Location, IsNeverUpgraded) { EXPECT_FALSE(makePlace("left", 1, 2)->checkAndUpgrade()); }

// --- the places of a size ---------------------------------------------------------------------------

TEST_F(SizeLocation, HoldsItsPlacesInLinkOrder)
{
    const auto size = makeSizePlaces("A3", {makePlace("b", 1, 2), makePlace("a", 3, 4)});
    EXPECT_EQ(LumUg::GetUDOClassName(size->GetUdoObject()), "KORVAN_FORMAT_SIZE_LOC_V1");
    EXPECT_EQ(size->GetStrings(), Texts{"A3"});
    ASSERT_EQ(size->getLocations().size(), 2u);
    EXPECT_EQ(size->getLocations()[0]->GetName(), "b");
    EXPECT_EQ(size->getLocations()[1]->GetName(), "a");
    EXPECT_TRUE(SizeLocationV1().getLocations().empty());
}

TEST_F(SizeLocation, AdjustsEachPlaceByItsOwnCorner)
{
    const auto size =
        makeSizePlaces("A3", {makePlace("ll", 10, 10, 0), makePlace("ul", 10, 10, 1),
                              makePlace("lr", 10, 10, 2), makePlace("ur", 10, 10, 3)});
    const auto places = size->getAdjustedLocations(drawing());
    ASSERT_EQ(places.size(), 4u);
    expectPlace(places[0], "ll", 10, 10);
    expectPlace(places[1], "ul", 10, 287);
    expectPlace(places[2], "lr", 410, 10);
    expectPlace(places[3], "ur", 410, 287);
}

TEST_F(SizeLocation, ARemovedPlaceIsDeletedARetainedOneIsOnlyUnlinked)
{
    const auto size = makeSizePlaces("A3", {makePlace("a", 1, 2), makePlace("b", 3, 4)});
    const auto a = size->getLocations()[0], b = size->getLocations()[1];
    size->removeAndRetainLocation(a);
    EXPECT_EQ(records(LocationV1::mUDOClass), 2u);
    EXPECT_EQ(a->GetName(), "a");
    size->removeLocation(b);
    EXPECT_EQ(records(LocationV1::mUDOClass), 1u);
    EXPECT_TRUE(size->getLocations().empty());
}

TEST_F(SizeLocation, NoPlaceIsNoArgument)
{
    const auto size = makeSizePlaces("A3", {});
    EXPECT_THROW(size->addLocation({}), std::logic_error);
    EXPECT_THROW(size->removeLocation({}), std::logic_error);
    EXPECT_THROW(size->removeAndRetainLocation({}), std::logic_error);
    EXPECT_THROW(size->getAdjustedLocations({}), std::logic_error);
}

TEST_F(SizeLocation, IsComparedWithItsPlacesInOrder)
{
    const auto size = [](const std::string &id, const Texts &places) {
        Places all;
        for (const std::string &name : places) all.push_back(makePlace(name, 1, 2));
        return makeSizePlaces(id, all);
    };
    const auto a3 = size("A3", {"a", "b"});
    EXPECT_TRUE(a3->equalTo(size("A3", {"a", "b"}).get()));
    EXPECT_FALSE(a3->equalTo(size("a3", {"a", "b"}).get()));
    EXPECT_FALSE(a3->equalTo(size("A3", {"b", "a"}).get()));
    EXPECT_FALSE(a3->equalTo(size("A3", {"a"}).get()));
    EXPECT_FALSE(a3->equalTo(size("A3", {"a", "b", "c"}).get()));
    EXPECT_FALSE(a3->equalTo(nullptr));
}

TEST_F(SizeLocation, ACloneHasPlacesOfItsOwn)
{
    const auto size = makeSizePlaces("A3", {makePlace("a", 1, 2, 3)});
    const auto copy = size->clone();
    EXPECT_TRUE(copy->equalTo(size.get()));
    EXPECT_NE(copy->tag(), size->tag());
    EXPECT_NE(copy->getLocations()[0]->tag(), size->getLocations()[0]->tag());
    EXPECT_EQ(records(LocationV1::mUDOClass), 2u);
}

TEST_F(SizeLocation, ACurrentOneIsLeftAsItIs)
{
    const auto size = makeSizePlaces("A3", {makePlace("a", 1, 2)});
    EXPECT_TRUE(story.changesDuring([&] { EXPECT_FALSE(size->checkAndUpgrade()); }).empty());
}

TEST_F(SizeLocation, AnUpgradeMovesThePlacesToANewRecord)
{
    const auto size = makeSizePlaces("A3", {makePlace("a", 1, 2), makePlace("b", 3, 4)});
    const tag_t a = size->getLocations()[0]->tag(), b = size->getLocations()[1]->tag();
    const auto fresh = size->upgrade();
    EXPECT_EQ(fresh->GetSizeId(), "A3");
    EXPECT_TRUE(size->getLocations().empty());
    ASSERT_EQ(fresh->getLocations().size(), 2u);
    EXPECT_EQ(fresh->getLocations()[0]->tag(), a);
    EXPECT_EQ(fresh->getLocations()[1]->tag(), b);
}

// --- the places for a format ------------------------------------------------------------------------

TEST_F(BlockLocation, TheSizeOrItsSuiteOrDefaultIsForTheSheet)
{
    for (const char *id : {"A3", "BIG", "Default"}) {
        SCOPED_TRACE(id);
        const auto location = makeBlockPlaces(
            "F", {{"A4", {makePlace("wrong", 1, 1)}}, {id, {makePlace("right", 5, 6, 2)}}});
        const auto places = location->getValidLocations(drawing());
        ASSERT_EQ(places.size(), 1u);
        expectPlace(places[0], "right", 415, 6); // 420 - 5
    }
}

TEST_F(BlockLocation, TheSuiteOfTheFormatServesASizeWithoutOne)
{
    const boost::shared_ptr<TrFormatDefV1> format(new TrFormatDefV1(makeFormat("G", {"A3"})));
    format->SetSuiteName("FAMILY");
    TrDrawing::getDrawing(sheet)->addFormat(format, format->GetSizeDef("A3"));
    const auto location = makeBlockPlaces("G", {{"FAMILY", {makePlace("right", 5, 6)}}});
    EXPECT_EQ(names(location->getValidLocations(TrDrawing::getDrawing(sheet))), Texts{"right"});
}

TEST_F(BlockLocation, TheFirstThatFitsHidesTheOthers)
{
    const auto hidden = makeBlockPlaces(
        "F", {{"Default", {makePlace("default", 1, 1)}}, {"A3", {makePlace("a3", 2, 2)}}});
    EXPECT_EQ(names(hidden->getValidLocations(drawing())), Texts{"default"});
    const auto shown = makeBlockPlaces(
        "F", {{"A3", {makePlace("a3", 2, 2)}}, {"Default", {makePlace("default", 1, 1)}}});
    EXPECT_EQ(names(shown->getValidLocations(drawing())), Texts{"a3"});
}

TEST_F(BlockLocation, SizesAreMatchedExactly)
{
    const auto location = makeBlockPlaces("F", {{"a3", {makePlace("a", 1, 1)}},
                                                {"default", {makePlace("b", 1, 1)}},
                                                {"big", {makePlace("c", 1, 1)}}});
    EXPECT_EQ(names(location->getValidLocations(drawing())), Texts{""});
}

TEST_F(BlockLocation, NothingForTheSheetIsOneNamelessPlaceAtTheOrigin)
{
    const auto places =
        makeBlockPlaces("F", {{"A4", {makePlace("a", 1, 1)}}})->getValidLocations(drawing());
    ASSERT_EQ(places.size(), 1u);
    expectPlace(places[0], "", 0, 0);
}

TEST_F(BlockLocation, ASheetWithoutAFormatGetsTheDefaultPlaces)
{
    const auto bare = TrDrawing::getDrawing(sheet);
    const auto location = makeBlockPlaces(
        "F", {{"", {makePlace("empty", 1, 1)}}, {"Default", {makePlace("default", 1, 1, 3)}}});
    const auto places = location->getValidLocations(bare);
    ASSERT_EQ(places.size(), 1u);
    expectPlace(places[0], "default", 419, 296); // 420 - 1, 297 - 1
}

TEST_F(BlockLocation, ASizeWithoutPlacesGivesNone)
{
    const auto location = makeBlockPlaces("F", {{"A3", {}}});
    EXPECT_TRUE(location->getValidLocations(drawing()).empty());
}

TEST_F(BlockLocation, IsComparedWithItsSizesInOrder)
{
    const auto location = [](const std::string &format, const Texts &sizes) {
        std::vector<std::pair<std::string, Places>> all;
        for (const std::string &id : sizes) all.push_back({id, {makePlace("only", 1, 2)}});
        return makeBlockPlaces(format, all);
    };
    const auto f = location("F", {"A3", "A4"});
    EXPECT_TRUE(f->equalTo(location("F", {"A3", "A4"}).get()));
    EXPECT_FALSE(f->equalTo(location("f", {"A3", "A4"}).get()));
    EXPECT_FALSE(f->equalTo(location("F", {"A4", "A3"}).get()));
    EXPECT_FALSE(f->equalTo(location("F", {"A3"}).get()));
    const auto moved = location("F", {"A3", "A4"});
    moved->getSizeLocations()[1]->getLocations()[0]->SetY(2.5);
    EXPECT_FALSE(f->equalTo(moved.get()));
}

TEST_F(BlockLocation, ACloneHasRecordsOfItsOwnAllTheWayDown)
{
    const auto location =
        makeBlockPlaces("F", {{"A3", {makePlace("a", 1, 2), makePlace("b", 3, 4, 2)}}, {"A4", {}}});
    const auto copy = location->clone();
    EXPECT_TRUE(copy->equalTo(location.get()));
    EXPECT_TRUE(location->equalTo(copy.get()));
    EXPECT_NE(copy->tag(), location->tag());
    EXPECT_EQ(records(BlockLocationV2::mUDOClass), 2u);
    EXPECT_EQ(records(SizeLocationV1::mUDOClass), 4u);
    EXPECT_EQ(records(LocationV1::mUDOClass), 4u);
}

TEST_F(BlockLocation, ARemovedSizeIsDeletedWithItsPlacesARetainedOneIsOnlyUnlinked)
{
    const auto location =
        makeBlockPlaces("F", {{"A3", {makePlace("a", 1, 2)}}, {"A4", {makePlace("b", 3, 4)}}});
    const auto a3 = location->getSizeLocations()[0], a4 = location->getSizeLocations()[1];
    location->removeAndRetainSizeLocation(a3);
    EXPECT_EQ(a3->getLocations().size(), 1u);
    location->removeSizeLocation(a4);
    EXPECT_EQ(records(SizeLocationV1::mUDOClass), 1u);
    EXPECT_EQ(records(LocationV1::mUDOClass), 1u);
    EXPECT_TRUE(location->getSizeLocations().empty());
}

TEST_F(BlockLocation, NoSizeLocationIsNoArgument)
{
    const auto location = makeBlockPlaces("F", {});
    EXPECT_THROW(location->addSizeLocation({}), std::logic_error);
    EXPECT_THROW(location->removeSizeLocation({}), std::logic_error);
    EXPECT_THROW(location->removeAndRetainSizeLocation({}), std::logic_error);
    EXPECT_THROW(location->getValidLocations({}), std::logic_error);
}

TEST_F(BlockLocation, ACurrentOneIsLeftAsItIs)
{
    const auto location = makeBlockPlaces("F", {{"A3", {makePlace("a", 1, 2)}}});
    EXPECT_TRUE(story.changesDuring([&] { EXPECT_FALSE(location->checkAndUpgrade()); }).empty());
}

TEST_F(BlockLocation, ComesBackFromAPart)
{
    makeBlockPlaces("F", {{"A4", {}}, {"A3", {makePlace("b", 1, 2), makePlace("a", 3, 4, 2)}}});
    story.saveAndReopen();
    const auto found = LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(),
                                                       BlockLocationV2::mUDOClass.GetClassId());
    ASSERT_EQ(found.size(), 1u);
    const BlockLocationV2 again(found.front());
    const auto same =
        makeBlockPlaces("F", {{"A4", {}}, {"A3", {makePlace("b", 1, 2), makePlace("a", 3, 4, 2)}}});
    EXPECT_TRUE(again.equalTo(same.get()));
}

// --- the first generation ---------------------------------------------------------------------------

TEST_F(OldBlockLocation, KeepsSizesAndPointsInParallelLists)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 3, 4}}, 2);
    EXPECT_EQ(LumUg::GetUDOClassName(old->GetUdoObject()), "KORVAN_FORMAT_BLOCK_LOC_V1");
    EXPECT_EQ(old->GetStrings(), (Texts{"F", "A3", "A4"}));
    EXPECT_EQ(old->GetDoubles(), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(old->GetInts(), std::vector<int>{2});
    EXPECT_EQ(old->GetSizeXLoc(1), 3);
    EXPECT_EQ(old->GetSizeYLoc(1), 4);
    EXPECT_EQ(old->GetSizeNames(), (Texts{"A3", "A4"}));
}

TEST_F(OldBlockLocation, FewerSizeNamesLeaveTheFormatAndThePointsAlone)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 3, 4}, {"A2", 5, 6}});
    old->SetSizeNames({"A0"});
    EXPECT_EQ(old->GetStrings(), (Texts{"F", "A0"}));
    EXPECT_EQ(old->GetDoubles().size(), 6u);
    old->SetSizeNames({});
    EXPECT_EQ(old->GetStrings(), Texts{"F"});
}

TEST_F(OldBlockLocation, ARemovedSizeNameTakesItsPointAlong)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 3, 4}, {"A2", 5, 6}});
    old->RemoveSizeName(1);
    EXPECT_EQ(old->GetStrings(), (Texts{"F", "A3", "A2"}));
    EXPECT_EQ(old->GetDoubles(), (std::vector<double>{1, 2, 5, 6}));
    old->RemoveSizeName(7);
    EXPECT_EQ(old->GetSizeNames().size(), 2u);
    old->RemoveSizeName(1);
    old->RemoveSizeName(0);
    EXPECT_EQ(old->GetStrings(), Texts{"F"});
    EXPECT_TRUE(old->GetDoubles().empty());
}

TEST_F(OldBlockLocation, AMatchIsUntitledAndAdjusted)
{
    for (const char *id : {"A3", "BIG", "Default"}) {
        SCOPED_TRACE(id);
        const auto old = makeOldBlockPlaces("F", {{"A4", 1, 1}, {id, 10, 20}, {"A3", 9, 9}}, 3);
        const auto places = old->getValidLocations(drawing());
        ASSERT_EQ(places.size(), 1u);
        expectPlace(places[0], "Untitled", 410, 277); // 420 - 10, 297 - 20
    }
}

TEST_F(OldBlockLocation, WithoutAMatchTheCornerItselfIsThePlace)
{
    struct Row {
        int offsetType;
        double x, y;
    };
    for (const Row &row : {Row{0, 0, 0}, Row{1, 0, 297}, Row{2, 420, 0}, Row{3, 420, 297}}) {
        const auto places =
            makeOldBlockPlaces("F", {{"A4", 1, 1}}, row.offsetType)->getValidLocations(drawing());
        ASSERT_EQ(places.size(), 1u);
        expectPlace(places[0], "", row.x, row.y);
    }
}

TEST_F(OldBlockLocation, TellsWhereTheBlockWillBe)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 10, 20}});
    const auto onSheet = drawing();
    Base::log::Recording recording{&QelFmt::info_log()};
    old->getValidLocations(onSheet);
    EXPECT_TRUE(recording.has("Block will be location at 10,20"));
}

TEST_F(OldBlockLocation, PresentsItselfAsNewRecordsEachTime)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 3, 4}}, 2);
    const auto sizes = old->getSizeLocations();
    ASSERT_EQ(sizes.size(), 2u);
    EXPECT_EQ(sizes[1]->GetSizeId(), "A4");
    ASSERT_EQ(sizes[1]->getLocations().size(), 1u);
    EXPECT_TRUE(sizes[1]->getLocations()[0]->equalTo(makePlace("Untitled", 3, 4, 2).get()));
    EXPECT_EQ(records(SizeLocationV1::mUDOClass), 2u);
    old->getSizeLocations();
    EXPECT_EQ(records(SizeLocationV1::mUDOClass), 4u);
}

TEST_F(OldBlockLocation, OwnsNoSizeLocations)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}});
    const auto size = makeSizePlaces("A4", {});
    const auto changes = story.changesDuring([&] {
        old->addSizeLocation(size);
        old->removeSizeLocation(size);
        old->removeAndRetainSizeLocation(size);
    });
    EXPECT_TRUE(changes.empty());
    EXPECT_EQ(size->GetSizeId(), "A4");
}

TEST_F(OldBlockLocation, AnyDifferenceIsSeen)
{
    const std::vector<OldPlace> places{{"A3", 1, 2}, {"A4", 3, 4}};
    const auto old = makeOldBlockPlaces("F", places, 2);
    const auto differs = [&](const std::vector<OldPlace> &changed, const char *format = "F",
                             int offset = 2) {
        const auto other = makeOldBlockPlaces(format, changed, offset);
        return !old->equalTo(other.get()) && !other->equalTo(old.get());
    };
    EXPECT_FALSE(differs(places));
    EXPECT_TRUE(differs(places, "G"));
    EXPECT_TRUE(differs(places, "F", 0));
    EXPECT_TRUE(differs({{"A3", 1, 2}}));
    EXPECT_TRUE(differs({{"A4", 1, 2}, {"A3", 3, 4}}));
    EXPECT_TRUE(differs({{"A3", 1, 2}, {"A4", 3.5, 4}}));
    EXPECT_TRUE(differs({{"A3", 1, 2}, {"A4", 3, 4.5}}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(differs({{"A3", nan, 2}, {"A4", 3, 4}}));
}

TEST_F(OldBlockLocation, PointsBeyondTheSizesDoNotCount)
{
    const auto a = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 3, 4}});
    const auto b = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 5, 6}});
    a->SetSizeNames({"A3"});
    b->SetSizeNames({"A3"});
    EXPECT_TRUE(a->equalTo(b.get()));
}

TEST_F(OldBlockLocation, GenerationsAreNeverEqual)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}});
    const auto fresh = makeBlockPlaces("F", {{"A3", {makePlace("Untitled", 1, 2)}}});
    EXPECT_FALSE(old->equalTo(fresh.get()));
    EXPECT_FALSE(fresh->equalTo(old.get()));
    EXPECT_FALSE(old->equalTo(nullptr));
}

TEST_F(OldBlockLocation, ACloneIsOfTheSameGeneration)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 3, 4}}, 2);
    const auto copy = old->clone();
    EXPECT_NE(copy->tag(), old->tag());
    EXPECT_EQ(LumUg::GetUDOClassName(copy->GetUdoObject()), TrBlockLocationV1::className);
    EXPECT_EQ(RawSlots(*copy), RawSlots(*old));
    EXPECT_TRUE(copy->equalTo(old.get()));
}

TEST_F(OldBlockLocation, AnUpgradeMakesOneNamedPlaceForEachSize)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}, {"A4", 3, 4}}, 2);
    const auto fresh = old->checkAndUpgrade();
    ASSERT_TRUE(boost::dynamic_pointer_cast<BlockLocationV2>(fresh));
    const auto expected = makeBlockPlaces(
        "F", {{"A3", {makePlace("Untitled", 1, 2, 2)}}, {"A4", {makePlace("Untitled", 3, 4, 2)}}});
    EXPECT_TRUE(fresh->equalTo(expected.get()));
    expected->DeleteUDO();
    // Nothing is left over: the records of the upgraded one are all there are.
    EXPECT_EQ(records(BlockLocationV2::mUDOClass), 1u);
    EXPECT_EQ(records(SizeLocationV1::mUDOClass), 2u);
    EXPECT_EQ(records(LocationV1::mUDOClass), 2u);
    EXPECT_EQ(old->GetSizeNames().size(), 2u);
}

TEST_F(OldBlockLocation, AnUpgradeStaysInThePartOfTheOldRecord)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}});
    const tag_t first = story.part();
    const tag_t second = story.newPart("second.prt");
    const auto fresh = old->checkAndUpgrade();
    for (const tag_t made : {fresh->tag(), fresh->getSizeLocations()[0]->tag(),
                             fresh->getSizeLocations()[0]->getLocations()[0]->tag()}) {
        tag_t part = NULL_TAG;
        ASSERT_EQ(UF_OBJ_ask_owning_part(made, &part), 0);
        EXPECT_EQ(part, first);
    }
    EXPECT_EQ(UF_ASSEM_ask_work_part(), second);
}

TEST_F(OldBlockLocation, AFailingUpgradeRestoresTheWorkPart)
{
    const auto old = makeOldBlockPlaces("F", {{"A3", 1, 2}});
    const tag_t second = story.newPart("second.prt");
    nxhost::failCall("UF_UDOBJ_create_udo", UF_err_unknown_tag, 2);
    EXPECT_THROW(old->checkAndUpgrade(), UgException);
    EXPECT_EQ(UF_ASSEM_ask_work_part(), second);
    EXPECT_EQ(old->GetSizeNames(), Texts{"A3"});
}

TEST_F(OldBlockLocation, ListsItsSizes)
{
    makeOldBlockPlaces("F1", {{"A3", 410, 10.5}, {"A4", -1, 2}})->InfoObject();
    EXPECT_EQ(nxhost::takeInfoWindow(), "Block locations for format F1\n"
                                        "  A3: 410,10.5\n"
                                        "  A4: -1,2\n");
}
