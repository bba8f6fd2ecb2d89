// Formats and blocks through the interface.
#include "interface_story.h"

#include "definitions/definition_file_manager.h"

namespace {

class Formats : public InterfaceStory {};

TEST_F(Formats, AFormatIsPlacedOnceAndAnswersItsNames)
{
    addFormat();
    EXPECT_EQ(failure(TRV_FMT_add_format(sheet, "F", "A4")), "Format already exists on drawing");
    EXPECT_EQ(failure(TRV_FMT_add_format(sheet, "NOSUCH", "A4")),
              "Format already exists on drawing");
    char format[TRV_FMT_MAX_ID_BUFSIZE], size[TRV_FMT_MAX_ID_BUFSIZE];
    ASSERT_EQ(TRV_FMT_ask_format(sheet, format, size), 0);
    EXPECT_STREQ(format, "F");
    EXPECT_STREQ(size, "A3");
    EXPECT_EQ(blocks(), (Texts{"TITLE"}));
}

TEST_F(Formats, UnknownIdentifiersAreNamed)
{
    EXPECT_EQ(failure(TRV_FMT_add_format(sheet, "G", "A3")), "No format with ID G");
    EXPECT_EQ(failure(TRV_FMT_add_format(sheet, "F", "A9")), "No size with ID A9");
    EXPECT_EQ(failure(TRV_FMT_add_format(sheet, nullptr, "A3")), "No format with ID ");
    EXPECT_EQ(failure(TRV_FMT_add_block(sheet, "NOTE")), "No format found on drawing");
    addFormat();
    EXPECT_EQ(failure(TRV_FMT_add_block(sheet, "GONE")), "No block with ID GONE");
    EXPECT_EQ(failure(TRV_FMT_add_block(sheet, "title")), "No block with ID title");
    TRV_FMT_value_list_t list{0, nullptr};
    EXPECT_EQ(failure(TRV_FMT_ask_field_value(sheet, "GONE", "NAME", &list)),
              "No block with ID GONE on format.");
    EXPECT_EQ(failure(TRV_FMT_ask_field_value(sheet, "TITLE", "NAM", &list)),
              "No field with ID NAM on block.");
    EXPECT_EQ(failure(TRV_FMT_add_entry(sheet, "TITLE", "rev")), "No table with ID rev on block.");
    TRV_FMT_free_value(&list); // never dangling
}

TEST_F(Formats, BuffersAreLeftAloneWithoutAFormat)
{
    char format[TRV_FMT_MAX_ID_BUFSIZE] = "before", size[TRV_FMT_MAX_ID_BUFSIZE] = "before";
    EXPECT_EQ(TRV_FMT_ask_format(sheet, format, size), 0);
    EXPECT_STREQ(format, "before");
    EXPECT_STREQ(size, "before");
}

TEST_F(Formats, ADeletedFormatTakesItsTreeAndAnotherMayCome)
{
    const std::string before = nxhost::listPart(story.part());
    addFormat();
    ASSERT_EQ(TRV_FMT_delete_format(sheet), 0);
    // What stays is the sheet with the size that the format gave it.
    EXPECT_EQ(nxhost::countObjects(story.part()), 1u);
    EXPECT_EQ(TRV_FMT_delete_format(sheet), 0);
    addFormat();
    EXPECT_EQ(blocks(), (Texts{"TITLE"}));
}

TEST_F(Formats, DuplicateBlocksStandSideBySideAndTheFirstIsDeleted)
{
    addFormat();
    ASSERT_EQ(TRV_FMT_add_block(sheet, "NOTE"), 0);
    ASSERT_EQ(TRV_FMT_add_block(sheet, "NOTE"), 0);
    const double there[] = {70.0, 80.0};
    ASSERT_EQ(QEL_FMT_move_block(sheet, "NOTE", there), 0); // the first
    EXPECT_EQ(blocks(), (Texts{"TITLE", "NOTE", "NOTE"}));
    ASSERT_EQ(TRV_FMT_delete_block(sheet, "NOTE"), 0);
    EXPECT_EQ(blocks(), (Texts{"TITLE", "NOTE"}));
    EXPECT_EQ(nxhost::listSheet(sheet).find("(70, 80"), std::string::npos); // the moved one is gone
}

TEST_F(Formats, UnknownBlocksAreMovedAndDeletedWithoutChange)
{
    addFormat();
    const double there[] = {70.0, 80.0};
    EXPECT_EQ(story.changesIn(story.part(),
                              [&] {
                                  EXPECT_EQ(TRV_FMT_delete_block(sheet, "GONE"), 0);
                                  EXPECT_EQ(QEL_FMT_move_block(sheet, "GONE", there), 0);
                              }),
              "");
}

// NOTE is gone from the definitions; TITLE has lost a field and has got another one.
TEST_F(Formats, AnUpdatePassesOverABlockThatIsGoneAndUpdatesTheOthers)
{
    addFormat();
    ASSERT_EQ(TRV_FMT_add_block(sheet, "NOTE"), 0);
    TrDefinitionFileManager::UnloadDefinitionFiles();
    boost::filesystem::remove(story.definitionsFolder() + "/f.prt");
    writeDefinitionPart(story, "f.prt", [] {
        TrFormatDefV1 format = makeFormat("F", {"A3"});
        format.SetRequiredBlockIds({"TITLE"});
        TrBlockDefV1 title = makeBlock("TITLE");
        title.AddFieldDefinition(makeTextField("NAME", 0.0));
        title.AddFieldDefinition(makeTextField("ADDED", 40.0));
    });
    TrDefinitionFileManager::LoadDefinitionFiles();
    ASSERT_EQ(TRV_FMT_update(sheet), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(blocks(), (Texts{"TITLE", "NOTE"}));
    TRV_FMT_value_list_t list{0, nullptr};
    EXPECT_EQ(TRV_FMT_ask_field_value(sheet, "TITLE", "ADDED", &list), 0)
        << TRV_FMT_ask_last_error();
    TRV_FMT_free_value(&list);
    EXPECT_EQ(failure(TRV_FMT_ask_field_value(sheet, "TITLE", "LANG", &list)),
              "No field with ID LANG on block.");
}

} // namespace
