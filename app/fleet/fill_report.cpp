#include "app/fleet/fill_report.h"

#include "app/field_fit.h"
#include "app/fleet/drawing_handler.h"
#include "app/fleet/images.h"
#include "app/fleet/report_output.h"
#include "app/fleet/report_rows.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/sheet_command.h"
#include "app/values.h"

#include "content/field.h"

#include "uf_draw.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace app::fleet {

namespace {

namespace fs = std::filesystem;

std::string quoted(const std::string &text) { return compact(text); }

// --- one drawing ----------------------------------------------------------------------------------

struct Change {
    SheetRef sheet;
    FieldName field;
    std::string before;
    std::string after;
};

// The rows against what the drawing holds, before anything is set: a value may be shared by sheets.
class Comparison {
public:
    Comparison(const Workspace &work, const Json &current, bool force)
        : m_work(work), m_current(current), m_force(force), m_sheets(work.sheets())
    {}

    void compare(const ReportRow &row)
    {
        if (row.failed) {
            for (const auto &[name, text] : row.values)
                if (!text.empty())
                    complain(row, fmt::format("{}: nothing could be read of the drawing when "
                                              "the report was made: make a new report",
                                              name));
            return;
        }
        const auto sheet = std::find_if(m_sheets.begin(), m_sheets.end(),
                                        [&](const SheetRef &one) { return one.name == row.sheet; });
        if (sheet == m_sheets.end()) return complainOfSheet(row);
        const Json &now = m_current[static_cast<std::size_t>(sheet - m_sheets.begin())];
        compareFixed(row, now);
        for (const auto &[name, text] : row.values) compareValue(row, *sheet, now, name, text);
    }

    std::vector<Change> finish()
    {
        if (!m_problems.empty()) throw Problem(joined(m_problems, "\n"));
        return std::move(m_changes);
    }

private:
    void complain(const ReportRow &row, const std::string &text)
    {
        m_problems.push_back(
            fmt::format("{}, sheet {}: {} ({})", m_work.path(), row.sheet, text, row.place));
    }

    void complainOfSheet(const ReportRow &row)
    {
        std::vector<std::string> names;
        for (const SheetRef &sheet : m_sheets) names.push_back(sheet.name);
        complain(row, fmt::format("there is no such sheet; there {} {}",
                                  names.size() == 1 ? "is" : "are",
                                  names.empty() ? "none" : joined(names, ", ")));
    }

    // What the definitions make of the sheet may have changed since, whoever filled the report in.
    void compareFixed(const ReportRow &row, const Json &now)
    {
        for (const auto &[column, text] : row.fixed) {
            if (column == "state") continue;
            const std::string cell = fixedCell(now, column);
            if (cell != text)
                complain(row, fmt::format("{} is {}, not {}: it cannot be filled in: put the "
                                          "report's own text back, or make a new report",
                                          column, quoted(cell), quoted(text)));
        }
        if (row.tables && *row.tables != now.value("tables", Json::object()))
            complain(row, "rows of tables are not as the report says: they cannot be filled in: "
                          "change them with 'qelfmt table', or make a new report");
    }

    void compareValue(const ReportRow &row, const SheetRef &sheet, const Json &now,
                      const std::string &name, const std::string &text)
    {
        if (!now.contains("values") || !now["values"].contains(name)) {
            if (text.empty()) return; // a column of other sheets
            const std::vector<std::string> names = namesOf(now);
            return complain(row, fmt::format("no field {}; there {} {}", name,
                                             names.size() == 1 ? "is" : "are",
                                             names.empty() ? "none" : joined(names, ", ")));
        }
        const std::string before = cellOf(now["values"][name]);
        if (asCell(before) == asCell(text)) return;
        const FieldName field = findField(m_work, sheet, name);
        if (!m_force && !isEditable(m_work, sheet, field))
            return complain(row, fmt::format("{} is locked: give --force, or unlock it with "
                                             "'qelfmt field editable'",
                                             name));
        m_changes.push_back({sheet, field, before, text});
    }

    // A cell of a CSV file comes back with plain line breaks.
    static std::string asCell(const std::string &text)
    {
        std::string cell;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
            cell += text[i] == '\r' ? '\n' : text[i];
        }
        return cell;
    }

    static std::vector<std::string> namesOf(const Json &sheet)
    {
        std::vector<std::string> names;
        if (sheet.contains("values"))
            for (const auto &[name, value] : sheet["values"].items()) names.push_back(name);
        return names;
    }

    const Workspace &m_work;
    const Json &m_current;
    const bool m_force;
    const std::vector<SheetRef> m_sheets;
    std::vector<Change> m_changes;
    std::vector<std::string> m_problems;
};

// As the report says it: bytes that are no UTF-8 are replaced there.
Json currentRows(Workspace &work)
{
    const Columns columns({"format", "size", "label", "blocks", "rows", "?*.?*"});
    return Json::parse(compact(sheetRows(work, columns)));
}

// In memory. The sheet that was current stays so.
Json setAll(const Workspace &work, const std::vector<Change> &changes)
{
    tag_t current = NULL_TAG;
    UF_DRAW_ask_current_drawing(&current);
    Json misfits = Json::array();
    for (const Change &change : changes) {
        UgException::throwOnFailure(UF_DRAW_open_drawing(change.sheet.tag));
        setValue(work, change.sheet, change.field, splitLines(change.after));
        if (const auto misfit = misfitOf(*recordOf(change.sheet, change.field)))
            misfits.push_back(fmt::format("{}, {}: {}", placeOf(work, change.sheet),
                                          display(change.field), describe(*misfit)));
    }
    // Sheets may share a value: what was set last would hold for all of them.
    for (const Change &change : changes)
        if (joined(valueOf(work, change.sheet, change.field), "\n") != change.after)
            throw Problem(fmt::format("{}: {} cannot be {}: other sheets that share it were given "
                                      "another value: give all of them the same one",
                                      placeOf(work, change.sheet), display(change.field),
                                      quoted(change.after)));
    if (current != NULL_TAG) UgException::throwOnFailure(UF_DRAW_open_drawing(current));
    return misfits;
}

std::string fillDrawing(Workspace &work, const std::vector<ReportRow> &rows,
                        const FillReportArguments &arguments, bool dryRun)
{
    tag_t current = NULL_TAG;
    UF_DRAW_ask_current_drawing(&current);
    convertOldSheets(work);
    const Json now = currentRows(work);
    Comparison comparison(work, now, arguments.force);
    for (const ReportRow &row : rows) comparison.compare(row);
    const std::vector<Change> changes = comparison.finish();
    if (current != NULL_TAG) UgException::throwOnFailure(UF_DRAW_open_drawing(current));

    Json result{{"result", changes.empty() ? "unchanged" : "filled"}, {"set", Json::array()}};
    for (const Change &change : changes)
        result["set"].push_back({{"sheet", change.sheet.name},
                                 {"field", display(change.field)},
                                 {"before", change.before},
                                 {"after", change.after}});
    result["misfits"] = setAll(work, changes);
    if (arguments.strict && !result["misfits"].empty())
        throw Problem(joined(result["misfits"].get<std::vector<std::string>>(), "\n") +
                      ": nothing is saved");
    if (!changes.empty() && !dryRun) work.save();
    return compact(result);
}

// --- all of them ----------------------------------------------------------------------------------

bool liesBelow(const std::vector<std::string> &folders, const std::string &path)
{
    return std::any_of(folders.begin(), folders.end(), [&](const std::string &folder) {
        return path.starts_with(folder) && (folder == "/" || path[folder.size()] == '/');
    });
}

// The drawings of the report that are meant, in the order of their paths.
std::vector<std::string> chosen(const Options &options, const FillReportArguments &arguments,
                                const RowsOfFiles &rows)
{
    const bool named = !arguments.paths.paths.empty() || !arguments.paths.filesFrom.empty();
    std::set<std::string> wanted;
    if (named) {
        PathArguments whole = arguments.paths;
        whole.shard.clear(); // shares are made of what is to be filled
        for (const std::string &path : collect(whole)) wanted.insert(canonicalPath(path));
    }
    std::vector<std::string> folders;
    for (const std::string &path : arguments.paths.paths)
        if (fs::is_directory(path)) folders.push_back(canonicalPath(path));
    std::vector<std::string> files;
    std::size_t others = 0;
    for (const auto &[file, its] : rows) {
        // What is gone is found in no folder, and yet has to be reported.
        const bool meant = !named || wanted.count(canonicalPath(file)) > 0 ||
                           (!fs::exists(file) && liesBelow(folders, canonicalPath(file)));
        if (meant)
            files.push_back(file);
        else
            ++others;
    }
    if (files.empty())
        throw Problem(arguments.data + ": has no row for the drawings that are named");
    if (others > 0)
        printNote(options, fmt::format("{}: rows of {} that are not named are left out",
                                       arguments.data, counted(others, "drawing")));
    const Shard shard(arguments.paths.shard);
    std::vector<std::string> share;
    for (std::size_t i = 0; i < files.size(); ++i)
        if (shard.holds(i)) share.push_back(files[i]);
    return share;
}

void printDrawing(const std::string &file, const Json &result)
{
    for (const Json &one : result["set"])
        printLine(fmt::format("{}, sheet {}, {}: {} -> {}", file, one["sheet"].get<std::string>(),
                              one["field"].get<std::string>(), quoted(one["before"]),
                              quoted(one["after"])));
}

void print(const Options &options, Run &run)
{
    std::size_t values = 0, filled = 0, unchanged = 0, failed = 0;
    Json all = Json::array();
    run.each([&](const ItemRow &item) {
        Json row{{"file", item.key}};
        if (item.state == ItemState::failed) {
            ++failed;
            row.update(Json{{"result", "failed"}, {"reason", item.text}});
        } else if (item.state == ItemState::done) {
            row.update(Json::parse(item.text));
            values += row["set"].size();
            ++(row["set"].empty() ? unchanged : filled);
            for (const Json &misfit : row["misfits"]) printNote(options, misfit.get<std::string>());
            if (!options.json) printDrawing(item.key, row);
        } else {
            return;
        }
        if (options.json) all.push_back(std::move(row));
    });
    if (options.json) return printJson(all);
    printLine(fmt::format("{} set in {}, {} unchanged{}{}", counted(values, "value"),
                          counted(filled, "drawing"), unchanged,
                          failed > 0 ? fmt::format(", {} failed", failed) : "",
                          options.dryRun ? " (nothing saved)" : ""));
}

} // namespace

int fillFromReport(const Options &options, const FillReportArguments &arguments)
{
    const RowsOfFiles rows = readReport(arguments.data);
    Run run(options, arguments.run,
            fmt::format("fill {} {} --data {} {} {} {}", joined(arguments.paths.paths, " "),
                        arguments.paths.filesFrom + arguments.paths.shard,
                        sumOf(readFile(arguments.data)), arguments.force ? "--force" : "",
                        arguments.strict ? "--strict" : "", options.dryRun ? "--dry-run" : ""),
            chosen(options, arguments, rows));
    const bool dryRun = options.dryRun;
    const RunEnd end = run.execute(
        onDrawings(options, run.keys(), false, [&rows, &arguments, dryRun](Workspace &work) {
            return fillDrawing(work, rows.at(work.path()), arguments, dryRun);
        }));
    print(options, run);
    return end.status();
}

} // namespace app::fleet
