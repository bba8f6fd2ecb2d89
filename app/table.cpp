// table: the rows of a sheet's tables.
#include "app/output.h"
#include "app/problem.h"
#include "app/table_verbs.h"
#include "app/verbs.h"

#include "content/entry.h"
#include "content/table.h"

#include <fmt/format.h>

#include <algorithm>

namespace app {

int readTable(const Options &options, const TableArguments &arguments,
              const std::function<void(const TableRows &)> &read)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        read(TableRows(work, sheet, findTable(work, sheet, arguments.table)));
    });
}

int changeTable(const Options &options, const TableArguments &arguments,
                const std::function<void(const TableRows &)> &change)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        change(TableRows(work, sheet, findTable(work, sheet, arguments.table)));
    });
}

void setRowValue(const Options &options, const TableArguments &arguments, const TableRows &table,
                 const TableRow &row, const std::string &field, const Lines &lines)
{
    const auto misfit = table.set(row, field, lines, arguments.force);
    if (!misfit) return;
    const std::string text =
        fmt::format("{}, row {}, {}: {}", table.place(), row.index, field, describe(*misfit));
    if (arguments.strict) throw Problem(text, kFindings);
    printNote(options, text);
}

namespace {

struct Assignment {
    std::string field;
    Lines lines;
};

std::vector<Assignment> assignmentsOf(const TableRows &table, const std::vector<std::string> &texts)
{
    std::vector<Assignment> all;
    for (const std::string &text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0)
            throw Problem(fmt::format("{}: write FIELD=VALUE", text), kUsage);
        const std::string field = text.substr(0, equals);
        table.requireField(field);
        for (const Assignment &other : all)
            if (other.field == field)
                throw Problem(fmt::format("{} is given twice: write each field once", field),
                              kUsage);
        all.push_back({field, splitLines(text.substr(equals + 1))});
    }
    return all;
}

int addRow(const Options &options, const TableArguments &arguments)
{
    return changeTable(options, arguments, [&](const TableRows &table) {
        const auto values = assignmentsOf(table, arguments.lines);
        const TableRow row = table.append();
        for (const Assignment &value : values)
            setRowValue(options, arguments, table, row, value.field, value.lines);
        if (options.json) return printJson({{"row", row.index}});
        printLine(std::to_string(row.index));
    });
}

int setRow(const Options &options, const TableArguments &arguments)
{
    requireLines("table set", arguments.lines, arguments.clear);
    return changeTable(options, arguments, [&](const TableRows &table) {
        table.requireRow(arguments.row);
        table.requireField(arguments.field);
        setRowValue(options, arguments, table, table.at(arguments.row), arguments.field,
                    arguments.lines);
        if (options.json)
            printJson({{"row", arguments.row},
                       {"field", arguments.field},
                       {"value", toJson(table.value(arguments.row, arguments.field))}});
    });
}

void finish(const Options &options, const TableArguments &arguments, const TableRows &table)
{
    if (arguments.share) table.record().RebroadcastValues();
    if (options.json) printJson({{"rows", table.count()}});
}

int moveRow(const Options &options, const TableArguments &arguments)
{
    return changeTable(options, arguments, [&](const TableRows &table) {
        table.requireRow(arguments.row);
        table.requireRow(arguments.to);
        table.record().moveEntry(static_cast<std::size_t>(arguments.row),
                                 static_cast<std::size_t>(arguments.to));
        finish(options, arguments, table);
    });
}

void requireRows(const TableRows &table, const TableArguments &arguments)
{
    if (arguments.rows.empty() == (arguments.first < 0))
        throw Problem("table hide, show: give rows, or --first COUNT", kUsage);
    for (const int row : arguments.rows) table.requireRow(row);
}

int hideOrShow(const Options &options, const TableArguments &arguments, int hide)
{
    return changeTable(options, arguments, [&](const TableRows &table) {
        requireRows(table, arguments);
        for (const int row : arguments.rows) table.row(row)->SetHideEntry(hide);
        for (int row = 0; row < std::min(arguments.first, table.count()); ++row)
            table.row(row)->SetHideEntry(hide);
        table.record().locate();
        finish(options, arguments, table);
    });
}

int hideRows(const Options &options, const TableArguments &arguments)
{
    return hideOrShow(options, arguments, 1);
}

int showRows(const Options &options, const TableArguments &arguments)
{
    return hideOrShow(options, arguments, 0);
}

int deleteRows(const Options &options, const TableArguments &arguments)
{
    return changeTable(options, arguments, [&](const TableRows &table) {
        table.remove(arguments.rows);
        finish(options, arguments, table);
    });
}

using Run = int (*)(const Options &, const TableArguments &);

// Adds the verbs one after the other; every one works on a table of a sheet.
class TableFamily {
public:
    explicit TableFamily(Command command)
        : m_command(command),
          m_family(command.parser.add_subcommand("table", "The rows of a sheet's tables"))
    {
        m_family->require_subcommand(1);
    }

    CLI::App *add(const char *name, const char *help, Run run)
    {
        CLI::App *verb = m_family->add_subcommand(name, help);
        addTarget(verb, a().target);
        verb->callback([command = m_command, arguments = m_arguments, run] {
            command.chosen = [=, &options = command.options] { return run(options, *arguments); };
        });
        return verb;
    }

    CLI::App *onTable(const char *name, const char *help, Run run)
    {
        CLI::App *verb = add(name, help, run);
        verb->add_option("table", a().table, "TABLE, or BLOCK.TABLE")->required();
        return verb;
    }

    TableArguments &a() { return *m_arguments; }

private:
    Command m_command;
    CLI::App *m_family;
    std::shared_ptr<TableArguments> m_arguments = std::make_shared<TableArguments>();
};

void addReadingVerbs(TableFamily &family)
{
    TableArguments &a = family.a();
    family.add("list", "The tables of the sheet", listTables);
    family.onTable("rows", "Every row with its values", listRows);
    CLI::App *get = family.onTable("get", "One row, or one value of it", getRow);
    get->add_option("row", a.row, "Counted from 0")->required();
    get->add_option("field", a.field, "One of its fields");
    CLI::App *exporting = family.onTable("export", "Rows as CSV", exportRows);
    exporting->add_option("-o,--output", a.file, "FILE.csv instead of the standard output");
    exporting->add_flag("--visible", a.visible, "Without hidden rows");
}

void addValueVerbs(TableFamily &family)
{
    TableArguments &a = family.a();
    CLI::App *adding = family.onTable("add", "Append a row and print its number", addRow);
    adding->add_option("values", a.lines, "FIELD=VALUE");
    CLI::App *set = family.onTable("set", "Set a value, an argument a line", setRow);
    set->add_option("row", a.row, "Counted from 0")->required();
    set->add_option("field", a.field, "One of its fields")->required();
    set->add_option("lines", a.lines, "The lines; '' is an empty one");
    set->add_flag("--clear", a.clear, "Set an empty value");
    CLI::App *importing = family.onTable("import", "Append rows from a CSV file", importRows);
    importing->add_option("file", a.file, "FILE.csv, first line the names of fields")->required();
    importing->add_flag("--replace", a.replace, "Delete the rows there are first");
    for (CLI::App *verb : {adding, set, importing}) {
        verb->add_flag("--force", a.force, "Also locked fields");
        verb->add_flag("--strict", a.strict, "Refuse values that do not fit their cells");
    }
}

void addOrderVerbs(TableFamily &family)
{
    TableArguments &a = family.a();
    CLI::App *move = family.onTable("move", "Give a row another place", moveRow);
    move->add_option("from", a.row, "The row, counted from 0")->required();
    move->add_option("to", a.to, "The number it gets")->required();
    CLI::App *hide = family.onTable("hide", "Take rows out of sight", hideRows);
    CLI::App *show = family.onTable("show", "Bring hidden rows back", showRows);
    CLI::App *remove = family.onTable("delete", "Delete rows; the others close up", deleteRows);
    remove->add_option("rows", a.rows, "Counted from 0")->required();
    for (CLI::App *verb : {hide, show}) {
        verb->add_option("rows", a.rows, "Counted from 0");
        verb->add_option("--first", a.first, "So many of the first rows");
    }
    for (CLI::App *verb : {move, remove})
        verb->add_flag("--share", a.share, "Write the attributes that follow the values anew");
}

} // namespace

void addTableVerbs(Command command)
{
    TableFamily family(command);
    addReadingVerbs(family);
    addValueVerbs(family);
    addOrderVerbs(family);
}

} // namespace app
