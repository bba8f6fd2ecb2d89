// Attributes: one store behind the C and the C++ calls, for objects and parts.
#include "host_fixture.h"

#include "ug_part.hxx"
#include "ug_typed.hxx"

using namespace host_test;

namespace {

class Attr : public HostTest {};

int typeOfAttribute(tag_t object, std::string title, int asked = UF_ATTR_any)
{
    int type = -1;
    EXPECT_EQ(UF_ATTR_find_attribute(object, asked, title.data(), &type), 0);
    return type;
}

int countOf(tag_t object)
{
    int count = -1;
    EXPECT_EQ(UF_ATTR_count_attributes(object, UF_ATTR_string, &count), 0);
    return count;
}

} // namespace

TEST_F(Attr, AssigningSetsOrOverwrites)
{
    const tag_t point = newPoint();
    ASSERT_EQ(assign(point, "VALUE0", "one"), 0);
    ASSERT_EQ(assign(point, "VALUE0", "two"), 0);
    EXPECT_EQ(attributeOf(point, "VALUE0"), "two");
    EXPECT_EQ(countOf(point), 1);
}

TEST_F(Attr, AnAbsentOneReadsAsTypeZeroWithoutAnError)
{
    const tag_t point = newPoint();
    char title[] = "NONE";
    UF_ATTR_value_t value{};
    value.type = 99;
    EXPECT_EQ(UF_ATTR_read_value(point, title, UF_ATTR_string, &value), 0);
    EXPECT_EQ(value.type, 0);
    EXPECT_EQ(typeOfAttribute(point, "NONE"), 0);
}

TEST_F(Attr, AnEmptyValueIsAValue)
{
    const tag_t point = newPoint();
    ASSERT_EQ(assign(point, "EMPTY", ""), 0);
    EXPECT_EQ(attributeOf(point, "EMPTY"), "");
    EXPECT_EQ(typeOfAttribute(point, "EMPTY"), UF_ATTR_string);
}

TEST_F(Attr, TitlesAreComparedExactly)
{
    const tag_t point = newPoint();
    ASSERT_EQ(assign(point, "Title", "mixed"), 0);
    EXPECT_EQ(attributeOf(point, "TITLE"), "(none)");
    ASSERT_EQ(assign(point, "TITLE", "upper"), 0);
    EXPECT_EQ(attributeOf(point, "Title"), "mixed");
}

TEST_F(Attr, AStringGoesIntoTheCallersBufferWhenThereIsOne)
{
    const tag_t point = newPoint();
    ASSERT_EQ(assign(point, "LONG", std::string(200, 'v')), 0);
    char buffer[UF_ATTR_MAX_STRING_LEN + 1];
    char title[] = "LONG";
    UF_ATTR_value_t value{};
    value.value.string = buffer;
    ASSERT_EQ(UF_ATTR_read_value(point, title, UF_ATTR_any, &value), 0);
    EXPECT_EQ(value.value.string, buffer);
    EXPECT_EQ(std::string(buffer), std::string(132, 'v')) << "cut to the buffer";
    EXPECT_EQ(attributeOf(point, "LONG").size(), 200u) << "stored whole";
}

TEST_F(Attr, LimitsHoldOnlyWhenTheyAreAskedFor)
{
    const tag_t point = newPoint();
    EXPECT_EQ(assign(point, std::string(51, 't'), "v"), 0);
    nxhost::setStrictLimits(true);
    EXPECT_EQ(assign(point, std::string(51, 'u'), "v"), UF_err_bad_parameter_number_2);
    EXPECT_EQ(assign(point, "t", std::string(133, 'v')), UF_err_bad_parameter_number_3);
    EXPECT_EQ(assign(point, std::string(50, 'u'), std::string(132, 'v')), 0);
}

TEST_F(Attr, OnlyStringsAreKept)
{
    const tag_t point = newPoint();
    char title[] = "N";
    UF_ATTR_value_t value{};
    value.type = UF_ATTR_integer;
    value.value.integer = 5;
    EXPECT_EQ(UF_ATTR_assign(point, title, value), UF_err_bad_parameter_number_3);
    ASSERT_EQ(assign(point, "S", "x"), 0);
    EXPECT_EQ(typeOfAttribute(point, "S", UF_ATTR_integer), 0);
}

TEST_F(Attr, DeletingNeedsAnAttribute)
{
    const tag_t point = newPoint();
    ASSERT_EQ(assign(point, "A", "1"), 0);
    ASSERT_EQ(assign(point, "B", "2"), 0);
    char title[] = "A";
    EXPECT_EQ(UF_ATTR_delete(point, UF_ATTR_string, title), 0);
    EXPECT_EQ(UF_ATTR_delete(point, UF_ATTR_string, title), UF_err_attribute_missing);
    EXPECT_EQ(countOf(point), 1);
    EXPECT_EQ(UF_ATTR_delete_all(point, UF_ATTR_any), 0);
    EXPECT_EQ(countOf(point), 0);
}

TEST_F(Attr, AttributesAreCycledInOrderOfCreation)
{
    const tag_t point = newPoint();
    for (const char *title : {"C", "A", "B"}) ASSERT_EQ(assign(point, title, title), 0);
    ASSERT_EQ(assign(point, "A", "again"), 0);
    std::string seen;
    int index = 0;
    do {
        char title[51];
        UF_ATTR_value_t value{};
        ASSERT_EQ(UF_ATTR_cycle(point, &index, UF_ATTR_any, title, &value), 0);
        if (index == 0) break;
        seen += std::string(title) + "=" + value.value.string + " ";
        UF_free(value.value.string);
    } while (true);
    EXPECT_EQ(seen, "C=C A=again B=B ");
}

// More than are looked through: the order and every value stay, whatever is set and deleted.
TEST_F(Attr, ManyAreKeptInTheOrderInWhichTheyWereSet)
{
    const tag_t point = newPoint();
    const auto title = [](int i) { return "T" + std::to_string(i); };
    for (int i = 0; i < 200; ++i) ASSERT_EQ(assign(point, title(i), "first"), 0);
    for (int i = 0; i < 200; i += 3) { // the last one too
        std::string deleted = title(199 - i);
        ASSERT_EQ(UF_ATTR_delete(point, UF_ATTR_string, deleted.data()), 0);
        ASSERT_EQ(assign(point, title((199 - i + 1) % 200), "second"), 0);
    }
    // 199, 196, ... 1 were deleted; 0 and each after a deleted one was set again.
    std::vector<std::string> expected;
    for (int i = 0; i < 200; ++i)
        if (i % 3 != 1)
            expected.push_back(title(i) + (i % 3 == 2 || i == 0 ? "=second" : "=first"));
    std::vector<std::string> seen;
    for (int index = 0;;) {
        char name[51];
        UF_ATTR_value_t value{};
        ASSERT_EQ(UF_ATTR_cycle(point, &index, UF_ATTR_any, name, &value), 0);
        if (index == 0) break;
        seen.push_back(std::string(name) + "=" + value.value.string);
        UF_free(value.value.string);
    }
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(typeOfAttribute(point, "T1"), 0);
    EXPECT_EQ(attributeOf(point, "T198"), "first");
}

TEST_F(Attr, APartTagAddressesThePartsOwnAttributes)
{
    ASSERT_EQ(assign(part, "DRAWING_NO", "4711"), 0);
    EXPECT_EQ(attributeOf(part, "DRAWING_NO"), "4711");
    const auto *wrapper = dynamic_cast<UgPart *>(UgObject::find(part));
    ASSERT_NE(wrapper, nullptr);
    EXPECT_EQ(wrapper->getStringAttributeValue("DRAWING_NO"), "4711");
}

TEST_F(Attr, TheCxxCallsShareTheStore)
{
    const tag_t point = newPoint();
    auto *wrapper = dynamic_cast<UgTypedObject *>(UgObject::find(point));
    ASSERT_NE(wrapper, nullptr);
    wrapper->addStringAttribute("SHARED", "from C++");
    EXPECT_EQ(attributeOf(point, "SHARED"), "from C++");
    ASSERT_EQ(assign(point, "SHARED", "from C"), 0);
    EXPECT_EQ(wrapper->getStringAttributeValue("SHARED"), "from C");
}

TEST_F(Attr, DeadObjectsHaveNone)
{
    const tag_t point = newPoint();
    ASSERT_EQ(UF_OBJ_delete_object(point), 0);
    EXPECT_EQ(assign(point, "A", "1"), UF_err_unknown_tag);
    EXPECT_EQ(assign(newPoint(), "", "1"), UF_err_bad_parameter_number_2);
}
