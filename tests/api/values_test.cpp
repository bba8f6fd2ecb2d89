// Values of fields and rows through the interface, saved and reopened.
#include "interface_story.h"

#include <limits>

namespace {

class Values : public InterfaceStory {
protected:
    void SetUp() override
    {
        InterfaceStory::SetUp();
        addFormat();
    }
    void addRows(int count)
    {
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(TRV_FMT_add_entry(sheet, "TITLE", "REV"), 0) << TRV_FMT_ask_last_error();
    }
    void setRow(int row, const char *field, std::initializer_list<const char *> lines)
    {
        ASSERT_EQ(TRV_FMT_set_table_value(sheet, "TITLE", "REV", row, field, CallersList(lines)), 0)
            << TRV_FMT_ask_last_error();
    }
    void reopen()
    {
        story.saveAndReopen();
        sheet = story.sheet(0);
    }
};

TEST_F(Values, LinesComeBackInOrderAfterReopening)
{
    ASSERT_EQ(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", CallersList{"one", "", "three"}), 0)
        << TRV_FMT_ask_last_error();
    EXPECT_EQ(value("LANG"), (Texts{"en"}));
    reopen();
    EXPECT_EQ(value("NAME"), (Texts{"one", "", "three"}));
    EXPECT_EQ(value("LANG"), (Texts{"en"}));
}

TEST_F(Values, AnEmptyListIsAnEmptyValue)
{
    ASSERT_EQ(TRV_FMT_set_field_value(sheet, "TITLE", "LANG", CallersList{}), 0);
    EXPECT_EQ(value("LANG"), (Texts{""}));
}

TEST_F(Values, TheCallersTextsMayGoAtOnce)
{
    {
        std::string mine = "mine";
        char *texts[] = {mine.data()};
        const TRV_FMT_value_list_t list{1, texts};
        ASSERT_EQ(TRV_FMT_set_field_value(sheet, "TITLE", "NAME", &list), 0);
        mine.assign(mine.size(), '#');
    }
    EXPECT_EQ(value("NAME"), (Texts{"mine"}));
}

TEST_F(Values, EditableIsExactlyOneOrZero)
{
    char editable = 9;
    ASSERT_EQ(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable), 0);
    EXPECT_EQ(editable, 1);
    ASSERT_EQ(QEL_FMT_set_field_editable(sheet, "TITLE", "NAME", 0), 0);
    ASSERT_EQ(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable), 0);
    EXPECT_EQ(editable, 0);
    ASSERT_EQ(QEL_FMT_set_field_editable(sheet, "TITLE", "NAME", 7), 0);
    reopen();
    ASSERT_EQ(QEL_FMT_get_field_editable(sheet, "TITLE", "NAME", &editable), 0);
    EXPECT_EQ(editable, 1);
}

TEST_F(Values, RowsKeepTheirValuesThroughReopening)
{
    EXPECT_EQ(rows(), 0);
    addRows(3);
    for (int row = 0; row < 3; ++row) setRow(row, "NO", {row == 0 ? "A" : row == 1 ? "B" : "C"});
    setRow(1, "TEXT", {"bore enlarged", "to 32 H7"});
    reopen();
    EXPECT_EQ(rows(), 3);
    EXPECT_EQ(rowValue(0, "NO"), (Texts{"A"}));
    EXPECT_EQ(rowValue(2, "NO"), (Texts{"C"}));
    EXPECT_EQ(rowValue(1, "TEXT"), (Texts{"bore enlarged", "to 32 H7"}));
    EXPECT_EQ(rowValue(2, "TEXT"), (Texts{""}));
}

TEST_F(Values, ADeletedRowIsGoneAndTheOthersCloseUp)
{
    addRows(3);
    for (int row = 0; row < 3; ++row) setRow(row, "NO", {row == 0 ? "A" : row == 1 ? "B" : "C"});
    ASSERT_EQ(TRV_FMT_delete_entry(sheet, "TITLE", "REV", 1), 0) << TRV_FMT_ask_last_error();
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(rowValue(1, "NO"), (Texts{"C"}));
    // Rows are 2.5 high with 1 of margin twice: 4.5. The table stands at (10, 10 + 50); row 1 at
    // y = 60 + 4.5; the note at the margin: (10 + 1, 64.5 + 1).
    const std::string listing = nxhost::listSheet(sheet);
    EXPECT_NE(listing.find("(11, 65.5, 0)"), std::string::npos) << listing;
}

TEST_F(Values, EntriesOutOfRangeAreRefusedAndNothingIsDeleted)
{
    const std::string text = "Wanted entry is greater then table has.";
    EXPECT_EQ(failure(TRV_FMT_delete_entry(sheet, "TITLE", "REV", 0)), text); // an empty table
    addRows(2);
    EXPECT_EQ(failure(TRV_FMT_delete_entry(sheet, "TITLE", "REV", 2)), text);
    EXPECT_EQ(failure(TRV_FMT_delete_entry(sheet, "TITLE", "REV", -1)), text);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(TRV_FMT_delete_entry(sheet, "TITLE", "REV", 1), 0);
}

TEST_F(Values, AMissingFieldOfARowEndsOnTableForValuesAndOnBlockForEditability)
{
    addRows(1);
    TRV_FMT_value_list_t list{0, nullptr};
    char editable = 0;
    EXPECT_EQ(failure(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", 0, "X", &list)),
              "No field with ID X on table.");
    EXPECT_EQ(failure(TRV_FMT_set_table_value(sheet, "TITLE", "REV", 0, "X", CallersList{"v"})),
              "No field with ID X on table.");
    EXPECT_EQ(failure(QEL_FMT_get_table_field_editable(sheet, "TITLE", "REV", 0, "X", &editable)),
              "No field with ID X on block.");
    EXPECT_EQ(failure(QEL_FMT_set_table_field_editable(sheet, "TITLE", "REV", 0, "X", 1)),
              "No field with ID X on block.");
}

TEST_F(Values, ARowsSymbolStandsWhereItWasPlaced)
{
    addRows(1);
    const double there[] = {200.0, 150.0, 99.0};
    ASSERT_EQ(TRV_FMT_place_symbol(sheet, "TITLE", "REV", 0, there), 0) << TRV_FMT_ask_last_error();
    EXPECT_NE(nxhost::listSheet(sheet).find("(200, 150, 0)"), std::string::npos)
        << nxhost::listSheet(sheet);
}

TEST_F(Values, ASymbolNeedsAPointOfFiniteNumbersAndLeavesNothingWithout)
{
    addRows(1);
    const std::string before = nxhost::listSheet(sheet);
    const double nowhere[] = {std::numeric_limits<double>::quiet_NaN(), 150.0, 0.0};
    EXPECT_EQ(failure(TRV_FMT_place_symbol(sheet, "TITLE", "REV", 0, nowhere)),
              "A symbol cannot be placed: give its X and Y as finite numbers");
    EXPECT_EQ(nxhost::listSheet(sheet), before);
}

TEST_F(Values, ARowThatCannotBeMadeIsNotCounted)
{
    addRows(1);
    // The row is linked, and its first field; the second one fails.
    nxhost::failCall("UF_UDOBJ_add_links", 1155000, 4);
    EXPECT_EQ(TRV_FMT_add_entry(sheet, "TITLE", "REV"), 1);
    int rows = 0;
    EXPECT_EQ(TRV_FMT_ask_number_table_entries(sheet, "TITLE", "REV", &rows), 0);
    EXPECT_EQ(rows, 1);
}

} // namespace
