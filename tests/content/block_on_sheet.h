// One block on one sheet, made from definitions that the test describes: the ground on which
// fields, tables and rows stand.
#pragma once

#include "content/entry.h"
#include "content/field.h"
#include "content/symbol.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "foundation/log.h"
#include "tests/support/story.h"

#include "uf_drf.h"
#include "uf_obj.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// A point of the sheet, to a billionth: printed and compared as a whole.
struct At {
    double x, y;
    friend bool operator==(const At &a, const At &b)
    {
        return std::abs(a.x - b.x) < 1e-9 && std::abs(a.y - b.y) < 1e-9;
    }
    friend std::ostream &operator<<(std::ostream &out, const At &at)
    {
        return out << '(' << at.x << ", " << at.y << ')';
    }
};

// The two ends of a line.
struct Stroke {
    At start, end;
    friend bool operator==(const Stroke &, const Stroke &) = default;
    friend std::ostream &operator<<(std::ostream &out, const Stroke &stroke)
    {
        return out << stroke.start << " - " << stroke.end;
    }
};

class BlockOnSheet : public testing::Test {
protected:
    using EditField = std::function<void(TrFieldDefV1 &)>;
    using EditTable = std::function<void(TrTableDefV1 &)>;

    // An A3 sheet, 420 x 297, with a format that has nothing but the sheet.
    BlockOnSheet();

    // --- definitions, before placing -----------------------------------------------------------
    // Text 3.5 high, lower left site, line space 1, no margins, no box, nothing recomputed.
    TrFieldDefV1 fieldDef(const std::string &id, const EditField &edit = {}) const;
    // Rows grow downwards from (0, 0); circles as symbols.
    TrTableDefV1 tableDef(const std::string &id, const std::vector<TrFieldDefV1> &fields,
                          const EditTable &edit = {}) const;
    void has(const std::string &id, const EditField &edit = {})
    {
        m_fields.push_back(fieldDef(id, edit));
    }
    void hasTable(const TrTableDefV1 &table) { m_tables.push_back(table); }

    // Notes on layer 21, borders on layer 20; movable. Puts a further block on each call.
    boost::shared_ptr<TrBlockBase> place(double x = 100.0, double y = 50.0);
    // The same on another sheet with a format of its own; it becomes the current one.
    boost::shared_ptr<TrBlockBase> placeOnNewSheet(const std::string &name);

    void saveAndReopen();

    // --- asking ----------------------------------------------------------------------------------
    boost::shared_ptr<TrBlockBase> block(std::size_t index = 0) const;
    boost::shared_ptr<TrFieldBase> field(const std::string &id) const;
    boost::shared_ptr<TrTableBase> table(const std::string &id = "REV") const;
    boost::shared_ptr<TrFieldBase> fieldOn(const TrBlockBase &block, const std::string &id) const;

    Story story;
    tag_t sheet = NULL_TAG;

private:
    void addFormat(tag_t on) const;

    std::vector<TrFieldDefV1> m_fields;
    std::vector<TrTableDefV1> m_tables;
};

// --- what stands on the sheet -------------------------------------------------------------------

tag_t noteTag(const TrFieldBase &field); // NULL_TAG without a note
At noteAt(const TrFieldBase &field);     // from the note itself
At storedAt(const TrFieldBase &field);   // from the record
int notePref(const TrFieldBase &field, int index);
double noteNumber(const TrFieldBase &field, int index);
UF_OBJ_disp_props_t shown(tag_t object);
std::vector<Stroke> strokes(const TrFieldBase &field);
std::vector<tag_t> borderTags(const TrFieldBase &field);
// "VALUE0" and on, as far as they go; "-" for a gap below the last one.
Lines valueAttributes(const TrFieldBase &field);
UF_DRF_lettering_preferences_t lettering();
bool sameLettering(const UF_DRF_lettering_preferences_t &a,
                   const UF_DRF_lettering_preferences_t &b);
// Notes, lines, symbols and points that no record owns.
std::size_t looseObjects(tag_t part);
std::string attributeOf(const UgAttributableObject &object, const std::string &title); // "-": none
// The points that carry the attributes of a sheet.
std::vector<UgAttributableObject *> carriers(tag_t sheet);
