// Sorted arrays by number and pages of tags, as the model keeps its objects.
#include "model/by_number.h"
#include "model/tag_table.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

using Numbers = host::ByNumber<int>;

namespace {

std::vector<std::pair<std::uint64_t, int>> walked(const Numbers &numbers)
{
    return {numbers.begin(), numbers.end()};
}

std::vector<std::pair<std::uint64_t, int>> walkedBack(const Numbers &numbers)
{
    return {numbers.rbegin(), numbers.rend()};
}

} // namespace

TEST(ByNumber, ValuesStandInTheOrderOfTheirNumbersHoweverTheyCame)
{
    Numbers numbers;
    for (const int number : {5, 9, 7, 1})
        numbers.set(static_cast<std::uint64_t>(number), 10 * number);
    numbers.set(7, 71); // in the place of 70
    using Pairs = std::vector<std::pair<std::uint64_t, int>>;
    EXPECT_EQ(walked(numbers), (Pairs{{1, 10}, {5, 50}, {7, 71}, {9, 90}}));
    EXPECT_EQ(walkedBack(numbers), (Pairs{{9, 90}, {7, 71}, {5, 50}, {1, 10}}));
    EXPECT_EQ(numbers.size(), 4u);
}

TEST(ByNumber, EmptiedPlacesAreSkippedAndFilledAgain)
{
    Numbers numbers;
    for (int i = 1; i <= 5; ++i) numbers.set(static_cast<std::uint64_t>(i), i);
    for (const std::uint64_t gone : {1u, 3u, 5u}) numbers.erase(gone);
    EXPECT_EQ(numbers.find(3), numbers.end());
    EXPECT_EQ(numbers.upper_bound(2)->first, 4u);
    EXPECT_EQ(numbers.lower_bound(5), numbers.end());
    EXPECT_THROW(numbers.at(1), std::out_of_range);
    numbers.set(3, 33);
    numbers.set(1, 11); // before all others
    using Pairs = std::vector<std::pair<std::uint64_t, int>>;
    EXPECT_EQ(walked(numbers), (Pairs{{1, 11}, {2, 2}, {3, 33}, {4, 4}}));
}

TEST(ByNumber, ErasingTheLastOneLeavesItEmpty)
{
    Numbers numbers;
    numbers.set(3, 1);
    numbers.erase(3);
    numbers.erase(3);
    EXPECT_TRUE(numbers.empty());
    EXPECT_EQ(numbers.begin(), numbers.end());
    numbers.set(2, 5); // below what was there
    EXPECT_EQ(numbers.at(2), 5);
}

TEST(ByNumber, AnyOrderOfChangesIsThatOfAMap)
{
    Numbers numbers;
    std::map<std::uint64_t, int> expected;
    std::mt19937 random(7);
    for (int step = 0; step < 20000; ++step) {
        const std::uint64_t number = random() % 400;
        if (random() % 3) {
            numbers.set(number, step + 1);
            expected[number] = step + 1;
        } else {
            numbers.erase(number);
            expected.erase(number);
        }
        ASSERT_EQ(numbers.size(), expected.size());
        const auto next = expected.upper_bound(number);
        const auto found = numbers.upper_bound(number);
        ASSERT_EQ(found == numbers.end(), next == expected.end());
        if (next != expected.end()) {
            ASSERT_EQ(found->first, next->first);
        }
        if (step % 500 == 0) {
            const std::vector<std::pair<std::uint64_t, int>> all(expected.begin(), expected.end());
            ASSERT_EQ(walked(numbers), all);
            const std::vector<std::pair<std::uint64_t, int>> back(expected.rbegin(),
                                                                  expected.rend());
            ASSERT_EQ(walkedBack(numbers), back);
        }
    }
}

TEST(TagTable, APageThatHasEmptiedStartsAnew)
{
    host::TagTable<std::string> table;
    table[20001] = "first";
    table[20400] = "other page";
    EXPECT_EQ(table.find(20002), nullptr);
    EXPECT_EQ(table.find(0xFFFFFFFF), nullptr);
    table.erase(20001);
    table.erase(20001);
    EXPECT_EQ(table.find(20001), nullptr);
    EXPECT_EQ(*table.find(20400), "other page");
    EXPECT_EQ(table[20001], ""); // made anew
}
