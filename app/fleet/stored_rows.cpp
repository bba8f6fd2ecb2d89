#include "app/fleet/stored_rows.h"

#include "app/drift.h"
#include "app/values.h"

#include "content/field.h"
#include "definitions/field_def.h"
#include "drawing/block.h"
#include "drawing/format.h"
#include "udo/class_names.h"
#include "udo/udo.h"

#include "nxhost/records.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_map>

namespace app::fleet {

namespace {

using nxhost::RowNumber;
using nxhost::StoredRecord;
using nxhost::StoredRecords;

// Whether an older generation, which the library converts when it is looked at, is in the part.
bool isOlder(std::string_view className)
{
    for (const char *name :
         {QelFmt::kZemBlockV1Classname, QelFmt::kZemFieldV1Classname, QelFmt::kZemTableV1Classname,
          QelFmt::kZemEntryV1Classname, QelFmt::kEntryV1Classname})
        if (className == name) return true;
    return false;
}

std::string textAt(const StoredRecord &record, const LumUg::StringSlot &slot)
{
    return slot.index < record.strings.size() ? record.strings[slot.index] : std::string();
}

int numberAt(const StoredRecord &record, const LumUg::IntSlot &slot)
{
    return slot.index < record.ints.size() ? record.ints[slot.index] : slot.fallback;
}

// The value is only known when the note is evaluated.
bool hasReference(const Lines &lines)
{
    return std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
        return line.find("<W") != std::string::npos;
    });
}

class Reader {
public:
    Reader(const std::string &path, const StoredRecords &stored) : m_path(path), m_stored(stored)
    {
        for (const StoredRecord &record : stored.records) m_records.emplace(record.row, &record);
        for (const auto &note : stored.notes) m_notes.emplace(note.row, &note.lines);
    }

    std::optional<Json> rows(const Columns &columns)
    {
        for (const StoredRecord &record : m_stored.records)
            if (isOlder(record.className)) return {};
        Json rows = Json::array();
        for (const auto &sheet : m_stored.sheets) {
            Json row{{"file", m_path}, {"sheet", sheet.name}};
            if (const StoredRecord *format = formatOf(sheet.row)) {
                addFormat(row, *format, columns);
                if (m_unclear) return {};
            } else {
                row["state"] = nameOf(SheetState::none);
            }
            rows.push_back(std::move(row));
        }
        return rows;
    }

private:
    // The first that was linked to the sheet.
    const StoredRecord *formatOf(RowNumber sheet) const
    {
        const StoredRecord *first = nullptr;
        std::uint64_t sequence = 0;
        for (const StoredRecord &record : m_stored.records) {
            if (record.className != QelFmt::kFormatV1Classname) continue;
            for (const nxhost::StoredLink &link : record.links)
                if (link.target == sheet && (!first || link.sequence < sequence))
                    first = &record, sequence = link.sequence;
        }
        return first;
    }

    // A child that cannot be found leaves the row to whoever opens the drawing.
    template <class Take>
    void children(const StoredRecord &parent, std::string_view className, const Take &take)
    {
        for (const nxhost::StoredLink &link : parent.links) {
            if (link.type != LumUg::kChildLink || link.target == 0) continue;
            const auto found = m_records.find(link.target);
            if (found == m_records.end())
                m_unclear = true;
            else if (found->second->className == className)
                take(*found->second);
        }
    }

    void addFormat(Json &row, const StoredRecord &format, const Columns &columns)
    {
        row["format"] = textAt(format, TrFormatV1::kFormatDefName);
        row["size"] = textAt(format, TrFormatV1::kSizeName);
        row["blocks"] = Json::array();
        row["values"] = Json::object();
        std::set<std::string> ids;
        children(format, QelFmt::kBlockV1Classname, [&](const StoredRecord &block) {
            const std::string id = textAt(block, TrBlockV1::kBlockDefName);
            row["blocks"].push_back(id);
            if (ids.insert(id).second) addBlock(row["values"], id, block, columns);
        });
    }

    void addBlock(Json &values, const std::string &id, const StoredRecord &block,
                  const Columns &columns)
    {
        std::set<std::string> seen;
        children(block, QelFmt::kFieldV1Classname, [&](const StoredRecord &field) {
            const std::string name =
                display(FieldName{id, textAt(field, FieldSlots::kFieldDefName)});
            if (columns.holds(name) && seen.insert(name).second)
                values[name] = toJson(valueOf(field));
        });
    }

    // As TrFieldBase::GetValue() answers.
    Lines valueOf(const StoredRecord &field)
    {
        Lines lines;
        for (const RowNumber owned : field.owned)
            if (const auto note = m_notes.find(owned); note != m_notes.end()) {
                lines = *note->second;
                break;
            }
        if (lines.empty()) {
            for (int i = 0; i < numberAt(field, FieldSlots::kNumberOfLines); ++i)
                lines.push_back(attribute(field.row, "VALUE" + std::to_string(i)));
        } else {
            m_unclear = m_unclear || hasReference(lines);
            if (const int blanks = indentationOf(field); blanks > 0)
                lines.front().erase(0, static_cast<std::size_t>(blanks));
        }
        if (lines.empty()) lines.emplace_back();
        return lines;
    }

    int indentationOf(const StoredRecord &field) const
    {
        for (const nxhost::StoredLink &link : field.links) {
            if (link.type != LumUg::kDefinitionLink) continue;
            const auto def = m_records.find(link.target);
            return def == m_records.end() ? 0 : numberAt(*def->second, TrFieldDefV1::kIndentation);
        }
        return 0;
    }

    // Few fields have a value and no note: the attributes are read when the first one asks.
    std::string attribute(RowNumber row, const std::string &title)
    {
        if (!m_attributes) m_attributes = nxhost::readAttributes(m_path);
        if (!m_attributes) {
            m_unclear = true;
            return {};
        }
        for (const nxhost::StoredAttribute &one : *m_attributes)
            if (one.owner == row && one.title == title) return one.value;
        return {};
    }

    const std::string &m_path;
    const StoredRecords &m_stored;
    std::unordered_map<RowNumber, const StoredRecord *> m_records;
    std::unordered_map<RowNumber, const Lines *> m_notes;
    std::optional<std::vector<nxhost::StoredAttribute>> m_attributes;
    bool m_unclear = false;
};

} // namespace

bool storedRowsSuffice(const Columns &columns)
{
    return !columns.holds("state") && !columns.holds("label") && !columns.holds("rows");
}

std::optional<Json> storedSheetRows(const std::string &path, const Columns &columns)
{
    const auto stored = nxhost::readRecords(path);
    if (!stored) return {};
    return Reader(path, *stored).rows(columns);
}

} // namespace app::fleet
