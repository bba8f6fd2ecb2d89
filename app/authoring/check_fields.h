// Fields of blocks and rows of tables: whether what they show stays where it belongs.
#pragma once

#include "app/authoring/findings.h"
#include "app/authoring/model.h"
#include "app/authoring/text_ruler.h"

#include <optional>
#include <string>

namespace app::authoring {

struct FieldBox {
    double x, y, width, height;
};

FieldBox boxOf(const RecordTree &field); // in its block, from where its text stands in it
bool overlap(const FieldBox &a, const FieldBox &b);

// Layers 1 to 256, colours 0 to 216.
void checkLayer(const RecordTree &record, const std::string &slot, const std::string &where,
                Findings &findings);
void checkColor(const RecordTree &record, const std::string &slot, const std::string &where,
                Findings &findings);
void checkFont(const RecordTree &record, const std::string &slot, const std::string &where,
               TextRuler &ruler, Findings &findings);

// `text`: of the cell form, if it comes from there. `row`: it stands in the row of a table, which grows
// with its text.
void checkField(const RecordTree &field, const Field *text, bool row, const std::string &where,
                TextRuler &ruler, Findings &findings);
// `extent`: of its block, if it is known.
void checkTable(const RecordTree &table, const Table *text, const std::optional<FieldBox> &extent,
                const std::string &where, TextRuler &ruler, Findings &findings);

} // namespace app::authoring
