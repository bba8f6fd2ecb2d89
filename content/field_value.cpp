// The value of a field: read from its note and its attributes, written to both.
#include "content/attributes.h"
#include "content/entry.h"
#include "content/field.h"
#include "content/recompute_guard.h"
#include "definitions/field_def.h"
#include "foundation/log.h"

#include <optional>

namespace {

using Def = TrFieldDefV1;
using QelFmt::indexed;

constexpr char kValue[] = "VALUE";

// What a failed change of the value puts back.
struct StoredValue {
    int count;
    std::vector<std::optional<std::string>> attributes;
    bool hasNote;
    TrFieldBase::Value noteLines;

    explicit StoredValue(const TrFieldBase &field)
        : count(field.GetNumberOfLines()), hasNote(field.GetNote() != nullptr),
          noteLines(field.GetNoteValue())
    {
        for (int i = 0; i < count; ++i)
            attributes.push_back(QelFmt::readAttribute(*field.GetUdoObject(), indexed(kValue, i)));
    }
};

} // namespace

TrFieldBase::Value TrFieldBase::GetValue() const
{
    const LumUg::Record def(GetDefinition());
    QELFMT_INFO << "Getting value of field " << def.get(Def::kId);
    const Value shown = GetNoteValue();
    Value value;
    if (shown.empty()) {
        for (int i = 0; i < GetNumberOfLines(); ++i)
            value.push_back(
                QelFmt::readAttribute(*GetUdoObject(), indexed(kValue, i)).value_or(""));
    } else {
        value = EvaluateNoteValue(shown);
        // The first line only: so the note was indented.
        if (const int blanks = def.get(Def::kIndentation); blanks > 0)
            value.front().erase(0, static_cast<std::size_t>(blanks));
    }
    if (value.empty()) value.emplace_back();
    return value;
}

void TrFieldBase::InitValues()
{
    const LumUg::Record def(GetDefinition());
    const auto drawn = [&](const LumUg::IntSlot &policy) {
        return def.get(policy) == 1 || def.get(policy) == 4 ? 1 : 0;
    };
    LumUg::Record fresh(*this);
    fresh.put(kNumberOfLines, 0);
    fresh.put(TrFieldV1::kIsEditable, 1);
    fresh.put(kFieldDefName, def.get(Def::kId));
    fresh.put(kHasBottomBorder, drawn(Def::kBottomBorderPolicy));
    fresh.put(kHasLeftBorder, drawn(Def::kLeftBorderPolicy));
    fresh.put(kHasMiddleBorder, drawn(Def::kMiddleBorderPolicy));
    fresh.put(kHasRightBorder, drawn(Def::kRightBorderPolicy));
    fresh.put(kHasTopBorder, drawn(Def::kTopBorderPolicy));
    fresh.write(*this);
    SetToDefaultValue();
}

// A change that fails leaves the old value: in the attributes and, as far as it can be, on the
// sheet. What was broadcast by then stays: it is shared with other programs.
void TrFieldV1::ModifyValue(const Value &newValue)
{
    CreateUDO();
    const QelFmt::WritingField writing(tag());
    QELFMT_INFO << "ModifyValue(): Modifying field to value:";
    for (const std::string &line : newValue) QELFMT_INFO << "    " << line;
    QELFMT_VERBOSE << "field is multiline"; // whatever the definition says: so it has always been

    const boost::shared_ptr<TrEntryBase> entry = owningEntry();
    const StoredValue before(*this);
    try {
        changeValue(newValue.empty() ? Value(1) : newValue);
        if (entry) entry->valueChanged(*this);
    } catch (...) {
        restore(before.count, before.attributes, before.hasNote, before.noteLines);
        if (entry) followRestored(*entry);
        throw;
    }
}

// What depends on the value in its row follows it back.
void TrFieldV1::followRestored(TrEntryBase &entry) const
{
    try {
        entry.valueChanged(*this);
    } catch (...) { // the failure that is being reported is the first one
    }
}

void TrFieldV1::changeValue(const Value &lines)
{
    storeLines(lines);
    broadcast(lines);
    Value shown = lines;
    if (const int blanks = LumUg::Record(GetDefinition()).get(Def::kIndentation); blanks > 0)
        shown.front().insert(0, static_cast<std::size_t>(blanks), ' ');
    QELFMT_INFO << "..calling UpdateNote() with value " << shown.front();
    UpdateNote(shown);
}

// Attributes are written for as many lines as the value had before: the note is what holds the
// value, and other programs rely on which attributes there are.
void TrFieldV1::storeLines(const Value &lines)
{
    UgUDO &record = *GetUdoObject();
    const int storedCount = GetNumberOfLines();
    for (int i = 0; i < storedCount; ++i) {
        if (static_cast<std::size_t>(i) < lines.size())
            QelFmt::writeAttribute(record, indexed(kValue, i), lines[i]);
        else
            QelFmt::dropAttribute(record, indexed(kValue, i));
    }
    SetNumberOfLines(static_cast<int>(lines.size()));
}

void TrFieldV1::keepInAttributes(const Value &lines)
{
    for (std::size_t i = 0; i < lines.size(); ++i)
        QelFmt::writeAttribute(*GetUdoObject(), indexed(kValue, i), lines[i]);
    SetNumberOfLines(static_cast<int>(lines.size()));
}

void TrFieldV1::restore(int count, const StoredLines &attributes, bool hadNote,
                        const Value &noteLines)
{
    try {
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            if (attributes[i])
                QelFmt::writeAttribute(*GetUdoObject(), indexed(kValue, i), *attributes[i]);
            else
                QelFmt::dropAttribute(*GetUdoObject(), indexed(kValue, i));
        }
        SetNumberOfLines(count);
        if (!hadNote)
            deleteNote();
        else if (GetNoteValue() != noteLines)
            rewriteNote(noteLines);
    } catch (...) { // the failure that is being reported is the first one
    }
}
