#include "ug_udo.hxx"

#include "tests/host/drawing_host.h"

#include "uf_udobj.h"
#include "ug_point.hxx"

#include <cmath>
#include <cstring>
#include <functional>

namespace {

class Records : public DrawingHost {
protected:
    static UF_UDOBJ_class_t classId()
    {
        static const UF_UDOBJ_class_t id = [] {
            UF_UDOBJ_class_t made = 0;
            EXPECT_EQ(UF_UDOBJ_create_class("UDO_CPP_TEST", "record", &made), 0);
            return made;
        }();
        return id;
    }

    static UgUDO *addUdo()
    {
        tag_t tag = NULL_TAG;
        EXPECT_EQ(UF_UDOBJ_create_udo(classId(), &tag), 0);
        return dynamic_cast<UgUDO *>(UgObject::find(tag));
    }

    static int codeOf(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const UgException &failure) {
            return failure.askErrorCode();
        }
        return 0;
    }
};

using Texts = std::vector<std::string>;
using Links = std::vector<UgObject *>;

TEST_F(Records, TheClassIsKnownByItsId) { EXPECT_EQ(addUdo()->askClassId(), classId()); }

TEST_F(Records, ValuesAreAppendedAndReplacedInPlace)
{
    UgUDO *udo = addUdo();
    EXPECT_TRUE(udo->getInts().empty());
    udo->addInts({1, 2});
    udo->addInts({3});
    EXPECT_EQ(udo->getInts(), (std::vector{1, 2, 3}));
    udo->setInts({4, 5, 6});
    EXPECT_EQ(udo->getInts(), (std::vector{4, 5, 6}));
    udo->addDoubles({0.1});
    udo->setDoubles({0.2});
    EXPECT_EQ(udo->getDoubles(), std::vector{0.2});
    udo->addStrings({"a", ""});
    udo->setStrings({"", "b"});
    EXPECT_EQ(udo->getStrings(), (Texts{"", "b"}));
}

TEST_F(Records, LengthsAreasAndVolumesAreArraysOfTheirOwn)
{
    UgUDO *udo = addUdo();
    udo->addLengths({1.5});
    udo->addAreas({2.5, 3.5});
    udo->addVolumes({4.5});
    udo->setAreas({5.5, 6.5});
    EXPECT_EQ(udo->getLengths(), std::vector{1.5});
    EXPECT_EQ(udo->getAreas(), (std::vector{5.5, 6.5}));
    EXPECT_EQ(udo->getVolumes(), std::vector{4.5});
    EXPECT_TRUE(udo->getDoubles().empty());
}

TEST_F(Records, AnotherCountIsRefusedAndNothingChanges)
{
    UgUDO *udo = addUdo();
    udo->addInts({1, 2});
    udo->addStrings({"a"});
    EXPECT_EQ(codeOf([&] { udo->setInts({1}); }), UF_err_count_mismatch);
    EXPECT_EQ(codeOf([&] { udo->setInts({1, 2, 3}); }), UF_err_count_mismatch);
    EXPECT_EQ(codeOf([&] { udo->setStrings({}); }), UF_err_count_mismatch);
    EXPECT_EQ(codeOf([&] { udo->setDoubles({1.0}); }), UF_err_count_mismatch);
    EXPECT_EQ(udo->getInts(), (std::vector{1, 2}));
}

TEST_F(Records, BothInterfacesSeeTheSameValues)
{
    UgUDO *udo = addUdo();
    udo->addStrings({"one", "two"});
    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo->getTag(), &data), 0);
    EXPECT_EQ(data.class_id, classId());
    ASSERT_EQ(data.num_strings, 2u);
    EXPECT_STREQ(data.strings[1], "two");
    ASSERT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
}

TEST_F(Records, BitsOfDoublesAreKept)
{
    UgUDO *udo = addUdo();
    const double odd[] = {-0.0, std::nan("7"), 5e-324};
    udo->addDoubles({odd[0], odd[1], odd[2]});
    const std::vector<double> read = udo->getDoubles();
    EXPECT_EQ(std::memcmp(read.data(), odd, sizeof odd), 0);
}

TEST_F(Records, WritingTheSameValuesIsNoChange)
{
    UgUDO *udo = addUdo();
    udo->addDoubles({std::nan("")});
    udo->addInts({1});
    udo->addLinks(4, {nullptr});
    EXPECT_TRUE(changesDuring([&] {
                    udo->setDoubles(udo->getDoubles());
                    udo->setInts({1});
                    udo->setLinks(4, {nullptr});
                    udo->addStrings({});
                }).empty());
    EXPECT_FALSE(changesDuring([&] { udo->setInts({2}); }).empty());
}

// --- links ----------------------------------------------------------------------------------------

TEST_F(Records, LinksOfATypeAreReadInTheOrderOfAddingNullIncluded)
{
    UgUDO *udo = addUdo(), *a = addUdo(), *b = addUdo();
    udo->addLinks(2, {b, nullptr});
    udo->addLinks(1, {a});
    udo->addLinks(2, {a});
    EXPECT_EQ(udo->getLinks(2), (Links{b, nullptr, a}));
    EXPECT_EQ(udo->getLinks(1), Links{a});
    EXPECT_TRUE(udo->getLinks(3).empty());
}

TEST_F(Records, SettingLinksOfATypeReplacesTheirTargetsInPlace)
{
    UgUDO *udo = addUdo(), *a = addUdo(), *b = addUdo(), *c = addUdo();
    udo->addLinks(2, {a});
    udo->addLinks(4, {c});
    udo->addLinks(2, {b});
    udo->setLinks(2, {b, a});
    EXPECT_EQ(udo->getLinks(2), (Links{b, a}));
    EXPECT_EQ(udo->getLinks(4), Links{c});
    UF_UDOBJ_all_data_t data{};
    ASSERT_EQ(UF_UDOBJ_ask_udo_data(udo->getTag(), &data), 0);
    ASSERT_EQ(data.num_links, 3u);
    EXPECT_EQ(data.link_defs[0].assoc_ug_tag, b->getTag());
    EXPECT_EQ(data.link_defs[1].assoc_ug_tag, c->getTag());
    EXPECT_EQ(data.link_defs[2].assoc_ug_tag, a->getTag());
    UF_UDOBJ_free_udo_data(&data);
    EXPECT_EQ(codeOf([&] { udo->setLinks(2, {a}); }), UF_err_count_mismatch);
    EXPECT_EQ(codeOf([&] { udo->setLinks(2, {a, b, c}); }), UF_err_count_mismatch);
    EXPECT_EQ(udo->getLinks(2), (Links{b, a}));
}

TEST_F(Records, AReplacedTargetForgetsTheLinkTheNewOneLearnsIt)
{
    UgUDO *udo = addUdo(), *a = addUdo(), *b = addUdo();
    udo->addLinks(1, {a});
    udo->setLinks(1, {b});
    ASSERT_EQ(UF_OBJ_delete_object(a->getTag()), 0);
    EXPECT_TRUE(udo->isAlive());
    ASSERT_EQ(UF_OBJ_delete_object(b->getTag()), 0);
    EXPECT_FALSE(udo->isAlive());
}

TEST_F(Records, UnknownTypesDeadTargetsAndCyclesAreRefusedWhole)
{
    UgUDO *udo = addUdo(), *a = addUdo(), *dead = addUdo(), *other = addUdo();
    ASSERT_EQ(UF_OBJ_delete_object(dead->getTag()), 0);
    EXPECT_EQ(codeOf([&] { udo->addLinks(2, {a, dead}); }), UF_err_unknown_tag);
    EXPECT_TRUE(udo->getLinks(2).empty());
    EXPECT_NE(codeOf([&] { udo->addLinks(0, {a}); }), 0);
    EXPECT_NE(codeOf([&] { udo->addLinks(5, {a}); }), 0);
    EXPECT_NE(codeOf([&] { udo->getLinks(5); }), 0);
    a->addLinks(2, {udo});
    EXPECT_EQ(codeOf([&] { udo->addLinks(2, {other, a}); }), UF_err_link_cycle);
    EXPECT_TRUE(udo->getLinks(2).empty());
}

TEST_F(Records, OwnedObjectsAreReadInOrder)
{
    UgUDO *udo = addUdo();
    UgPoint *a = UgPoint::create(Point3(0, 0, 0)), *b = UgPoint::create(Point3(1, 0, 0));
    tag_t tags[] = {b->getTag(), a->getTag()};
    EXPECT_TRUE(udo->getOwnedObjects().empty());
    ASSERT_EQ(UF_UDOBJ_add_owning_links(udo->getTag(), 2, tags), 0);
    EXPECT_EQ(udo->getOwnedObjects(), (Links{b, a}));
}

// --- faults and death -----------------------------------------------------------------------------

TEST_F(Records, AFailingWriteLeavesEarlierOnes)
{
    UgUDO *udo = addUdo();
    nxhost::failCall("UgUDO::addInts", 1105011, 2);
    udo->addInts({1});
    EXPECT_EQ(codeOf([&] { udo->addInts({2}); }), 1105011);
    EXPECT_EQ(udo->getInts(), std::vector{1});
}

TEST_F(Records, ADeadRecordRaisesFromEveryMember)
{
    UgUDO *udo = addUdo();
    ASSERT_EQ(UF_OBJ_delete_object(udo->getTag()), 0);
    EXPECT_EQ(codeOf([&] { udo->getInts(); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { udo->addDoubles({1}); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { udo->getLinks(2); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { udo->getOwnedObjects(); }), UF_err_unknown_tag);
    EXPECT_EQ(codeOf([&] { udo->askClassId(); }), UF_err_unknown_tag);
}

} // namespace
