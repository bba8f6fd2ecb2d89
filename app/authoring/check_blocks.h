// Blocks: whether their cells fill them and their art can be drawn.
#pragma once

#include "app/authoring/check_fields.h"
#include "app/authoring/findings.h"
#include "app/authoring/model.h"
#include "app/authoring/text_ruler.h"

#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

// Fields that overlap or leave the block; `extent`: of the block, if it is known.
void checkCells(const RecordTree &block, const std::optional<FieldBox> &extent,
                const std::string &where, Findings &findings);

// Cells with lines around them fill the block, once.
void checkTiling(const Block &block, Findings &findings);

// Lines, texts and pictures of its own that leave the block.
void checkOwnArt(const Block &block, TextRuler &ruler, Findings &findings);

// Fonts of its texts.
void checkArt(const Art &art, const std::string &where, TextRuler &ruler, Findings &findings);

// The box around all lines and arcs; empty without any.
std::optional<FieldBox> linesExtent(const Art &art);

} // namespace app::authoring
