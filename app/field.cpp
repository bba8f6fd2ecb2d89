// field: the values of a sheet's fields.
#include "app/formats.h"
#include "app/output.h"
#include "app/sheet_command.h"
#include "app/values.h"

#include <fmt/format.h>

namespace app {

namespace {

struct FieldArguments {
    SheetTarget target;
    std::string field;
    std::vector<std::string> lines;
};

int setField(const Options &options, const FieldArguments &arguments)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        setValue(work, sheet, findField(work, sheet, arguments.field), arguments.lines);
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
    const char *naming = "FIELD, or BLOCK.FIELD";
    CLI::App *set = add("set", "Set a value, an argument a line", setField);
    set->add_option("field", arguments->field, naming)->required();
    set->add_option("lines", arguments->lines, "The lines; none sets an empty value");
    add("get", "Print a value, a line a line", getField)
        ->add_option("field", arguments->field, naming)
        ->required();
    add("list", "Print every value", listFields);
}

} // namespace app
