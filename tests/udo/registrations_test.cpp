// The library's persistent classes as parts know them.
#include "tests/support/story.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/symbol.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "drawing/format.h"
#include "foundation/qel_object.h"
#include "udo/class_names.h"
#include "udo/udo_class.h"

#include <typeinfo>

namespace {

struct Row {
    const char *class_name;
    const char *friendly_name;
    const std::type_info &wrapper;
    const char *constant;
};

// Class names are stored in parts: neither they nor their order may change.
const Row kClasses[] = {
    {"TRV_FORMAT_BLOCK_V1", "Drawing Format Block", typeid(TrBlockV1), QelFmt::kBlockV1Classname},
    {"KORVAN_FORMAT_BLOCK_V1", "ZEM Block", typeid(ZemBlockV1), QelFmt::kZemBlockV1Classname},
    {"KORVAN_FORMAT_BLOCK_DEF_V1", "Format Block Definition", typeid(TrBlockDefV1),
     QelFmt::kBlockDefV1Classname},
    {"KORVAN_FORMAT_BLOCK_LOC_V2", "Format Block Location", typeid(QelFmt::BlockLocationV2),
     QelFmt::kBlockLocationV2Classname},
    {"KORVAN_FORMAT_BLOCK_LOC_V1", "Format Block Location", typeid(QelFmt::TrBlockLocationV1),
     QelFmt::kBlockLocationV1Classname},
    {"KORVAN_FORMAT_LOCATION_V1", "Format Location", typeid(QelFmt::LocationV1),
     QelFmt::kLocationV1Classname},
    {"KORVAN_FORMAT_SIZE_LOC_V1", "Format Size Location", typeid(QelFmt::SizeLocationV1),
     QelFmt::kSizeLocationV1Classname},
    {"TRV_FORMAT_ENTRY_V1", "Drawing Format Entry", typeid(TrEntryV1), QelFmt::kEntryV1Classname},
    {"TRV_FORMAT_ENTRY_V2", "Drawing Format Entry", typeid(TrEntryV2), QelFmt::kEntryV2Classname},
    {"KORVAN_FORMAT_ENTRY_V1", "ZEM Entry", typeid(ZemEntryV1), QelFmt::kZemEntryV1Classname},
    {"TRV_FORMAT_FIELD_V1", "Drawing Format Field", typeid(TrFieldV1), QelFmt::kFieldV1Classname},
    {"KORVAN_FORMAT_FIELD_V1", "ZEM Field", typeid(ZemFieldV1), QelFmt::kZemFieldV1Classname},
    {"KORVAN_FORMAT_FIELD_DEF_V1", "Format Field Definition", typeid(TrFieldDefV1),
     QelFmt::kFieldDefV1Classname},
    {"TRV_FORMAT_FORMAT_V1", "Drawing Format", typeid(TrFormatV1), QelFmt::kFormatV1Classname},
    {"KORVAN_FORMAT_FORMAT_DEF_V1", "Drawing Format Definition", typeid(TrFormatDefV1),
     QelFmt::kFormatDefV1Classname},
    {"KORVAN_FORMAT_SIZE_V1", "Format Size Definition", typeid(TrFormatSizeV1),
     QelFmt::kFormatSizeV1Classname},
    {"QEL_FORMAT_SYMBOL_V1", "Drawing Format Symbol", typeid(QelFmt::SymbolV1),
     QelFmt::kSymbolV1Classname},
    {"TRV_FORMAT_TABLE_V1", "Drawing Format Table", typeid(TrTableV1), QelFmt::kTableV1Classname},
    {"KORVAN_FORMAT_TABLE_V1", "ZEM Table", typeid(ZemTableV1), QelFmt::kZemTableV1Classname},
    {"KORVAN_FORMAT_TABLE_DEF_V1", "Format Table Definition", typeid(TrTableDefV1),
     QelFmt::kTableDefV1Classname},
};

tag_t newUdo(const char *class_name)
{
    tag_t tag = NULL_TAG;
    UgException::throwOnFailure(
        UF_UDOBJ_create_udo(LumUg::UDOClass::GetClass(class_name)->GetClassId(), &tag));
    return tag;
}

} // namespace

TEST(Registrations, AreTwentyClassesInTheirOrder)
{
    ASSERT_EQ(std::size(kClasses), 20u);
    unsigned last = 0;
    for (const Row &row : kClasses) {
        SCOPED_TRACE(row.class_name);
        const LumUg::UDOClass *registered = LumUg::UDOClass::GetClass(row.class_name);
        ASSERT_NE(registered, nullptr);
        EXPECT_GT(registered->GetClassId(), last);
        last = registered->GetClassId();
        EXPECT_STREQ(row.constant, row.class_name);
    }
}

TEST(Registrations, ShowTheirFriendlyNames)
{
    for (const Row &row : kClasses) {
        char *name = nullptr, *friendly = nullptr;
        const unsigned id = LumUg::UDOClass::GetClass(row.class_name)->GetClassId();
        ASSERT_EQ(UF_UDOBJ_ask_class_data(id, &name, &friendly), 0);
        EXPECT_STREQ(name, row.class_name);
        EXPECT_STREQ(friendly, row.friendly_name);
        UF_free(name);
        UF_free(friendly);
    }
}

TEST(Registrations, TurnEachStoredObjectIntoItsOwnWrapper)
{
    Story story;
    story.newPart();
    for (const Row &row : kClasses) {
        SCOPED_TRACE(row.class_name);
        const tag_t tag = newUdo(row.class_name);
        const auto wrapper = LumUg::UDO::Create(tag);
        ASSERT_TRUE(wrapper);
        EXPECT_TRUE(typeid(*wrapper) == row.wrapper) << typeid(*wrapper).name();
        EXPECT_EQ(wrapper->GetUDOClass(), LumUg::UDOClass::GetClass(row.class_name));
        EXPECT_EQ(wrapper->tag(), tag);
    }
}

TEST(Registrations, GenerationsShareAFriendlyNameButNotAWrapper)
{
    Story story;
    story.newPart();
    const auto first = LumUg::UDO::Create(newUdo("TRV_FORMAT_ENTRY_V1"));
    const auto second = LumUg::UDO::Create(newUdo("TRV_FORMAT_ENTRY_V2"));
    EXPECT_TRUE(boost::dynamic_pointer_cast<TrEntryV1>(first));
    EXPECT_FALSE(boost::dynamic_pointer_cast<TrEntryV2>(first));
    EXPECT_TRUE(boost::dynamic_pointer_cast<TrEntryV2>(second));
}

TEST(Registrations, TheCommonObjectClassIsKnownToThePlatform)
{
    const std::unique_ptr<QelObject> made(
        dynamic_cast<QelObject *>(nxhost::createDerived("QelObject")));
    EXPECT_TRUE(made);
}
