#include "app/fleet/stored_rows.h"

#include "app/drift.h"
#include "app/fleet/json_text.h"
#include "app/values.h"

#include "content/field.h"
#include "definitions/field_def.h"
#include "drawing/block.h"
#include "drawing/format.h"
#include "udo/class_names.h"
#include "udo/udo.h"

#include "nxhost/records.h"

#include <algorithm>
#include <span>
#include <unordered_map>

namespace app::fleet {

namespace {

using nxhost::RowNumber;
using nxhost::StoredRecord;
using nxhost::StoredRecords;

// An older generation, which the library converts when it is looked at.
constexpr const char *kOlder[] = {QelFmt::kZemBlockV1Classname, QelFmt::kZemFieldV1Classname,
                                  QelFmt::kZemTableV1Classname, QelFmt::kZemEntryV1Classname,
                                  QelFmt::kEntryV1Classname};

std::vector<std::string> classesInReports()
{
    std::vector<std::string> classes{QelFmt::kFieldV1Classname, QelFmt::kFieldDefV1Classname,
                                     QelFmt::kBlockV1Classname, QelFmt::kFormatV1Classname};
    classes.insert(classes.end(), std::begin(kOlder), std::end(kOlder));
    return classes;
}

bool isOlder(const StoredRecord &record)
{
    return std::any_of(std::begin(kOlder), std::end(kOlder),
                       [&](const char *name) { return record.className == name; });
}

std::string_view textAt(const StoredRecord &record, const LumUg::StringSlot &slot)
{
    return slot.index < record.strings.size() ? record.strings[slot.index] : std::string_view();
}

int numberAt(const StoredRecord &record, const LumUg::IntSlot &slot)
{
    return slot.index < record.ints.size() ? record.ints[slot.index] : slot.fallback;
}

// The value is only known when the note is evaluated.
bool hasReference(std::span<const std::string_view> lines)
{
    return std::any_of(lines.begin(), lines.end(), [](std::string_view line) {
        return line.find("<W") != std::string_view::npos;
    });
}

template <class Stored> const Stored *at(const std::vector<Stored> &rising, RowNumber row)
{
    const auto found =
        std::lower_bound(rising.begin(), rising.end(), row,
                         [](const Stored &one, RowNumber wanted) { return one.row < wanted; });
    return found != rising.end() && found->row == row ? &*found : nullptr;
}

// What is the same wherever a field's name is met: whether the columns hold it, and how it is written.
class FieldNames {
public:
    struct Alone {
        std::string json; // "FIELD"
        std::uint64_t sheet = 0;
        std::size_t uses = 0; // on that sheet
    };
    struct Name {
        bool held = false;  // by the columns
        bool plain = false; // two texts with a dot between them can be told apart
        std::string json;   // "BLOCK.FIELD"
        Alone *alone = nullptr;
        std::uint64_t sheet = 0; // the one on which it was seen last
    };

    explicit FieldNames(const Columns &columns) : m_columns(columns) {}

    void beginSheet() { ++m_sheet; }

    // Null when the columns do not hold it, or when it was there before on this sheet.
    const Name *see(std::string_view block, std::string_view field)
    {
        m_whole.assign(block).append(1, '.').append(field);
        const auto known = m_names.find(m_whole);
        Name &name = known != m_names.end() ? known->second : add(field);
        if (!name.held || name.sheet == m_sheet) return nullptr;
        name.sheet = m_sheet;
        Alone &alone = *name.alone;
        alone.uses = alone.sheet == m_sheet ? alone.uses + 1 : 1;
        alone.sheet = m_sheet;
        return &name;
    }

private:
    Name &add(std::string_view field)
    {
        Name &name = m_names[m_whole];
        name.held = m_columns.holds(m_whole);
        name.plain = std::count(m_whole.begin(), m_whole.end(), '.') == 1;
        appendJson(name.json, m_whole);
        name.alone = &m_alone[std::string(field)];
        name.alone->json.clear();
        appendJson(name.alone->json, field);
        return name;
    }

    const Columns m_columns;
    std::uint64_t m_sheet = 0;
    std::string m_whole;
    std::unordered_map<std::string, Name> m_names;
    std::unordered_map<std::string, Alone> m_alone;
};

} // namespace

class StoredRows::Reader {
public:
    Reader(const Columns &columns, ReportForm form)
        : m_form(form), m_names(columns), m_records(classesInReports())
    {}

    std::optional<std::string> read(const std::string &path)
    {
        m_stored = m_records.read(path);
        if (!m_stored || std::any_of(m_stored->records.begin(), m_stored->records.end(), isOlder))
            return {};
        m_attributes = nullptr;
        m_unclear = false;
        std::string text;
        for (const auto &sheet : m_stored->sheets) addSheet(text, path, sheet);
        if (m_unclear) return {};
        return m_form == ReportForm::records ? text : '[' + text + ']';
    }

private:
    struct Value {
        const FieldNames::Name *name;
        std::size_t first, count; // of the lines
    };

    void addSheet(std::string &text, const std::string &path, const nxhost::StoredSheet &sheet)
    {
        const StoredRecord *format = formatOf(sheet.row);
        m_blocks.clear(), m_values.clear(), m_lines.clear();
        m_names.beginSheet();
        if (format) findBlocks(*format);
        if (m_form != ReportForm::records)
            addRow(text, path, sheet.name, format);
        else if (format)
            addRecord(text, sheet.name);
    }

    // The first that was linked to the sheet.
    const StoredRecord *formatOf(RowNumber sheet) const
    {
        const StoredRecord *first = nullptr;
        std::uint64_t sequence = 0;
        for (const StoredRecord &record : m_stored->records) {
            if (record.className != QelFmt::kFormatV1Classname) continue;
            for (const nxhost::StoredLink &link : record.links)
                if (link.target == sheet && (!first || link.sequence < sequence))
                    first = &record, sequence = link.sequence;
        }
        return first;
    }

    // --- what is there --------------------------------------------------------------------------

    // A child that cannot be found leaves the drawing to whoever opens it.
    template <class Take>
    void children(const StoredRecord &parent, std::string_view className, const Take &take)
    {
        for (const nxhost::StoredLink &link : parent.links) {
            if (link.type != LumUg::kChildLink || link.target == 0) continue;
            const StoredRecord *child = at(m_stored->records, link.target);
            if (!child)
                m_unclear = true;
            else if (child->className == className)
                take(*child);
        }
    }

    void findBlocks(const StoredRecord &format)
    {
        children(format, QelFmt::kBlockV1Classname, [&](const StoredRecord &block) {
            const std::string_view id = textAt(block, TrBlockV1::kBlockDefName);
            const bool first = std::find(m_blocks.begin(), m_blocks.end(), id) == m_blocks.end();
            m_blocks.push_back(id);
            if (first) findValues(id, block);
        });
    }

    void findValues(std::string_view id, const StoredRecord &block)
    {
        children(block, QelFmt::kFieldV1Classname, [&](const StoredRecord &field) {
            const auto *name = m_names.see(id, textAt(field, FieldSlots::kFieldDefName));
            if (!name) return;
            m_unclear = m_unclear || !name->plain;
            const std::size_t first = m_lines.size();
            addLines(field);
            m_values.push_back({name, first, m_lines.size() - first});
        });
    }

    // As TrFieldBase::GetValue() answers; at least one line.
    void addLines(const StoredRecord &field)
    {
        const nxhost::StoredNote *note = nullptr;
        for (const RowNumber owned : field.owned)
            if ((note = at(m_stored->notes, owned))) break;
        const std::size_t first = m_lines.size();
        if (note && !note->lines.empty()) {
            m_lines.insert(m_lines.end(), note->lines.begin(), note->lines.end());
            m_unclear = m_unclear || hasReference(note->lines);
            std::string_view &line = m_lines[first];
            if (const int blanks = indentationOf(field); blanks > 0)
                line.remove_prefix(std::min(static_cast<std::size_t>(blanks), line.size()));
        } else {
            for (int i = 0; i < numberAt(field, FieldSlots::kNumberOfLines); ++i)
                m_lines.push_back(attribute(field.row, "VALUE" + std::to_string(i)));
        }
        if (m_lines.size() == first) m_lines.emplace_back();
    }

    int indentationOf(const StoredRecord &field) const
    {
        for (const nxhost::StoredLink &link : field.links) {
            if (link.type != LumUg::kDefinitionLink) continue;
            const StoredRecord *def = at(m_stored->records, link.target);
            return def ? numberAt(*def, TrFieldDefV1::kIndentation) : 0;
        }
        return 0;
    }

    // Few fields have a value and no note: the attributes are read when the first one asks.
    std::string_view attribute(RowNumber row, const std::string &title)
    {
        if (!m_attributes) m_attributes = m_records.attributes();
        if (!m_attributes) {
            m_unclear = true;
            return {};
        }
        for (const nxhost::StoredAttribute &one : *m_attributes)
            if (one.owner == row && one.title == title) return one.value;
        return {};
    }

    // --- how it is written ------------------------------------------------------------------------

    void addRow(std::string &text, const std::string &path, std::string_view sheet,
                const StoredRecord *format) const
    {
        const auto member = [&](const char *before, std::string_view value) {
            appendJson(text += before, value);
        };
        member(text.empty() ? "{\"file\":" : ",{\"file\":", path);
        member(",\"sheet\":", sheet);
        if (!format) {
            member(",\"state\":", nameOf(SheetState::none));
            text += '}';
            return;
        }
        member(",\"format\":", textAt(*format, TrFormatV1::kFormatDefName));
        member(",\"size\":", textAt(*format, TrFormatV1::kSizeName));
        text += ",\"blocks\":[";
        const char *before = "";
        for (const std::string_view block : m_blocks) member(before, block), before = ",";
        text += "],\"values\":{";
        before = "";
        for (const Value &value : m_values) {
            text.append(before).append(value.name->json).append(1, ':');
            addValue(text, value);
            before = ",";
        }
        text += "}}";
    }

    void addRecord(std::string &text, std::string_view sheet) const
    {
        appendJson(text, sheet);
        const char *before = "\t{";
        for (const Value &value : m_values) {
            const FieldNames::Name &name = *value.name;
            text.append(before).append(name.alone->uses == 1 ? name.alone->json : name.json);
            addValue(text += ':', value);
            before = ",";
        }
        text += m_values.empty() ? "\t{}\n" : "}\n";
    }

    // One line is a text, more are a list.
    void addValue(std::string &text, const Value &value) const
    {
        if (value.count == 1) return appendJson(text, m_lines[value.first]);
        char before = '[';
        for (std::size_t i = 0; i < value.count; ++i, before = ',')
            appendJson(text += before, m_lines[value.first + i]);
        text += ']';
    }

    const ReportForm m_form;
    FieldNames m_names;
    nxhost::RecordReader m_records;
    // Of one drawing:
    const StoredRecords *m_stored = nullptr;
    const std::vector<nxhost::StoredAttribute> *m_attributes = nullptr;
    bool m_unclear = false;
    // Of one sheet:
    std::vector<std::string_view> m_blocks;
    std::vector<Value> m_values;
    std::vector<std::string_view> m_lines;
};

bool storedRowsSuffice(const Columns &columns)
{
    return !columns.holds("state") && !columns.holds("label") && !columns.holds("rows");
}

StoredRows::StoredRows(const Columns &columns, ReportForm form)
    : m_reader(std::make_unique<Reader>(columns, form))
{}

StoredRows::~StoredRows() = default;

std::optional<std::string> StoredRows::read(const std::string &path)
{
    return m_reader->read(path);
}

} // namespace app::fleet
