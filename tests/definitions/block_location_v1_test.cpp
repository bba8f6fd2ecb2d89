// The first generation of block locations: one point for each size, and how it is upgraded.
#include "definitions/block_location_v1.h"

#include "foundation/log.h"
#include "tests/definitions/on_a_sheet.h"
#include "tests/definitions/slot_walk.h"

#include "uf_obj.h"

#include <limits>

using namespace QelFmt;

namespace {

using Texts = std::vector<std::string>;

class OldBlockLocation : public OnASheet {};

} // namespace

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
