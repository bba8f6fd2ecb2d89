#include "app/fleet/stamp_rows.h"

#include "app/fill.h"
#include "app/fleet/records.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/picture.h"
#include "app/problem.h"
#include "app/workspace.h"

#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <memory>

namespace app::fleet {

namespace {

namespace fs = std::filesystem;

// The drawing that every record starts from, closed again after each.
class Template {
public:
    Template(const Options &options, const StampRowsArguments &arguments)
        : m_work(options, arguments.templatePath.empty()), m_path(arguments.templatePath),
          m_sheet(arguments.sheet)
    {
        if (m_path.empty()) make(arguments);
    }
    ~Template()
    {
        std::error_code ignored;
        if (!m_own.empty()) fs::remove(m_own, ignored);
    }
    Template(const Template &) = delete;
    Template &operator=(const Template &) = delete;

    template <class Body> std::string with(const Body &body)
    {
        struct Closed {
            Workspace &work;
            ~Closed() { work.close(); }
        };
        m_work.open(m_path);
        const Closed closed{m_work};
        return body(m_work, m_work.openSheet(m_sheet));
    }

private:
    // The format is placed once and kept, so that a record costs no more than its values.
    void make(const StampRowsArguments &arguments)
    {
        const FormatName format = parseFormatName(arguments.format);
        m_own = (fs::temp_directory_path() / fmt::format("qelfmt-{}.qdraw", getpid())).string();
        fs::remove(m_own);
        m_work.create(m_own, unitsOf(format));
        if (m_sheet.empty()) m_sheet = "SHEET1";
        placeFormat(m_work, m_work.addSheet(m_sheet), format);
        m_work.save();
        m_work.close();
        m_path = m_own;
    }

    Workspace m_work;
    std::string m_path;
    std::string m_own; // removed in the end
    std::string m_sheet;
};

void makeFolder(const std::string &path)
{
    const fs::path folder = fs::path(path).parent_path();
    if (folder.empty() || fs::is_directory(folder)) return;
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw Problem(
            fmt::format("{}: the folder cannot be made: {}", folder.string(), error.message()));
}

void requireFree(const std::string &path, bool mayStand)
{
    if (mayStand || !fs::exists(path)) return;
    throw Problem(path + ": exists already: give --overwrite, or choose another name");
}

std::vector<std::string> outputsOf(const NamePattern &pattern, const std::vector<Record> &records,
                                   const std::string &data)
{
    std::vector<std::string> outputs;
    std::map<std::string, std::string> owners;
    for (const Record &record : records) {
        outputs.push_back(pattern.nameOf(record, outputs.size()));
        const auto [owner, fresh] = owners.emplace(outputs.back(), record.name);
        if (!fresh)
            throw Problem(fmt::format("{}: records {} and {} would both be written to {}: name the "
                                      "outputs by a field that tells them apart, or by {{index}}",
                                      data, owner->second, record.name, outputs.back()));
    }
    return outputs;
}

// Columns that only name the file are no fields of the sheet.
void dropNames(std::vector<Record> &records, const NamePattern &pattern, const Options &options,
               const StampRowsArguments &arguments)
{
    if (records.empty()) return;
    Template start(options, arguments);
    start.with([&](Workspace &work, const SheetRef &sheet) {
        const Json first = records.front().values; // which loses columns below
        for (const auto &[key, value] : first.items()) {
            if (!pattern.uses(key)) continue;
            try {
                findField(work, sheet, key);
            } catch (const Problem &) {
                for (Record &record : records) record.values.erase(key);
            }
        }
        return std::string();
    });
}

std::string stampOne(Workspace &work, const SheetRef &sheet, const Record &record,
                     const StampRowsArguments &arguments, const std::string &output, bool dryRun)
{
    const std::string place = arguments.data + ", record " + record.name;
    Json result = Json::array();
    try {
        work.speakOf(output);
        for (const MisfitReport &one : fillIn(work, sheet, {place, record.values, true}).misfits)
            result.push_back(
                fmt::format("{}, {}: {}", output, display(one.name), describe(one.misfit)));
    } catch (const Problem &problem) {
        const std::string what = problem.what();
        throw Problem(what.starts_with(place) ? what : place + ": " + what);
    }
    if (!dryRun) {
        makeFolder(output);
        if (fs::path(output).extension() == ".qdraw") {
            work.saveAs(output, true); // only what may be overwritten is still there
        } else {
            drawSheets({sheet}, output, arguments.picture);
        }
    }
    return result.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

int stampRows(const Options &options, const StampRowsArguments &arguments)
{
    if (arguments.format.empty() == arguments.templatePath.empty())
        throw Problem("stamp: give either a format, as in ISO/A3, or --template PART", kUsage);
    const NamePattern pattern(arguments.output);
    std::vector<Record> records = readRecords(arguments.data);
    const std::vector<std::string> outputs = outputsOf(pattern, records, arguments.data);
    requirePictureOrDrawing(arguments.output);
    dropNames(records, pattern, options, arguments);

    Run run(options, arguments.run,
            fmt::format("stamp {}{} {} --data {} -o {} --defs {} {}", arguments.format,
                        arguments.templatePath, arguments.sheet, arguments.data, arguments.output,
                        joined(options.definitions, ":"),
                        arguments.picture.creationDate.value_or("")),
            outputs);
    const bool drawings = fs::path(arguments.output).extension() == ".qdraw";
    std::vector<bool> mayStand(outputs.size(), !drawings || arguments.overwrite);
    for (std::size_t i = 0; i < outputs.size(); ++i) // half done by the run that was interrupted
        if (drawings && run.wasBegun(i)) mayStand[i] = true;

    const RunEnd end = run.execute([&]() -> Handler {
        const auto start = std::make_shared<Template>(options, arguments);
        return [&, start](std::size_t item) {
            requireFree(outputs[item], mayStand[item]);
            return start->with([&](Workspace &work, const SheetRef &sheet) {
                return stampOne(work, sheet, records[item], arguments, outputs[item],
                                options.dryRun);
            });
        };
    });
    Json written = Json::array();
    std::size_t count = 0;
    run.each([&](const ItemRow &item) {
        if (item.state != ItemState::done) return;
        ++count;
        if (options.json) written.push_back(item.key);
        for (const Json &misfit : Json::parse(item.text)) printNote(options, misfit);
    });
    if (options.json)
        printJson(written);
    else
        printNote(options, fmt::format("{} of {} records stamped{}", count, records.size(),
                                       options.dryRun ? " (nothing saved)" : ""));
    return end.status();
}

} // namespace app::fleet
