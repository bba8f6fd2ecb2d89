#include "app/fleet/stamp_rows.h"

#include "app/definition_folders.h"
#include "app/fill.h"
#include "app/fleet/images.h"
#include "app/fleet/notes_once.h"
#include "app/fleet/private_folder.h"
#include "app/fleet/records.h"
#include "app/formats.h"
#include "app/output.h"
#include "app/picture.h"
#include "app/problem.h"
#include "app/workspace.h"

#include "nxhost/part_files.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <memory>

namespace app::fleet {

namespace {

namespace fs = std::filesystem;

// The drawing that every record starts from, made and read once for all workers: a record costs no more
// than its values and its file.
class Template {
public:
    Template(const Options &options, const StampRowsArguments &arguments)
        : m_path(arguments.templatePath), m_sheet(arguments.sheet)
    {
        if (m_path.empty()) make(options, arguments);
    }

    // From now on it is not read again, by this process and those that it starts.
    void keep()
    {
        try {
            m_kept = std::make_unique<nxhost::KeptPartFile>(m_path);
        } catch (const UgException &failure) {
            throw Problem::ofPart(m_path, failure.askErrorCode());
        }
    }

    const std::string &path() const { return m_path; }
    const std::string &sheet() const { return m_sheet; }

private:
    void make(const Options &options, const StampRowsArguments &arguments)
    {
        const FormatName format = parseFormatName(arguments.format);
        m_folder = std::make_unique<PrivateFolder>();
        m_path = (m_folder->path() / "template.qdraw").string();
        Workspace work(options);
        work.create(m_path, unitsOf(format));
        if (m_sheet.empty()) m_sheet = "SHEET1";
        placeFormat(work, work.addSheet(m_sheet), format);
        work.save();
        work.close();
    }

    std::unique_ptr<PrivateFolder> m_folder;
    std::string m_path;
    std::string m_sheet;
    std::unique_ptr<nxhost::KeptPartFile> m_kept;
};

// Opens the template for a record and closes it again.
class Stamper {
public:
    Stamper(const Options &options, const Template &start) : m_work(options, false), m_start(start)
    {}

    template <class Body> std::string with(const Body &body)
    {
        struct Closed {
            Workspace &work;
            ~Closed() { work.close(); }
        };
        m_work.open(m_start.path());
        const Closed closed{m_work};
        return body(m_work, m_work.openSheet(m_start.sheet()));
    }

private:
    Workspace m_work;
    const Template &m_start;
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
               const Template &start)
{
    Stamper(options, start).with([&](Workspace &work, const SheetRef &sheet) {
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
    Json result = Json::array(); // notes
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
            for (std::string &note : notesOf(drawSheets({sheet}, output, arguments.picture)))
                result.push_back(std::move(note));
        }
    }
    return result.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Noted of an item: what stands under its name is the command's own.
constexpr const char *kNew = "new";

// All that the outputs depend on.
std::string commandOf(const Options &options, const StampRowsArguments &arguments)
{
    return fmt::format("stamp {}{} {} --data {} {} -o {} --defs {} {} {} {}", arguments.format,
                       arguments.templatePath.empty()
                           ? std::string()
                           : arguments.templatePath + " " + sumOf(readFile(arguments.templatePath)),
                       arguments.sheet, arguments.data, sumOf(readFile(arguments.data)),
                       arguments.output, joined(options.definitions, ":"),
                       arguments.picture.creationDate.value_or(""),
                       arguments.overwrite ? "--overwrite" : "", options.dryRun ? "--dry-run" : "");
}

} // namespace

int stampRows(const Options &options, const StampRowsArguments &arguments)
{
    if (arguments.format.empty() == arguments.templatePath.empty())
        throw Problem("stamp: give either a format, as in ISO/A3, or --template PART", kUsage);
    const NamePattern pattern(arguments.output, arguments.data);
    std::vector<Record> records = readRecords(arguments.data);
    const std::vector<std::string> outputs = outputsOf(pattern, records, arguments.data);
    requirePictureOrDrawing(arguments.output);
    requireDefinitionFolders(options);
    std::unique_ptr<Template> start;
    if (!records.empty()) {
        start = std::make_unique<Template>(options, arguments);
        dropNames(records, pattern, options, *start);
        start->keep();
    }

    Run run(options, arguments.run, commandOf(options, arguments), outputs);
    const bool drawings = fs::path(arguments.output).extension() == ".qdraw";
    std::vector<bool> mayStand(outputs.size(), !drawings || arguments.overwrite);
    for (std::size_t i = 0; i < outputs.size(); ++i) // made by the run that was killed
        if (run.noteOf(i) == kNew) mayStand[i] = true;

    const RunEnd end = run.execute(
        [&]() -> Handler {
            const auto stamper = std::make_shared<Stamper>(options, *start);
            return [&, stamper](std::size_t item) {
                requireFree(outputs[item], mayStand[item]);
                return stamper->with([&](Workspace &work, const SheetRef &sheet) {
                    return stampOne(work, sheet, records[item], arguments, outputs[item],
                                    options.dryRun);
                });
            };
        },
        [&](std::size_t item) {
            const bool made = run.noteOf(item) == kNew || !fs::exists(outputs[item]);
            return std::string(made && !options.dryRun ? kNew : "");
        });
    Json written = Json::array();
    std::size_t count = 0;
    NotesOnce notes(options);
    run.each([&](const ItemRow &item) {
        if (item.state != ItemState::done) return;
        ++count;
        if (options.json) written.push_back(item.key);
        notes.print(Json::parse(item.text));
    });
    if (options.json)
        printJson(written);
    else
        printNote(options,
                  fmt::format("{} of {} stamped{}", count, counted(records.size(), "record"),
                              options.dryRun ? " (nothing saved)" : ""));
    return end.status();
}

} // namespace app::fleet
