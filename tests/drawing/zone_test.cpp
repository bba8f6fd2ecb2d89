#include "drawing/zone.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

TEST(ZoneLabel, LettersLeaveOutIAndNothingElse)
{
    struct Row {
        int index;
        const char *label;
    };
    for (const Row &row : {Row{0, "A"}, {7, "H"}, {8, "J"}, {13, "O"}, {14, "P"}, {24, "Z"}}) {
        EXPECT_EQ(zoneLabel(1, row.index), row.label) << row.index;
    }
}

TEST(ZoneLabel, FarOffTheSheetIsANumberWhereNoCharacterHasTheCode)
{
    EXPECT_EQ(zoneLabel(1, 60), "~"); // 'A' + 60 + 1: by the rule, there is no upper bound
    EXPECT_EQ(zoneLabel(1, 61), "62");
    EXPECT_EQ(zoneLabel(1, 190), "191"); // would be a zero byte
    EXPECT_EQ(zoneLabel(1, -1), "@");
    EXPECT_EQ(zoneLabel(1, -40), "-39");
}

TEST(ZoneLabel, AnyTypeButOneCountsFromOne)
{
    EXPECT_EQ(zoneLabel(0, 0), "1");
    EXPECT_EQ(zoneLabel(2, 8), "9");
    EXPECT_EQ(zoneLabel(-1, 11), "12");
}

TEST(ZoneLength, TheLengthWinsOverTheNumber)
{
    EXPECT_EQ(zoneLength(50, 100, 420), 50); // not 4.2
    EXPECT_EQ(zoneLength(0, 8, 420), 52.5);
    EXPECT_EQ(zoneLength(0, 0, 420), 0);
}

TEST(ZoneIndex, IsTheDistanceInZonesTowardsZero)
{
    EXPECT_EQ(zoneIndex(100, 50), 2); // exactly two zones: the third one
    EXPECT_EQ(zoneIndex(99.9, 50), 1);
    EXPECT_EQ(zoneIndex(-49.9, 50), 0); // the first zone reaches as far to the other side
    EXPECT_EQ(zoneIndex(-50, 50), -1);
}

TEST(ZoneIndex, OfADistanceThatIsNotFiniteIsRefused)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    for (const double distance : {nan, infinite, -infinite})
        EXPECT_THROW(zoneIndex(distance, 50), std::runtime_error) << distance;
    EXPECT_THROW(zoneIndex(1.0, nan), std::runtime_error);
    EXPECT_EQ(zoneIndex(1e300, 1e-300), 1000000000);
}
