// field: the values of a sheet's fields.
#include "app/field_fit.h"
#include "app/field_verbs.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/values.h"
#include "app/verbs.h"

#include "content/field.h"

#include <fmt/format.h>

namespace app {

namespace {

// A value that does not fit is set all the same, unless that is not wanted.
void reportFit(const Options &options, const FieldArguments &arguments, const std::string &place,
               const FieldName &name, const TrFieldBase &field)
{
    const auto misfit = misfitOf(field);
    if (options.json) {
        Json json{
            {"block", name.block}, {"field", name.field}, {"value", toJson(field.GetValue())}};
        json["fits"] = !misfit;
        if (misfit) json["misfit"] = toJson(*misfit);
        printJson(json);
    }
    if (!misfit) return;
    const std::string text = fmt::format("{}, {}: {}", place, display(name), describe(*misfit));
    if (arguments.strict) throw Problem(text, kFindings);
    printNote(options, text);
}

int setField(const Options &options, const FieldArguments &arguments)
{
    requireLines("field set", arguments.lines, arguments.clear);
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const FieldName name = findField(work, sheet, arguments.field);
        if (!arguments.force) requireEditable(work, sheet, name);
        setValue(work, sheet, name, arguments.lines);
        reportFit(options, arguments, placeOf(work, sheet), name, *recordOf(sheet, name));
    });
}

int getField(const Options &options, const FieldArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const Lines lines = valueOf(work, sheet, findField(work, sheet, arguments.field));
        if (options.json) return printJson(toJson(lines));
        for (const std::string &line : lines) printLine(line);
    });
}

void printEditable(const Options &options, bool editable)
{
    if (options.json) return printJson(Json(editable));
    printLine(editable ? "yes" : "no");
}

int fieldEditable(const Options &options, const FieldArguments &arguments)
{
    if (arguments.answer.empty())
        return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
            printEditable(options,
                          isEditable(work, sheet, findField(work, sheet, arguments.field)));
        });
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const FieldName name = findField(work, sheet, arguments.field);
        setEditable(work, sheet, name, arguments.answer == "yes");
        printEditable(options, isEditable(work, sheet, name));
    });
}

using Run = int (*)(const Options &, const FieldArguments &);

} // namespace

void addFieldVerbs(Command command)
{
    CLI::App *family = command.parser.add_subcommand("field", "The values of a sheet's fields");
    family->require_subcommand(1);
    auto arguments = std::make_shared<FieldArguments>();
    const auto add = [&](const char *name, const char *help, Run run) {
        CLI::App *verb = family->add_subcommand(name, help);
        addTarget(verb, arguments->target);
        verb->callback([=] {
            command.chosen = [=, &options = command.options] { return run(options, *arguments); };
        });
        return verb;
    };
    const auto name = [&](CLI::App *verb) {
        return verb->add_option("field", arguments->field, "FIELD, or BLOCK.FIELD");
    };
    CLI::App *set = add("set", "Set a value, an argument a line", setField);
    name(set)->required();
    set->add_option("lines", arguments->lines, "The lines; '' is an empty one");
    set->add_flag("--clear", arguments->clear, "Set an empty value");
    set->add_flag("--force", arguments->force, "Also when the field is locked");
    set->add_flag("--strict", arguments->strict, "Refuse a value that does not fit its cell");
    name(add("get", "Print a value, a line a line", getField))->required();
    add("list", "Print every value", listFields);
    name(add("show", "Everything about one field", showField))->required();
    CLI::App *editable = add("editable", "Whether people may change a field", fieldEditable);
    name(editable)->required();
    editable->add_option("answer", arguments->answer, "yes or no; without it the state is printed")
        ->check(CLI::IsMember({"yes", "no"}));
    name(add("sources", "Where values come from, and what they would become", listSources));
}

} // namespace app
