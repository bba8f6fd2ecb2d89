// A block with two tables, one growing upwards and one downwards, driven through the C interface.
#pragma once

#include "content/entry.h"
#include "content/field.h"
#include "content/symbol.h"
#include "content/table.h"
#include "drawing/block.h"
#include "tests/api/interface_story.h"

#include "uf_drf.h"
#include "uf_obj.h"
#include "ug_displayable.hxx"

#include <cmath>
#include <ostream>

struct Place {
    double x, y;
    friend bool operator==(const Place &a, const Place &b)
    {
        return std::abs(a.x - b.x) < 1e-9 && std::abs(a.y - b.y) < 1e-9;
    }
    friend std::ostream &operator<<(std::ostream &out, const Place &at)
    {
        return out << '(' << at.x << ", " << at.y << ')';
    }
};
using PlaceList = std::vector<Place>;

// Format F requires block TITLE at (10, 10). Table UP starts at (0, 50) in it, DOWN at (100, 200): on the
// sheet at (10, 60) and (110, 210). Rows have NO at 0 and TEXT at 20, text 2.5 high, margins of 1, so a
// row is 4.5 high with one line, 2 + 2 x 2.5 + 1.25 = 8.25 with two, 12 with three and 2 without text.
// Symbols are circles that say NO.
class TableStory : public InterfaceStory {
protected:
    void SetUp() override
    {
        writeDefinitionPart(story, "f.prt", [] {
            makeFormat("F", {"A3"}).SetRequiredBlockIds({"TITLE"});
            TrBlockDefV1 title = makeBlock("TITLE");
            title.SetTextLayer(21);
            title.SetPatternLayer(20);
            title.AddTableDefinition(stackOf("UP", 0.0, 50.0, 1));
            title.AddTableDefinition(stackOf("DOWN", 100.0, 200.0, 0));
        });
        ASSERT_EQ(TRV_FMT_initialize(), 0) << TRV_FMT_ask_last_error();
        sheet = story.newSheet();
        addFormat();
    }

    static TrTableDefV1 stackOf(const char *id, double x, double y, int direction)
    {
        TrTableDefV1 table;
        table.SetId(id);
        table.SetLocationX(x);
        table.SetLocationY(y);
        table.SetDirection(direction);
        table.SetSymbolType(UF_DRF_sym_circle);
        table.SetSymbolIdType(0);
        table.SetSymbolColor(7);
        table.SetSymbolLayer(22);
        table.SetSymbolTextSize(3.5);
        table.SetSymbolTextAspect(1.0);
        table.SetSymbol1Value("NO");
        table.AddFieldDefinition(makeTextField("NO", 0.0));
        table.AddFieldDefinition(makeTextField("TEXT", 20.0));
        return table;
    }

    void append(const char *table, const char *no, std::initializer_list<const char *> text)
    {
        ASSERT_EQ(TRV_FMT_add_entry(sheet, "TITLE", table), 0) << TRV_FMT_ask_last_error();
        const int row = rowsOf(table) - 1;
        set(table, row, "NO", {no});
        set(table, row, "TEXT", text);
    }
    void set(const char *table, int row, const char *field,
             std::initializer_list<const char *> lines)
    {
        ASSERT_EQ(TRV_FMT_set_table_value(sheet, "TITLE", table, row, field, CallersList(lines)), 0)
            << TRV_FMT_ask_last_error();
    }
    void remove(const char *table, int row)
    {
        ASSERT_EQ(TRV_FMT_delete_entry(sheet, "TITLE", table, row), 0) << TRV_FMT_ask_last_error();
    }
    void reopen()
    {
        story.saveAndReopen();
        sheet = story.sheet(0);
    }

    int rowsOf(const char *table) const
    {
        int count = -1;
        EXPECT_EQ(TRV_FMT_ask_number_table_entries(sheet, "TITLE", table, &count), 0)
            << TRV_FMT_ask_last_error();
        return count;
    }
    // The values of NO from the first row to the last.
    std::string order(const char *table) const
    {
        std::string all;
        for (int row = 0; row < rowsOf(table); ++row) {
            TRV_FMT_value_list_t list{0, nullptr};
            EXPECT_EQ(TRV_FMT_ask_table_value(sheet, "TITLE", table, row, "NO", &list), 0)
                << TRV_FMT_ask_last_error();
            all += take(list).front();
        }
        return all;
    }

    // What the interface has no function for, through the library's classes.
    boost::shared_ptr<TrTableBase> record(const char *table) const
    {
        return TrDrawing::getDrawing(sheet)->format()->getBlocks().at(0)->getTable(table);
    }
    void hide(const char *table, std::size_t row, int on)
    {
        const auto rows = record(table);
        rows->entry(row)->SetHideEntry(on);
        rows->locate();
    }

    // Where the notes of NO stand, asked from the platform.
    PlaceList placesOf(const char *table) const
    {
        PlaceList places;
        for (const auto &row : record(table)->getEntries())
            if (const auto *note = row->field("NO")->GetNote())
                places.push_back(originOf(note->getTag()));
        return places;
    }
    static Place originOf(tag_t annotation)
    {
        double origin[3] = {};
        EXPECT_EQ(UF_DRF_ask_origin(annotation, origin), 0);
        return {origin[0], origin[1]};
    }
    static bool isBlanked(const TrFieldBase &field)
    {
        UF_OBJ_disp_props_t props{};
        EXPECT_EQ(UF_OBJ_ask_display_properties(field.GetNote()->getTag(), &props), 0);
        return props.blank_status == UF_OBJ_BLANKED;
    }

    // The texts of a row's symbols, as the platform has them.
    Texts symbolTexts(const char *table, std::size_t row) const
    {
        Texts texts;
        for (const auto &symbol : record(table)->entry(row)->getSymbols())
            texts.push_back(textOf(symbol->GetSymbolObject()->getTag()));
        return texts;
    }
    static std::string textOf(tag_t annotation)
    {
        int count = 0;
        UF_DRF_draft_aid_text_info_t *info = nullptr;
        EXPECT_EQ(UF_DRF_ask_draft_aid_text_info(annotation, &count, &info), 0);
        std::string text;
        for (int i = 0; i < count; ++i)
            for (int j = 0; j < info[i].num_lines; ++j)
                text += (text.empty() ? "" : "|") + std::string(info[i].text[j].full_string);
        UF_DRF_free_text(count, &info);
        return text;
    }
};
