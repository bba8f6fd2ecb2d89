// A sheet and definitions of a small format, reached through the C interface alone.
#pragma once

#include "api/trv_fmt.h"
#include "tests/support/definitions.h"
#include "tests/support/story.h"
#include "tests/support/text_field.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using Texts = std::vector<std::string>;

// Format F in the sizes A3 and A4 requires block TITLE, which has the fields NAME (typed) and LANG ("en") and
// the table REV with the fields NO and TEXT. Block NOTE has nothing. All at (10, 10) from the lower left. Block
// ELSEWHERE has a place on another format only. A format of 300 times L has a size of 300 times S.
class InterfaceStory : public testing::Test {
protected:
    void SetUp() override
    {
        writeDefinitionPart(story, "f.prt", [] {
            TrFormatDefV1 format = makeFormat("F", {"A3"});
            format.AddSize(makeSize("A4", 297.0, 210.0));
            format.SetRequiredBlockIds({"TITLE"});
            TrBlockDefV1 title = makeBlock("TITLE");
            title.SetTextLayer(21);
            title.SetPatternLayer(20);
            title.AddFieldDefinition(makeTextField("NAME", 0.0));
            TrFieldDefV1 language = makeTextField("LANG", 20.0);
            language.SetDefaultString({"en"});
            title.AddFieldDefinition(language);
            TrTableDefV1 table;
            table.SetId("REV");
            table.SetLocationY(50.0);
            table.SetLocationX(0.0);
            table.SetDirection(1);
            table.SetSymbolType(1);
            table.SetSymbolColor(7);
            table.SetSymbolIdType(0);
            table.SetSymbolLayer(22);
            table.SetSymbolTextSize(3.5);
            table.SetSymbolTextAspect(1.0);
            table.AddFieldDefinition(makeTextField("NO", 0.0));
            table.AddFieldDefinition(makeTextField("TEXT", 10.0));
            title.AddTableDefinition(table);
            makeBlock("NOTE");
            makeBlock("ELSEWHERE", "G");
            // No size of a buffer is enough for these.
            makeFormat(std::string(300, 'L'), {std::string(300, 'S')});
        });
        ASSERT_EQ(TRV_FMT_initialize(), 0) << TRV_FMT_ask_last_error();
        sheet = story.newSheet();
    }
    void TearDown() override
    {
        QEL_FMT_set_add_block_cb(nullptr);
        QEL_FMT_set_append_entry_cb(nullptr);
        TRV_FMT_terminate();
    }

    void addFormat()
    {
        ASSERT_EQ(TRV_FMT_add_format(sheet, "F", "A3"), 0) << TRV_FMT_ask_last_error();
    }

    Texts blocks() const
    {
        TRV_FMT_value_list_t list{0, nullptr};
        EXPECT_EQ(TRV_FMT_ask_blocks_on_drawing(sheet, &list), 0) << TRV_FMT_ask_last_error();
        return take(list);
    }
    Texts value(const char *field) const
    {
        TRV_FMT_value_list_t list{0, nullptr};
        EXPECT_EQ(TRV_FMT_ask_field_value(sheet, "TITLE", field, &list), 0)
            << TRV_FMT_ask_last_error();
        return take(list);
    }
    Texts rowValue(int row, const char *field) const
    {
        TRV_FMT_value_list_t list{0, nullptr};
        EXPECT_EQ(TRV_FMT_ask_table_value(sheet, "TITLE", "REV", row, field, &list), 0)
            << TRV_FMT_ask_last_error();
        return take(list);
    }
    int rows() const
    {
        int count = -1;
        EXPECT_EQ(TRV_FMT_ask_number_table_entries(sheet, "TITLE", "REV", &count), 0)
            << TRV_FMT_ask_last_error();
        return count;
    }

    static Texts take(TRV_FMT_value_list_t &list)
    {
        const Texts texts(list.values, list.values + list.num_values);
        TRV_FMT_free_value(&list);
        return texts;
    }

    // The last error of a call that must fail.
    static std::string failure(int status)
    {
        EXPECT_EQ(status, 1);
        return TRV_FMT_ask_last_error();
    }

    Story story;
    tag_t sheet = NULL_TAG;
};

// A caller's list over texts that it owns.
class CallersList {
public:
    CallersList(std::initializer_list<const char *> texts)
    {
        for (const char *text : texts) m_texts.push_back(const_cast<char *>(text));
        m_list = {static_cast<int>(m_texts.size()), m_texts.data()};
    }
    operator const TRV_FMT_value_list_t *() const { return &m_list; }

private:
    std::vector<char *> m_texts;
    TRV_FMT_value_list_t m_list;
};
