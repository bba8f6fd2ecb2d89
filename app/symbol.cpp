// symbol: the symbols of table rows.
#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/sheet_command.h"
#include "app/symbol_zone.h"
#include "app/table_rows.h"
#include "app/verbs.h"

#include "content/entry.h"
#include "content/symbol.h"
#include "content/table.h"
#include "definitions/table_def.h"
#include "drawing/drawing.h"

#include "point2.hxx"
#include "uf_drf.h"
#include "ug_displayable.hxx"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>

namespace app {

namespace {

struct SymbolArguments {
    SheetTarget target;
    std::string table;
    int row = -1; // all
    std::vector<double> position;
    bool fill = false;
    std::string field;
    bool library = false;
    bool force = false;
};

struct PlacedSymbol {
    int row;
    double x, y;
    Lines lines;
    ZoneNames zone;
};

Lines textOf(const QelFmt::SymbolBase &symbol)
{
    const UgDisplayableObject *object = symbol.GetSymbolObject();
    if (!object) return {};
    int count = 0;
    UF_DRF_draft_aid_text_info_t *texts = nullptr;
    UgException::throwOnFailure(UF_DRF_ask_draft_aid_text_info(object->getTag(), &count, &texts));
    Lines lines;
    for (int i = 0; i < count; ++i)
        for (int j = 0; j < texts[i].num_lines; ++j)
            lines.emplace_back(texts[i].text[j].full_string);
    UF_DRF_free_text(count, &texts);
    return lines;
}

std::vector<PlacedSymbol> symbolsOf(const SheetRef &sheet, const TableRows &table, int only)
{
    std::vector<PlacedSymbol> all;
    for (int row = only < 0 ? 0 : only; row < (only < 0 ? table.count() : only + 1); ++row)
        for (const auto &symbol : table.row(row)->getSymbols())
            all.push_back({row, symbol->GetX(), symbol->GetY(), textOf(*symbol),
                           zoneOf(sheet, symbol->GetX(), symbol->GetY())});
    return all;
}

TableRows tableOf(const Workspace &work, const SheetRef &sheet, const SymbolArguments &arguments)
{
    return TableRows(work, sheet, findTable(work, sheet, arguments.table));
}

// --- place --------------------------------------------------------------------------------------

void requireSymbol(const TableRows &table)
{
    if (table.record().GetDefinition()->GetSymbolType() == 0)
        throw Problem(fmt::format("{}: its rows have no symbol: give the table {} of the "
                                  "definition a key 'symbol:'",
                                  table.place(), table.name().table));
}

// On its edges too.
void requireOnSheet(const TableRows &table, const SheetRef &sheet, double x, double y)
{
    const Point2 size = TrDrawing::getDrawing(sheet.tag)->drawingSize();
    if (x >= 0.0 && x <= size[0] && y >= 0.0 && y <= size[1]) return;
    throw Problem(fmt::format("{}: ({:g}, {:g}) is off the sheet: it is {:g} wide and {:g} high",
                              table.place(), x, y, size[0], size[1]));
}

int placeSymbol(const Options &options, const SymbolArguments &arguments)
{
    return changeSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const TableRows table = tableOf(work, sheet, arguments);
        table.requireRow(arguments.row);
        requireSymbol(table);
        const double point[3] = {arguments.position.at(0), arguments.position.at(1), 0.0};
        requireOnSheet(table, sheet, point[0], point[1]);
        checkLibrary(TRV_FMT_place_symbol(sheet.tag, table.name().block.c_str(),
                                          table.name().table.c_str(), arguments.row, point),
                     fmt::format("{}, row {}", table.place(), arguments.row));
        const ZoneNames zone = zoneOf(sheet, point[0], point[1]);
        if (options.json)
            return printJson(
                {{"row", arguments.row}, {"zone", zone.printed}, {"library_zone", zone.library}});
        printNote(options, fmt::format("{}, row {}: symbol{}", table.place(), arguments.row,
                                       zone.printed.empty() ? "" : " in zone " + zone.printed));
    });
}

// --- list ---------------------------------------------------------------------------------------

int listSymbols(const Options &options, const SymbolArguments &arguments)
{
    return readSheet(options, arguments.target, [&](Workspace &work, const SheetRef &sheet) {
        const TableRows table = tableOf(work, sheet, arguments);
        Json json = Json::array();
        std::vector<std::vector<std::string>> rows;
        for (const PlacedSymbol &symbol : symbolsOf(sheet, table, arguments.row)) {
            json.push_back({{"row", symbol.row},
                            {"x", symbol.x},
                            {"y", symbol.y},
                            {"lines", symbol.lines},
                            {"zone", symbol.zone.printed},
                            {"library_zone", symbol.zone.library}});
            rows.push_back({std::to_string(symbol.row), fmt::format("{:g}", symbol.x),
                            fmt::format("{:g}", symbol.y), joined(symbol.lines, " | "),
                            symbol.zone.printed, symbol.zone.library});
        }
        if (options.json) return printJson(json);
        printTable({"ROW", "X", "Y", "TEXT", "ZONE", "LIBRARY'S ZONE"}, rows);
    });
}

// --- zones --------------------------------------------------------------------------------------

struct RowZones {
    int row;
    std::vector<std::string> zones; // each once, in the symbols' order
};

std::vector<RowZones> zonesOf(const SheetRef &sheet, const TableRows &table,
                              const SymbolArguments &arguments)
{
    std::vector<RowZones> rows;
    for (const PlacedSymbol &symbol : symbolsOf(sheet, table, arguments.row)) {
        if (rows.empty() || rows.back().row != symbol.row) rows.push_back({symbol.row, {}});
        auto &zones = rows.back().zones;
        const std::string &zone = arguments.library ? symbol.zone.library : symbol.zone.printed;
        if (zone.empty())
            throw Problem(table.place() + ": the format's sheet size has no zones: give it zone "
                                          "lengths or numbers in the definition");
        if (std::find(zones.begin(), zones.end(), zone) == zones.end()) zones.push_back(zone);
    }
    return rows;
}

void printZones(const Options &options, const std::vector<RowZones> &zones)
{
    Json json = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (const RowZones &row : zones) {
        json.push_back({{"row", row.row}, {"zones", row.zones}});
        rows.push_back({std::to_string(row.row), joined(row.zones, ", ")});
    }
    if (options.json) return printJson(json);
    printTable({"ROW", "ZONES"}, rows);
}

// The one named, else the one that the definition says is for zones.
std::string zoneField(const TableRows &table, const SymbolArguments &arguments)
{
    if (!arguments.field.empty()) {
        table.requireField(arguments.field);
        return arguments.field;
    }
    for (const TrFieldDefV1 &field : table.record().GetDefinition()->GetFieldDefinitions())
        if (field.GetZoneField() != 0) return field.GetId();
    throw Problem(
        fmt::format("{}: no field is marked as a zone field: name one with --field, of {}",
                    table.place(), joined(table.fields(), ", ")));
}

// Rows without symbols keep what was typed.
void fillZones(const Options &options, const TableRows &table, const SymbolArguments &arguments,
               const std::vector<RowZones> &zones)
{
    const std::string field = zoneField(table, arguments);
    for (const RowZones &row : zones)
        if (const auto misfit =
                table.set(table.at(row.row), field, {joined(row.zones, ", ")}, arguments.force))
            printNote(options, fmt::format("{}, row {}, {}: {}", table.place(), row.row, field,
                                           describe(*misfit)));
}

int symbolZones(const Options &options, const SymbolArguments &arguments)
{
    const auto act = [&](Workspace &work, const SheetRef &sheet) {
        const TableRows table = tableOf(work, sheet, arguments);
        const auto zones = zonesOf(sheet, table, arguments);
        if (arguments.fill) fillZones(options, table, arguments, zones);
        printZones(options, zones);
    };
    return arguments.fill ? changeSheet(options, arguments.target, act)
                          : readSheet(options, arguments.target, act);
}

using Run = int (*)(const Options &, const SymbolArguments &);

} // namespace

void addSymbolVerbs(Command command)
{
    CLI::App *family = command.parser.add_subcommand("symbol", "The symbols of table rows");
    family->require_subcommand(1);
    auto arguments = std::make_shared<SymbolArguments>();
    const auto add = [&](const char *name, const char *help, Run run) {
        CLI::App *verb = family->add_subcommand(name, help);
        addTarget(verb, arguments->target);
        verb->add_option("table", arguments->table, "TABLE, or BLOCK.TABLE")->required();
        verb->callback([=] {
            command.chosen = [=, &options = command.options] { return run(options, *arguments); };
        });
        return verb;
    };
    const auto row = [&](CLI::App *verb) {
        return verb->add_option("row", arguments->row, "Counted from 0");
    };
    const auto rowOrAll = [&](CLI::App *verb) {
        row(verb)->check([](const std::string &text) {
            return text.starts_with('-') ? "rows are counted from 0" : std::string();
        });
    };
    CLI::App *place = add("place", "Put a symbol of a row on the sheet", placeSymbol);
    row(place)->required();
    place->add_option("position", arguments->position, "X Y, from the sheet's lower left corner")
        ->required()
        ->expected(2);
    rowOrAll(add("list", "Where symbols stand and what they say", listSymbols));
    CLI::App *zones = add("zones", "The zones that the symbols of each row lie in", symbolZones);
    rowOrAll(zones);
    zones->add_flag("--fill", arguments->fill, "Write them into the rows' zone field");
    zones->add_option("--field", arguments->field, "The field to fill, if none is a zone field");
    zones->add_flag("--force", arguments->force, "Also when the field is locked");
    zones->add_flag("--library", arguments->library,
                    "The library's zone names instead of the printed ones");
}

} // namespace app
