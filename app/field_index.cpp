#include "app/field_index.h"

#include "app/formats.h"
#include "app/problem.h"

#include "content/field.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include "ug_exception.hxx"

#include <fmt/format.h>

#include <set>

namespace app {

FieldIndex::FieldIndex(const Workspace &work, const SheetRef &sheet)
    : m_part(work.shownPath()), m_place(placeOf(work, sheet))
{
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat()) return;
    std::set<std::string> blocks;
    for (const auto &block : drawing->format()->getBlocks()) {
        const std::string id = block->GetBlockDefName();
        if (!blocks.insert(id).second) continue;
        std::set<std::string> fields;
        for (const auto &field : block->getFields()) {
            const std::string name = field->GetFieldDefName();
            if (fields.insert(name).second) m_fields.push_back({{id, name}, field});
        }
    }
}

const IndexedField &FieldIndex::find(const std::string &text) const
{
    const IndexedField *match = nullptr;
    bool several = false;
    for (const IndexedField &field : m_fields) {
        if (display(field.name) == text) return field;
        if (field.name.field == text) {
            several = match != nullptr;
            match = &field;
        }
    }
    if (match && !several) return *match;
    if (match)
        throw Problem(
            fmt::format("{}: several blocks have a field {}: write BLOCK.{}", m_place, text, text));
    throw UnknownField(fmt::format("{}: no field {}; {}", m_place, text, choices()));
}

std::string FieldIndex::choices() const
{
    std::vector<std::string> all;
    for (const IndexedField &field : m_fields) all.push_back(display(field.name));
    return fmt::format("there {} {}", all.size() == 1 ? "is" : "are",
                       all.empty() ? "none" : joined(all, ", "));
}

void FieldIndex::requireEditable(const IndexedField &field) const
{
    if (field.record->GetIsEditable() == 0)
        throw Problem(
            fmt::format("{}, {}: is locked: give --force, or unlock it with 'qelfmt field "
                        "editable {} {} yes'",
                        m_place, display(field.name), m_part, display(field.name)));
}

void FieldIndex::set(const IndexedField &field, const Lines &lines) const
{
    const auto fail = [&](const std::string &why) {
        throw Problem(fmt::format("{}, {}: {}", m_place, display(field.name), why));
    };
    try {
        field.record->ModifyValue(lines);
    } catch (const UgException &failure) {
        fail(failure.askErrorText());
    } catch (const std::exception &failure) {
        fail(failure.what());
    }
}

} // namespace app
