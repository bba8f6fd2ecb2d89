#include "app/values.h"

#include "app/field_index.h"
#include "app/formats.h"

#include "content/field.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

namespace app {

namespace {

std::string context(const Workspace &work, const SheetRef &sheet, const FieldName &name)
{
    return fmt::format("{}, {}", placeOf(work, sheet), display(name));
}

} // namespace

std::string display(const FieldName &name) { return name.block + "." + name.field; }

std::vector<std::string> blocksOf(const Workspace &work, const SheetRef &sheet)
{
    FilledList blocks;
    checkLibrary(TRV_FMT_ask_blocks_on_drawing(sheet.tag, &blocks.list), placeOf(work, sheet));
    return blocks.lines();
}

Lines valueOf(const Workspace &work, const SheetRef &sheet, const FieldName &name)
{
    FilledList value;
    checkLibrary(
        TRV_FMT_ask_field_value(sheet.tag, name.block.c_str(), name.field.c_str(), &value.list),
        context(work, sheet, name));
    return value.lines();
}

void setValue(const Workspace &work, const SheetRef &sheet, const FieldName &name,
              const Lines &lines)
{
    checkLibrary(
        TRV_FMT_set_field_value(sheet.tag, name.block.c_str(), name.field.c_str(), ReadList(lines)),
        context(work, sheet, name));
}

bool isEditable(const Workspace &work, const SheetRef &sheet, const FieldName &name)
{
    char editable = 0;
    checkLibrary(
        QEL_FMT_get_field_editable(sheet.tag, name.block.c_str(), name.field.c_str(), &editable),
        context(work, sheet, name));
    return editable != 0;
}

void setEditable(const Workspace &work, const SheetRef &sheet, const FieldName &name, bool editable)
{
    checkLibrary(QEL_FMT_set_field_editable(sheet.tag, name.block.c_str(), name.field.c_str(),
                                            editable ? 1 : 0),
                 context(work, sheet, name));
}

void requireEditable(const Workspace &work, const SheetRef &sheet, const FieldName &name)
{
    if (!isEditable(work, sheet, name))
        throw Problem(fmt::format("{}: is locked: give --force, or unlock it with 'qelfmt field "
                                  "editable {} {} yes'",
                                  context(work, sheet, name), work.path(), display(name)));
}

std::vector<FieldName> fieldsOf(const SheetRef &sheet)
{
    std::vector<FieldName> names;
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat()) return names;
    for (const auto &block : drawing->format()->getBlocks())
        for (const auto &field : block->getFields())
            names.push_back({block->GetBlockDefName(), field->GetFieldDefName()});
    return names;
}

std::vector<FieldValue> valuesOf(const Workspace &work, const SheetRef &sheet)
{
    std::vector<FieldValue> values;
    for (const FieldName &name : fieldsOf(sheet))
        values.push_back({name, valueOf(work, sheet, name)});
    return values;
}

// The first block of that name, as the interface takes it.
boost::shared_ptr<TrFieldBase> recordOf(const SheetRef &sheet, const FieldName &name)
{
    for (const auto &block : TrDrawing::getDrawing(sheet.tag)->format()->getBlocks()) {
        if (block->GetBlockDefName() != name.block) continue;
        for (const auto &field : block->getFields())
            if (field->GetFieldDefName() == name.field) return field;
        break;
    }
    throw Problem(fmt::format("sheet {}: no field {}", sheet.name, display(name)));
}

FieldName findField(const Workspace &work, const SheetRef &sheet, const std::string &text)
{
    return FieldIndex(work, sheet).find(text).name;
}

void requireLines(const std::string &verb, const Lines &lines, bool clear)
{
    if (lines.empty() && !clear)
        throw Problem(verb + ": no value given: write it behind the field, or --clear to empty it",
                      kUsage);
    if (!lines.empty() && clear)
        throw Problem(verb + ": a value and --clear: give one of them", kUsage);
}

Json toJson(const Lines &lines)
{
    if (lines.size() == 1) return lines.front();
    return Json(lines);
}

Lines splitLines(const std::string &text)
{
    Lines lines(1);
    for (const char c : text) {
        if (c == '\n')
            lines.emplace_back();
        else
            lines.back() += c;
    }
    return lines;
}

} // namespace app
