// Values shared through attributes of the part or of a sheet.
#include "content/attributes.h"
#include "content/carrier.h"
#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "definitions/field_def.h"
#include "drawing/drawing.h"
#include "foundation/application.h"
#include "foundation/log.h"
#include "foundation/registry.h"

#include "uf.h"
#include "uf_draw.h"
#include "ug_exception.hxx"
#include "ug_part.hxx"
#include "ug_point.hxx"
#include "ug_session.hxx"

namespace {

using Def = TrFieldDefV1;
using QelFmt::indexed;

// Where a value goes.
enum BroadcastType { kToDrawing = 0, kToPart = 1 };

constexpr int kEmptyRowsKeepSilent = 1; // of the codes for fields of rows

std::vector<tag_t> sheetsOfPart()
{
    int count = 0;
    tag_t *list = nullptr;
    UgException::throwOnFailure(UF_DRAW_ask_drawings(&count, &list));
    const std::vector<tag_t> sheets(list, list + count);
    UF_free(list);
    return sheets;
}

tag_t currentSheet()
{
    tag_t sheet = NULL_TAG;
    UgException::throwOnFailure(UF_DRAW_ask_current_drawing(&sheet));
    return sheet;
}

} // namespace

UgAttributableObject *TrFieldBase::findBroadcastPoint(unsigned drawingTag) const
{
    const tag_t view = QelFmt::viewOfSheet(drawingTag);
    return view == NULL_TAG ? nullptr : QelFmt::findCarrier(view);
}

UgAttributableObject *TrFieldBase::GetBroadcastPoint(unsigned drawingTag) const
{
    const tag_t view = QelFmt::viewOfSheet(drawingTag);
    if (view == NULL_TAG) return nullptr;
    UgAttributableObject *point = QelFmt::findCarrier(view);
    return point ? point : QelFmt::makeCarrier(view);
}

// The site's settings win over the definition.
bool TrFieldBase::getSyncAllDrawings() const
{
    constexpr char kSection[] = "Sync In All Drawings";
    const QelFmt::Registry &settings = *QelFmt::Application::getRegistry();
    const std::string key = getBlockId() + "-" + GetFieldDefName();
    if (settings.keyExists(kSection, key)) return settings.readIntEntry(kSection, key, 0) != 0;
    return GetDefinition().GetSyncAllDrawings() != 0;
}

// Fields of rows share one name: the number of the row, from 0 in the order shown, tells them
// apart.
std::string TrFieldBase::broadcastTitle() const
{
    const LumUg::Record def(GetDefinition());
    const std::string title = def.get(Def::kBroadcastString);
    if (def.get(Def::kBroadcastTableType) == 0) return title;
    const auto entry = owningEntry();
    const auto table = entry ? entry->GetTable() : nullptr;
    const auto index = table ? table->indexOf(*entry) : std::nullopt;
    return index ? indexed(title, *index) : title;
}

void TrFieldBase::broadcast(const Value &lines)
{
    const TrFieldDefV1 definition = GetDefinition();
    const LumUg::Record def(definition);
    if (def.get(Def::kBroadcastString).empty()) return;
    const int type = def.get(Def::kBroadcastType);
    if (type == kToPart) BroadcastValue(UgSession::getWorkPart(), lines);
    if (type != kToDrawing) return;

    if (!getSyncAllDrawings()) {
        if (UgAttributableObject *point = GetBroadcastPoint(0)) BroadcastValue(point, lines);
        return;
    }
    for (const tag_t sheet : sheetsOfPart()) {
        if (TrDrawing::getDrawing(sheet)->hasFormat())
            BroadcastValue(GetBroadcastPoint(sheet), lines);
    }
}

// Lines that a shorter value no longer has are taken back only as far as the stored count goes,
// which is that of the new value: what other programs read is not tidied up.
void TrFieldBase::BroadcastValue(UgAttributableObject *target, const Value &lines)
{
    const LumUg::Record def(GetDefinition());
    const bool empty = lines.size() == 1 && lines.front().empty();
    if (def.get(Def::kBroadcastTableType) == kEmptyRowsKeepSilent && empty) return;

    const std::string title = broadcastTitle();
    if (def.get(Def::kMultiline) == 0) {
        QelFmt::writeAttribute(*target, title, lines.empty() ? std::string() : lines.front());
        return;
    }
    const int count = GetNumberOfLines();
    for (int i = 0; i < count; ++i) {
        if (static_cast<std::size_t>(i) < lines.size())
            QelFmt::writeAttribute(*target, indexed(title, i), lines[i]);
        else
            QelFmt::dropAttribute(*target, indexed(title, i));
    }
}

TrFieldBase::Value TrFieldBase::GetBroadcastValue(UgAttributableObject *target) const
{
    const std::string title = broadcastTitle();
    QELFMT_INFO << "Getting broadcast value for field " << GetFieldDefName()
                << "\nAttribute title = " << title;
    Value value;
    if (GetDefinition().GetMultiline() == 0) {
        QELFMT_INFO << "-- Single line value";
        if (!target->hasStringAttribute(title)) return value;
        QELFMT_INFO << "-- Found the attribute. Getting value... ";
        value.push_back(target->getStringAttributeValue(title));
        QELFMT_INFO << "Found broadcast value to be " << value.front();
        return value;
    }
    for (std::size_t i = 0; target->hasStringAttribute(indexed(title, i)); ++i)
        value.push_back(target->getStringAttributeValue(indexed(title, i)));
    return value;
}

// A value that goes to the drawing by type 0 is never sent again; any other type but the part's
// goes to the current drawing.
void TrFieldBase::RebroadcastValue()
{
    const LumUg::Record def(GetDefinition());
    const int type = def.get(Def::kBroadcastType);
    if (type == kToDrawing || def.get(Def::kBroadcastString).empty()) return;
    UgAttributableObject *target = nullptr;
    if (type == kToPart)
        target = UgSession::getWorkPart();
    else
        target = GetBroadcastPoint(0);
    if (target) BroadcastValue(target, GetValue());
}

// The value of a field that is the same on all sheets, as another sheet with a format has it.
TrFieldBase::Value TrFieldBase::valueOnOtherSheets() const
{
    const LumUg::Record def(GetDefinition());
    if (def.get(Def::kBroadcastString).empty() || def.get(Def::kBroadcastType) != kToDrawing ||
        !getSyncAllDrawings())
        return {};
    const tag_t current = currentSheet();
    for (const tag_t sheet : sheetsOfPart()) {
        if (sheet == current || !TrDrawing::getDrawing(sheet)->hasFormat()) continue;
        UgAttributableObject *point = findBroadcastPoint(sheet);
        const Value value = point ? GetBroadcastValue(point) : Value();
        for (const std::string &line : value)
            if (!line.empty()) return value;
    }
    return {};
}
