#include "app/values.h"

#include "app/problem.h"

#include "api/trv_fmt.h"
#include "content/field.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <fmt/format.h>

#include <fstream>

namespace app {

namespace {

// A list that the library filled.
class FilledList {
public:
    FilledList() = default;
    ~FilledList() { TRV_FMT_free_value(&list); }
    FilledList(const FilledList &) = delete;
    FilledList &operator=(const FilledList &) = delete;

    Lines lines() const { return {list.values, list.values + list.num_values}; }

    TRV_FMT_value_list_t list{0, nullptr};
};

std::string place(const Workspace &work, const SheetRef &sheet)
{
    return fmt::format("{}, sheet {}", work.path(), sheet.name);
}

std::string display(const FieldName &name) { return name.block + "." + name.field; }

Lines linesOf(const Json &value, const std::string &where)
{
    if (value.is_string()) return {value.get<std::string>()};
    if (value.is_number() || value.is_boolean()) return {value.dump()};
    if (value.is_null()) return {""};
    Lines lines;
    if (value.is_array()) {
        for (const Json &line : value) {
            if (!line.is_string()) break;
            lines.push_back(line.get<std::string>());
        }
        if (lines.size() == value.size()) return lines;
    }
    throw Problem(where + ": a value must be a text, a number or a list of texts");
}

} // namespace

std::vector<std::string> blocksOf(const Workspace &work, const SheetRef &sheet)
{
    FilledList blocks;
    checkLibrary(TRV_FMT_ask_blocks_on_drawing(sheet.tag, &blocks.list), place(work, sheet));
    return blocks.lines();
}

Lines valueOf(const Workspace &work, const SheetRef &sheet, const FieldName &name)
{
    FilledList value;
    checkLibrary(
        TRV_FMT_ask_field_value(sheet.tag, name.block.c_str(), name.field.c_str(), &value.list),
        place(work, sheet));
    return value.lines();
}

void setValue(const Workspace &work, const SheetRef &sheet, const FieldName &name,
              const Lines &lines)
{
    std::vector<char *> texts;
    for (const std::string &line : lines) texts.push_back(const_cast<char *>(line.c_str()));
    const TRV_FMT_value_list_t list{static_cast<int>(texts.size()), texts.data()};
    checkLibrary(TRV_FMT_set_field_value(sheet.tag, name.block.c_str(), name.field.c_str(), &list),
                 fmt::format("{}, {}", place(work, sheet), display(name)));
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

FieldName findField(const Workspace &work, const SheetRef &sheet, const std::string &text)
{
    std::vector<FieldName> matches;
    std::vector<std::string> all;
    for (const FieldName &name : fieldsOf(sheet)) {
        if (display(name) == text) return name;
        if (name.field == text) matches.push_back(name);
        all.push_back(display(name));
    }
    if (matches.size() == 1) return matches.front();
    if (matches.size() > 1)
        throw Problem(fmt::format("{}: several blocks have a field {}: write BLOCK.{}",
                                  place(work, sheet), text, text));
    throw Problem(fmt::format("{}: no field {}; there {} {}", place(work, sheet), text,
                              all.size() == 1 ? "is" : "are",
                              all.empty() ? "none" : joined(all, ", ")));
}

DataFile readData(const std::string &path, const std::string &record)
{
    std::ifstream file(path);
    if (!file) throw Problem(path + ": cannot be opened: check the path");
    DataFile data{path, {}};
    try {
        data.values = Json::parse(file);
    } catch (const Json::parse_error &broken) {
        throw Problem(fmt::format("{}: is no JSON: {}", path, broken.what()));
    }
    if (!record.empty()) {
        if (data.values.is_object() && data.values.contains(record))
            data.values = Json(data.values[record]);
        else
            throw Problem(fmt::format("{}: holds no record {}", path, record));
    }
    if (!data.values.is_object())
        throw Problem(path + ": must hold an object of field names to values");
    return data;
}

void fillIn(const Workspace &work, const SheetRef &sheet, const DataFile &data)
{
    std::vector<FieldValue> wanted;
    std::string missing;
    const auto add = [&](const std::string &name, const Json &value) {
        try {
            wanted.push_back(
                {findField(work, sheet, name), linesOf(value, data.path + ", " + name)});
        } catch (const Problem &problem) {
            missing += (missing.empty() ? "" : "\n") + std::string(problem.what());
        }
    };
    for (const auto &[key, value] : data.values.items()) {
        if (!value.is_object()) {
            add(key, value);
            continue;
        }
        for (const auto &[field, inner] : value.items()) add(key + "." + field, inner);
    }
    if (!missing.empty()) throw Problem(missing);
    for (const FieldValue &value : wanted) setValue(work, sheet, value.name, value.lines);
}

Json toJson(const Lines &lines)
{
    if (lines.size() == 1) return lines.front();
    return Json(lines);
}

} // namespace app
