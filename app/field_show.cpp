#include "app/field_fit.h"
#include "app/field_sources.h"
#include "app/field_verbs.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/values.h"

#include "content/field.h"
#include "definitions/field_def.h"

#include "ug_line.hxx"

#include <fmt/format.h>

namespace app {

namespace {

std::vector<std::string> bordersOf(const TrFieldBase &field)
{
    std::vector<std::string> names;
    const auto add = [&](int on, const char *name) {
        if (on != 0) names.emplace_back(name);
    };
    add(field.GetHasBottomBorder(), "bottom");
    add(field.GetHasLeftBorder(), "left");
    add(field.GetHasMiddleBorder(), "middle");
    add(field.GetHasRightBorder(), "right");
    add(field.GetHasTopBorder(), "top");
    return names;
}

Json describeField(const Workspace &work, const SheetRef &sheet, const FieldName &name)
{
    const auto field = recordOf(sheet, name);
    Json json{{"block", name.block},
              {"field", name.field},
              {"value", toJson(field->GetValue())},
              {"note", toJson(field->GetNoteValue())}, // as stored; [] without a note
              {"editable", isEditable(work, sheet, name)},
              {"x", field->GetX()},
              {"y", field->GetY()},
              {"height", field->CalcHeight()},
              {"borders", bordersOf(*field)}};
    if (const TrFieldDefV1 def = field->GetDefinition(); !def.IsNull()) {
        json["cell"] = {def.GetWidth(), def.GetHeight()};
        json["multiline"] = def.GetMultiline() != 0;
        json["font"] = def.GetTextFontName();
        json["text_size"] = def.GetTextSize();
    }
    const auto misfit = misfitOf(*field);
    json["fits"] = !misfit;
    if (misfit) json["misfit"] = toJson(*misfit);
    json["source"] = toJson(sourceOf(*field));
    return json;
}

std::string plain(const Json &value)
{
    return value.is_string() ? value.get<std::string>() : value.dump();
}

void printField(const Json &field)
{
    std::vector<std::vector<std::string>> rows;
    for (const auto &[key, value] : field.items()) {
        if (!value.is_object()) {
            rows.push_back({key, plain(value)});
            continue;
        }
        for (const auto &[inner, text] : value.items())
            rows.push_back({key + " " + inner, plain(text)});
    }
    printTable({"WHAT", "VALUE"}, rows);
}

} // namespace

int listFields(const Options &options, const FieldArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const auto values = valuesOf(work, sheet);
        if (options.json) {
            Json blocks = Json::object();
            for (const FieldValue &value : values)
                blocks[value.name.block][value.name.field] = toJson(value.lines);
            return printJson(blocks);
        }
        std::vector<std::vector<std::string>> rows;
        for (const FieldValue &value : values)
            rows.push_back({value.name.block, value.name.field, joined(value.lines, " | ")});
        printTable({"BLOCK", "FIELD", "VALUE"}, rows);
    });
}

int showField(const Options &options, const FieldArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const Json field = describeField(work, sheet, findField(work, sheet, arguments.field));
        if (options.json) return printJson(field);
        printField(field);
    });
}

int listSources(const Options &options, const FieldArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const auto names = arguments.field.empty()
                               ? fieldsOf(sheet)
                               : std::vector{findField(work, sheet, arguments.field)};
        Json blocks = Json::object();
        std::vector<std::vector<std::string>> rows;
        for (const FieldName &name : names) {
            const FieldSource source = sourceOf(*recordOf(sheet, name));
            blocks[name.block][name.field] = toJson(source);
            rows.push_back({display(name), joined(source.from, ", "),
                            source.recompute ? "recompute" : "typed",
                            source.share + (source.allSheets ? ", all sheets" : ""),
                            joined(source.value, " | "),
                            source.fresh == source.value ? "=" : joined(source.fresh, " | ")});
        }
        if (options.json) return printJson(blocks);
        printTable({"FIELD", "FROM", "KEEP", "SHARED AS", "VALUE", "WOULD BE"}, rows);
    });
}

} // namespace app
