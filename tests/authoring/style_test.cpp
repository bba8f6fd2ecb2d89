// Styles of the cell form.
#include "app/authoring/style.h"

#include <gtest/gtest.h>

using namespace app::authoring;

namespace {

Style ofSize(double size, int units)
{
    Style style = plainStyle(units);
    style.size = size;
    return style;
}

} // namespace

// The heights of ISO 3098: 1.8, 2.5, 3.5, 5, ... Nothing is smaller than the smallest.
TEST(Style, ALongValueTakesTheNextHeightBelowItsOwn)
{
    EXPECT_EQ(smallerSize(ofSize(5.0, 1)), 3.5);
    EXPECT_EQ(smallerSize(ofSize(3.5, 1)), 2.5);
    EXPECT_EQ(smallerSize(ofSize(3.0, 1)), 2.5);
    EXPECT_EQ(smallerSize(ofSize(1.8, 1)), 1.8);
    EXPECT_EQ(smallerSize(ofSize(0.12, 2)), 0.1);
}

// A style that is like a smaller one does not take over that one's smaller height.
TEST(Style, AStyleLikeAnotherHasASmallerHeightOfItsOwn)
{
    Style value = ofSize(2.5, 1);
    EXPECT_EQ(smallerSize(value), 1.8);
    Style title = value;
    title.size = 3.5;
    EXPECT_EQ(smallerSize(title), 2.5);
}
