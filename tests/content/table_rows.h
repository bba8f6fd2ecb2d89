// A table of two columns on a sheet. The block is placed at (100, 50), the table at (5, 7) in it: its
// origin is (105, 57).
#pragma once

#include "tests/content/block_on_sheet.h"

class TableRows : public BlockOnSheet {
protected:
    // Rows of REV (at 0) and TEXT (at 20), margins 1 above and below: 2 high when empty, 5.5 with a
    // line of 3.5, 10.75 with two (2 x 3.5 + 0.5 x 3.5 between them). Symbols
    // say what is given.
    void revisions(int direction = 0, const EditField &more = {}, const std::string &symbol = "")
    {
        const auto column = [&](const std::string &id, double x) {
            return fieldDef(id, [&](TrFieldDefV1 &def) {
                def.SetLocationX(x);
                def.SetWidth(20.0);
                def.SetMarginHeight(1.0);
                def.SetTextSite(7);
                if (more) more(def);
            });
        };
        hasTable(
            tableDef("REV", {column("REV", 0.0), column("TEXT", 20.0)}, [&](TrTableDefV1 &def) {
                def.SetLocationX(5.0);
                def.SetLocationY(7.0);
                def.SetDirection(direction);
                def.SetSymbol1Value(symbol);
            }));
        place();
    }
    void append(const std::string &rev, const Lines &text = {""})
    {
        const auto row = table()->AppendEntry();
        set(*row, "REV", {rev});
        set(*row, "TEXT", text);
    }
    // As the flat interface sets the value of a row's field.
    void set(TrEntryBase &row, const std::string &id, const Lines &value)
    {
        table()->setValue(row, *row.field(id), value);
    }
    std::vector<At> textPlaces() const
    {
        std::vector<At> places;
        for (const auto &row : table()->getEntries())
            places.push_back(storedAt(*row->field("TEXT")));
        return places;
    }
    std::string revs() const
    {
        std::string all;
        for (const auto &row : table()->getEntries()) all += row->field("REV")->GetValue().front();
        return all;
    }
};
