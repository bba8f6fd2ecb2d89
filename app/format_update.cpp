// format check, format update: sheets against the definitions of today.
#include "app/format_verbs.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/sheet_command.h"
#include "app/update.h"
#include "app/update_report.h"

#include "uf_draw.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace app {

namespace {

// The named sheet, or all of them, one after the other; the sheet that was open is open again then.
template <class Body> void onSheets(Workspace &work, const std::string &name, const Body &body)
{
    if (!name.empty()) {
        body(work.openSheet(name));
        return;
    }
    tag_t current = NULL_TAG;
    UF_DRAW_ask_current_drawing(&current); // none is open: none is opened again
    for (const SheetRef &sheet : work.sheets()) {
        UgException::throwOnFailure(UF_DRAW_open_drawing(sheet.tag));
        body(sheet);
    }
    if (current != NULL_TAG) UgException::throwOnFailure(UF_DRAW_open_drawing(current));
}

std::string oneLine(const std::string &text)
{
    if (text.empty()) return "\"\"";
    std::string line = text;
    for (std::size_t at = 0; (at = line.find('\n', at)) != std::string::npos; at += 3)
        line.replace(at, 1, " | ");
    return line;
}

// --- check ------------------------------------------------------------------------------------------

void add(Json &list, const Differences &differences)
{
    for (const Difference &one : differences)
        list.push_back(Json{
            {"where", one.where}, {"slot", one.what}, {"stored", one.stored}, {"disk", one.disk}});
}

Json toJson(const SheetRef &sheet, const SheetDrift &drift)
{
    Json result{{"sheet", sheet.name}, {"state", nameOf(drift.state)}};
    if (drift.state == SheetState::none) return result;
    result["format"] = drift.format;
    result["size"] = drift.size;
    result["differences"] = Json::array();
    add(result["differences"], drift.definition);
    add(result["differences"], drift.placed);
    result["unreadable"] = drift.unreadable;
    result["blocks"] = Json::array();
    for (const BlockDrift &block : drift.blocks) {
        Json one{{"id", block.id}, {"orphan", block.orphan}, {"miswired", block.miswired}};
        one["differences"] = Json::array();
        add(one["differences"], block.definition);
        add(one["differences"], block.placed);
        result["blocks"].push_back(one);
    }
    return result;
}

void print(const std::string &owner, const Differences &differences)
{
    for (const Difference &one : differences)
        printLine(fmt::format("  {}{}{}: {}: {} -> {}", owner, one.where.empty() ? "" : ", ",
                              one.where, one.what, oneLine(one.stored), oneLine(one.disk)));
}

void print(const std::string &place, const SheetDrift &drift)
{
    const std::string format =
        drift.state == SheetState::none ? "" : fmt::format(" ({}/{})", drift.format, drift.size);
    printLine(fmt::format("{}: {}{}", place, nameOf(drift.state), format));
    if (drift.orphan) printLine(fmt::format("  format {}: its definition is gone", drift.format));
    print("format", drift.definition);
    print("format", drift.placed);
    for (const std::string &name : drift.unreadable)
        printLine(
            fmt::format("  pattern {}: its file cannot be read, its art is not compared", name));
    for (const BlockDrift &block : drift.blocks) {
        const std::string owner = "block " + block.id;
        if (block.orphan) printLine(fmt::format("  {}: its definition is gone", owner));
        for (const std::string &field : block.miswired)
            printLine(
                fmt::format("  {}, field {}: shows the definition of another field", owner, field));
        print(owner, block.definition);
        print(owner, block.placed);
    }
}

int check(const Options &options, const SheetTarget &target)
{
    Workspace work(options);
    work.open(target.path);
    // One sheet may look at the others, which converts what is old on them.
    std::vector<tag_t> legacy;
    for (const SheetRef &sheet : work.sheets())
        if (hasLegacyRecords(sheet.tag)) legacy.push_back(sheet.tag);

    bool findings = false;
    Json result = Json::array();
    onSheets(work, target.sheet, [&](const SheetRef &sheet) {
        SheetDrift drift = driftOf(sheet.tag);
        if (std::find(legacy.begin(), legacy.end(), sheet.tag) != legacy.end())
            drift.state = SheetState::legacy;
        findings |= drift.state != SheetState::current && drift.state != SheetState::none;
        findings |= !drift.unreadable.empty();
        if (options.json)
            result.push_back(toJson(sheet, drift));
        else
            print(placeOf(work, sheet), drift);
    });
    if (options.json) printJson(result);
    return findings ? kFindings : kFine;
}

// --- update -----------------------------------------------------------------------------------------

std::string movedText(const BlockUpdate &block)
{
    return block.moved() ? fmt::format(", moved from {}, {} to {}, {}", block.from[0],
                                       block.from[1], block.to[0], block.to[1])
                         : "";
}

void print(const std::string &place, const UpdateReport &report)
{
    printLine(fmt::format("{}: was {}{}", place, nameOf(report.before.state),
                          report.formatChanged ? ", format updated" : ""));
    for (const BlockUpdate &block : report.blocks) {
        const std::string reasons =
            block.reasons.empty() ? "" : " (" + joined(block.reasons, "; ") + ")";
        printLine(fmt::format("  block {}: {}{}{}", block.id, nameOf(block.method), reasons,
                              movedText(block)));
    }
    for (const std::string &id : report.addedBlocks)
        printLine(fmt::format("  block {}: added, it is required now", id));
    for (const ValueChange &value : report.values)
        printLine(fmt::format("  {}.{}: {}: {} -> {}", value.block, value.field, nameOf(value.kind),
                              oneLine(joined(value.before, "\n")),
                              oneLine(joined(value.after, "\n"))));
}

struct UpdateArguments {
    SheetTarget target;
    bool force = false;
};

// All of it happens in memory first, so that what would be lost is known before anything is.
int update(const Options &options, const UpdateArguments &arguments)
{
    const SheetTarget &target = arguments.target;
    Workspace work(options);
    work.open(target.path);
    std::map<tag_t, SheetBefore> before;
    for (const SheetRef &sheet : work.sheets()) before[sheet.tag] = lookBefore(sheet.tag);
    Json result = Json::array();
    std::vector<std::string> losses;
    int updated = 0;
    const auto meant = [&](const SheetRef &sheet) {
        return target.sheet.empty() || sheet.name == target.sheet;
    };
    if (!target.sheet.empty()) work.openSheet(target.sheet); // or there is none of that name
    onSheets(work, "", [&](const SheetRef &sheet) {
        const std::string place = placeOf(work, sheet);
        // What a field shares with other sheets makes the library convert those of an older generation:
        // they are brought up to date with the one that is meant.
        if (!meant(sheet) && !canConvert(sheet.tag, before[sheet.tag])) return;
        if (!storedFormat(sheet.tag) && target.sheet.empty()) return;
        const UpdateReport report = updateSheet(sheet.tag, place, before[sheet.tag]);
        updated += report.changed();
        for (const std::string &loss : lossesOf(report))
            losses.push_back(fmt::format("sheet {}, {}", sheet.name, loss));
        if (options.json)
            result.push_back(toJson(sheet, report));
        else
            print(place, report);
    });
    if (options.json) printJson(result);
    if (!losses.empty() && !arguments.force)
        throw Problem(fmt::format("{}: nothing is saved, since values would be lost: {}. Their "
                                  "fields are gone from the definition: give --force to lose {}",
                                  target.path, joined(losses, "; "),
                                  losses.size() == 1 ? "it" : "them"),
                      kFindings);
    if (!options.dryRun && updated > 0) work.save();
    return kFine;
}

CLI::App *addVerb(CLI::App *family, const char *name, const char *help, SheetTarget &target)
{
    CLI::App *verb = family->add_subcommand(name, help);
    verb->add_option("part", target.path, "The drawing")->required();
    verb->add_option("-s,--sheet", target.sheet, "One sheet; all of them without");
    return verb;
}

} // namespace

void addFormatUpdateVerbs(CLI::App *family, Command command)
{
    auto target = std::make_shared<SheetTarget>();
    addVerb(family, "check", "What differs from the definitions; 1 when something does", *target)
        ->callback([=] {
            command.chosen = [=, &options = command.options] { return check(options, *target); };
        });
    auto arguments = std::make_shared<UpdateArguments>();
    CLI::App *verb =
        addVerb(family, "update", "Bring up to date with the definitions", arguments->target);
    verb->add_flag("-f,--force", arguments->force, "Also when values would be lost");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return update(options, *arguments); };
    });
}

} // namespace app
