// Places of blocks: the corner they are measured from, the sheet they are for.
#include "definitions/locations.h"

#include "tests/definitions/on_a_sheet.h"
#include "tests/definitions/slot_walk.h"

#include <limits>

using namespace QelFmt;

namespace {

using Texts = std::vector<std::string>;

class Location : public OnASheet {};
class SizeLocation : public OnASheet {};
class BlockLocation : public OnASheet {};

Texts names(const std::vector<LocationInfoType> &places)
{
    Texts all;
    for (const LocationInfoType &place : places) all.push_back(place.name);
    return all;
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
    ASSERT_TRUE(boost::dynamic_pointer_cast<LocationV1>(location));
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
