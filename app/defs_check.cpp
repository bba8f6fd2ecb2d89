// defs check: what would be wrong on a drawing, before anybody draws it.
#include "app/authoring/check.h"
#include "app/authoring/pattern_reader.h"
#include "app/authoring/record_builder.h"
#include "app/authoring/rollout.h"
#include "app/defs_files.h"
#include "app/defs_text.h"
#include "app/output.h"
#include "app/problem.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>

namespace app {

namespace {

using authoring::CheckedFile;

struct CheckArguments {
    std::vector<std::string> files;
    std::string against;
    std::string language = "en";
};

// Art of a text is not a file yet.
std::set<std::string> ownPatterns(const authoring::Library &library)
{
    std::set<std::string> names;
    for (const authoring::Format &format : library.formats)
        for (const authoring::Size &size : format.sizes)
            names.insert(authoring::frameOf(format, size, library.units));
    for (const authoring::Block &block : library.blocks)
        names.insert(authoring::patternOf(block, library.units));
    return names;
}

CheckedFile checkedFile(const NamedFile &file)
{
    const auto own = file.library ? ownPatterns(*file.library) : std::set<std::string>();
    const auto pathOf = file.patternPath;
    return {file.name, file.records, file.library ? &*file.library : nullptr,
            [own, pathOf](const std::string &name) {
                return own.contains(name) || pathOf(name).has_value();
            },
            [pathOf](const std::string &name) {
                const auto path = pathOf(name);
                return path ? authoring::readPattern(*path) : std::nullopt;
            }};
}

std::vector<authoring::Complaint> findingsOf(const std::vector<NamedFile> &files)
{
    std::vector<authoring::Complaint> findings;
    std::vector<CheckedFile> checked;
    for (const NamedFile &file : files) {
        findings.insert(findings.end(), file.complaints.begin(), file.complaints.end());
        if (file.complaints.empty()) checked.push_back(checkedFile(file));
    }
    // Blocks that a file in error defines would be missed by the others.
    if (findings.empty()) findings = authoring::checkDefinitions(checked);
    return findings;
}

// What placed blocks would undergo, each at its place in the new files.
std::vector<authoring::Complaint> rolloutOf(Workspace &work, const std::string &old,
                                            const std::vector<NamedFile> &files)
{
    std::vector<authoring::RecordTree> all;
    std::vector<std::string> names; // of the files that the records are from
    for (const NamedFile &file : files) {
        all.insert(all.end(), file.records.begin(), file.records.end());
        names.resize(all.size(), file.name);
    }
    std::vector<authoring::Complaint> findings;
    const auto before = readOlderPart(work, "--against", old).records;
    for (const authoring::Consequence &one : authoring::rollout(before, all, old))
        findings.push_back(
            {one.record ? names[*one.record] : old, one.at, one.where, "", one.what});
    return findings;
}

Json toJson(const authoring::Complaint &finding)
{
    Json json{{"file", finding.file}};
    if (finding.at.line != 0) {
        json["line"] = finding.at.line;
        json["column"] = finding.at.column;
    }
    json["where"] = finding.where;
    json["key"] = finding.key;
    json["text"] = finding.text;
    return json;
}

int check(const Options &options, const CheckArguments &arguments)
{
    Workspace work(options, false);
    std::vector<NamedFile> files;
    std::optional<Problem> unreadable;
    for (const std::string &path : arguments.files) {
        try {
            if (!std::filesystem::exists(path))
                throw Problem(path + ": cannot be opened: check the path");
            files.push_back(readEither(work, path, arguments.language));
        } catch (const Problem &problem) { // said behind what the others give
            if (!unreadable) unreadable = problem;
        } catch (const authoring::Complaints &complaints) {
            files.emplace_back().name = path;
            files.back().complaints = complaints.all();
        }
    }
    std::vector<authoring::Complaint> findings = findingsOf(files);
    const bool readable = std::all_of(
        files.begin(), files.end(), [](const NamedFile &file) { return file.complaints.empty(); });
    if (!arguments.against.empty() && readable && !unreadable)
        for (auto &change : rolloutOf(work, arguments.against, files)) findings.push_back(change);
    if (options.json) {
        Json all = Json::array();
        for (const auto &finding : findings) all.push_back(toJson(finding));
        printJson(all);
    } else {
        for (const auto &finding : findings) printLine(authoring::toText(finding));
    }
    if (unreadable) throw Problem(*unreadable);
    return findings.empty() ? kFine : kFindings;
}

} // namespace

void addDefinitionCheckVerb(CLI::App *family, Command command)
{
    auto arguments = std::make_shared<CheckArguments>();
    CLI::App *verb = family->add_subcommand("check", "Look for what would be wrong on a drawing");
    verb->add_option("files", arguments->files, "Definition texts and parts")->required();
    verb->add_option("--against", arguments->against,
                     "An older definition part: what a rollout does to placed blocks");
    verb->add_option("--language", arguments->language, "Of labels that are given in several");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return check(options, *arguments); };
    });
}

} // namespace app
