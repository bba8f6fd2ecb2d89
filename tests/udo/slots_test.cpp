// Slots: a record spoken to by name, compared and copied as a table.
#include "probe.h"

#include "tests/support/story.h"

#include <cmath>
#include <limits>

using namespace LumUg;
using Texts = std::vector<std::string>;

namespace {

constexpr IntSlot kCount{0, "Count"};
constexpr IntSlot kEditable{1, "Editable", 1};
constexpr DoubleSlot kX{0, "X"};
constexpr DoubleSlot kY{1, "Y"};
constexpr DoubleFamily kSizeX{2, 2, "SizeX"};
constexpr DoubleFamily kSizeY{3, 2, "SizeY"};
constexpr StringSlot kId{0, "Id"};
constexpr StringSlot kName{1, "Name"};
constexpr StringTail kLines{2, "Lines"};
constexpr AttributeSlot kCategory{"CATEGORY", "Category"};
constexpr std::tuple kLayout{kId, kName, kLines, kX, kY, kCount, kEditable, kCategory};

static_assert(isDense(kLayout));
static_assert(isDense(std::tuple{}));
static_assert(!isDense(std::tuple{IntSlot{1, "gap"}}));
static_assert(!isDense(std::tuple{IntSlot{0, "a"}, IntSlot{0, "twice"}}));
static_assert(!isDense(std::tuple{DoubleSlot{0, "a"}, DoubleSlot{2, "gap"}}));
static_assert(!isDense(std::tuple{StringSlot{0, "a"}, StringTail{2, "gap"}}));
static_assert(isDense(std::tuple{StringSlot{0, "a"}, IntSlot{0, "another array"}}));

Probe filled()
{
    Probe probe;
    probe.set(kId, "F");
    probe.set(kName, "name");
    probe.set(kLines, {"one", "two"});
    probe.set(kX, 1.5);
    probe.set(kY, 2.5);
    probe.set(kCount, 7);
    probe.set(kEditable, 0);
    probe.set(kCategory, "TITLE");
    return probe;
}

} // namespace

TEST(Slots, ReadAndWriteTheirPlaceInTheArrays)
{
    Story story;
    story.newPart();
    const Probe probe = filled();
    EXPECT_EQ(probe.GetStrings(), (Texts{"F", "name", "one", "two"}));
    EXPECT_EQ(probe.GetDoubles(), (std::vector<double>{1.5, 2.5}));
    EXPECT_EQ(probe.GetInts(), (std::vector<int>{7, 0}));
    EXPECT_EQ(probe.get(kId), "F");
    EXPECT_EQ(probe.get(kY), 2.5);
    EXPECT_EQ(probe.get(kCount), 7);
    EXPECT_EQ(probe.get(kLines), (Texts{"one", "two"}));
    EXPECT_EQ(probe.get(kCategory), "TITLE");
}

TEST(Slots, ThatAreNotStoredReadAsTheirDefault)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 3);
    EXPECT_EQ(probe.get(kEditable), 1);
    EXPECT_EQ(probe.get(kX), 0.0);
    EXPECT_EQ(probe.get(kName), "");
    EXPECT_EQ(probe.get(kLines), Texts{});
    EXPECT_EQ(probe.get(kCategory), "");
    EXPECT_FALSE(probe.has(kCategory));
    EXPECT_EQ(Probe().get(kLines), Texts{}); // also without an object
    EXPECT_EQ(Probe().get(kCategory), "");
}

TEST(Slots, OfAFamilyStandAtTheirStride)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    probe.set(kSizeX, 0, 10);
    probe.set(kSizeY, 0, 20);
    probe.set(kSizeX, 1, 30);
    probe.set(kSizeY, 1, 40);
    EXPECT_EQ(probe.GetDoubles(), (std::vector<double>{1.5, 2.5, 10, 20, 30, 40}));
    EXPECT_EQ(probe.get(kSizeX, 1), 30);
    EXPECT_EQ(probe.get(kSizeY, 1), 40);
    EXPECT_EQ(probe.get(kSizeY, 2), 0.0);
}

TEST(Slots, AnAttributeIsAddedOnceThenChanged)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    probe.set(kCategory, "");
    EXPECT_TRUE(probe.has(kCategory));
    EXPECT_EQ(probe.get(kCategory), "");
    probe.set(kCategory, "OTHER");
    EXPECT_EQ(probe.GetUdoObject()->askStringAttributeTitles(), Texts{"CATEGORY"});
    EXPECT_EQ(probe.get(kCategory), "OTHER");
}

TEST(StringTails, GrowByOneAppendedRunAndOneWrite)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    nxhost::clearCallCounts();
    probe.set(kLines, {"a", "b", "c", "d"});
    EXPECT_EQ(nxhost::callCount("UgUDO::addStrings"), 1u);
    EXPECT_EQ(nxhost::callCount("UgUDO::setStrings"), 1u);
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_delete_strings"), 0u);
    EXPECT_EQ(probe.GetStrings(), (Texts{"F", "name", "a", "b", "c", "d"}));
}

TEST(StringTails, ShrinkToExactlyTheirLines)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    probe.set(kLines, {"only"});
    EXPECT_EQ(probe.GetStrings(), (Texts{"F", "name", "only"}));
    probe.set(kLines, {});
    EXPECT_EQ(probe.GetStrings(), (Texts{"F", "name"}));
    EXPECT_EQ(probe.get(kLines), Texts{});
}

TEST(StringTails, OfTheSameLengthAreOneWrite)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    nxhost::clearCallCounts();
    probe.set(kLines, {"x", "y"});
    EXPECT_EQ(nxhost::callCount("UgUDO::setStrings"), 1u);
    EXPECT_EQ(nxhost::callCount("UgUDO::addStrings"), 0u);
    EXPECT_EQ(probe.GetStrings(), (Texts{"F", "name", "x", "y"}));
}

TEST(StringTails, OnAnEmptyRecordFillTheStringsBeforeWithEmptyTexts)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.set(kLines, {"one"});
    EXPECT_EQ(probe.GetStrings(), (Texts{"", "", "one"}));
    Probe bare;
    bare.set(kLines, {});
    EXPECT_EQ(bare.GetStrings(), (Texts{"", ""}));
    Probe whole; // a tail that begins at the first string
    whole.set(StringTail{0, "All"}, {"a", "b"});
    whole.set(StringTail{0, "All"}, {});
    EXPECT_EQ(whole.GetStrings(), Texts{});
}

TEST(StringTails, AFailureWhileShrinkingLosesNothing)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    nxhost::failCall("UgUDO::addStrings", 1105091);
    EXPECT_EQ(codeThrownBy([&] { probe.set(kLines, {"only"}); }), 1105091);
    EXPECT_EQ(probe.GetStrings(), (Texts{"F", "name", "one", "two"}));
}

TEST(SlotTables, CompareInTheirOrderAndOnlyWhatTheyName)
{
    Story story;
    story.newPart();
    const Probe a = filled();
    Probe b = filled();
    EXPECT_TRUE(a.sameSlots(b, kLayout));
    b.set(kCount, 8);
    EXPECT_FALSE(a.sameSlots(b, kLayout));
    EXPECT_TRUE(a.sameSlots(b, std::tuple{kId, kName, kLines, kX, kY}));
    b.set(kCount, 7);
    b.set(kLines, {"one", "two", "three"});
    EXPECT_FALSE(a.sameSlots(b, kLayout));
    b.set(kLines, {"one", "two"});
    b.set(kCategory, "");
    EXPECT_FALSE(a.sameSlots(b, kLayout));
}

TEST(SlotTables, CompareDoublesExactlyAndNaNWithNothing)
{
    Story story;
    story.newPart();
    Probe a = filled(), b = filled();
    b.set(kX, std::nextafter(1.5, 2.0));
    EXPECT_FALSE(a.sameSlots(b, std::tuple{kX}));
    a.set(kX, std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(a.sameSlots(a, std::tuple{kX}));
    EXPECT_TRUE(a.sameSlots(a, std::tuple{kY}));
}

TEST(SlotTables, AMissingIntEqualsAStoredDefault)
{
    Story story;
    story.newPart();
    Probe a, b;
    a.SetInt(0, 7);
    b.SetInt(0, 7);
    b.SetInt(1, 1);
    EXPECT_TRUE(a.sameSlots(b, std::tuple{kCount, kEditable}));
}

TEST(SlotTables, AComparisonReadsEachRecordOnce)
{
    Story story;
    story.newPart();
    const Probe a = filled(), b = filled();
    nxhost::clearCallCounts();
    a.sameSlots(b, std::tuple{kId, kName, kLines, kX, kY, kCount, kEditable});
    EXPECT_EQ(nxhost::callCount("UF_UDOBJ_ask_udo_data"), 2u);
}

TEST(SlotTables, CopyingMakesTheRecordAndWritesEachArrayOnce)
{
    Story story;
    story.newPart();
    const Probe source = filled();
    Probe copy;
    nxhost::clearCallCounts();
    copy.copySlots(source, kLayout);
    EXPECT_EQ(nxhost::callCount("UgUDO::addInts"), 1u);
    EXPECT_EQ(nxhost::callCount("UgUDO::addDoubles"), 1u);
    EXPECT_EQ(nxhost::callCount("UgUDO::addStrings"), 1u);
    EXPECT_EQ(nxhost::callCount("UgUDO::setInts"), 0u);
    EXPECT_TRUE(copy.sameSlots(source, kLayout));
    EXPECT_NE(copy.tag(), source.tag());
    EXPECT_EQ(copy.GetStrings(), source.GetStrings());
}

TEST(SlotTables, CopyingOverALongerTextLeavesNothingOfIt)
{
    Story story;
    story.newPart();
    const Probe source = filled();
    Probe copy = filled();
    copy.set(kLines, {"1", "2", "3", "4"});
    copy.set(kX, 99);
    copy.copySlots(source, kLayout);
    EXPECT_EQ(copy.GetStrings(), source.GetStrings());
    EXPECT_EQ(copy.GetDoubles(), source.GetDoubles());
}

TEST(SlotTables, CopyingLeavesSlotsThatAreNotNamed)
{
    Story story;
    story.newPart();
    const Probe source = filled();
    Probe copy;
    copy.SetInt(4, 44);
    copy.SetDouble(5, 5.5);
    copy.SetString(6, "six");
    copy.copySlots(source, std::tuple{kName, kY, kEditable});
    EXPECT_EQ(copy.GetInts(), (std::vector<int>{0, 0, 2, 3, 44}));
    EXPECT_EQ(copy.GetDoubles(), (std::vector<double>{0, 2.5, 2, 3, 4, 5.5}));
    EXPECT_EQ(copy.GetStrings(), (Texts{"", "name", "", "", "", "", "six"}));
}

// As if each had been written by its setter, in that order.
TEST(SlotTables, CopyingOutOfOrderFillsLikeTheSetters)
{
    Story story;
    story.newPart();
    Probe source;
    for (unsigned i = 0; i < 5; ++i) source.SetInt(i, 10 * (static_cast<int>(i) + 1));
    constexpr IntSlot last{4, "Last"}, second{1, "Second"};
    Probe copy, set;
    copy.copySlots(source, std::tuple{last, second});
    set.set(last, 50);
    set.set(second, 20);
    EXPECT_EQ(copy.GetInts(), (std::vector<int>{0, 20, 2, 3, 50}));
    EXPECT_EQ(copy.GetInts(), set.GetInts());
}

TEST(SlotTables, CopyingTheSameValuesChangesNothing)
{
    Story story;
    story.newPart();
    Probe source = filled(), copy = filled();
    source.set(kX, std::numeric_limits<double>::quiet_NaN());
    copy.set(kX, std::numeric_limits<double>::quiet_NaN());
    constexpr std::tuple arrays{kId, kName, kLines, kX, kY, kCount, kEditable};
    EXPECT_TRUE(story.changesDuring([&] { copy.copySlots(source, arrays); }).empty());
    copy.set(kY, 0.0);
    source.set(kY, -0.0);
    copy.copySlots(source, arrays);
    EXPECT_TRUE(std::signbit(copy.get(kY)));
}

TEST(Records, OfAnEmptyViewAreEmpty)
{
    const Probe nothing;
    const Record record(nothing);
    EXPECT_TRUE(record.ints().empty());
    EXPECT_TRUE(record.doubles().empty());
    EXPECT_TRUE(record.strings().empty());
    EXPECT_EQ(record.get(kEditable), 1);
    EXPECT_EQ(record.get(kLines), Texts{});
    EXPECT_EQ(record.get(kCategory), "");
}

TEST(Records, KeepWhatIsPutUntilTheyAreWritten)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    Record record(probe);
    record.put(kCount, 70);
    record.put(kId, "G");
    record.put(kCategory, "A");
    record.put(kCategory, "B");
    EXPECT_EQ(record.get(kCount), 70);
    EXPECT_EQ(record.get(kCategory), "B");
    EXPECT_EQ(probe.get(kCount), 7);
    EXPECT_EQ(probe.get(kCategory), "TITLE");
    record.write(probe);
    EXPECT_EQ(probe.get(kCount), 70);
    EXPECT_EQ(probe.get(kId), "G");
    EXPECT_EQ(probe.get(kCategory), "B");
    EXPECT_EQ(probe.get(kName), "name");
}

TEST(Records, KeepWhatWasStoredBesideThem)
{
    Story story;
    story.newPart();
    Probe probe = filled();
    Record record(probe);
    probe.SetInt(3, 33); // after the snapshot: 7, 0, 0, 33
    record.put(kCount, 70);
    record.write(probe);
    EXPECT_EQ(probe.GetInts(), (std::vector<int>{70, 0, 0, 33}));
}
