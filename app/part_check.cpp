// part check: what is wrong with drawings as files.
#include "app/output.h"
#include "app/part_verbs.h"
#include "app/readable.h"

#include "udo/class_names.h"

#include "nxhost/part_files.h"
#include "uf.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <memory>

namespace app {

namespace {

// Formats stand on sheets; what they are made of hangs below them. Definitions of formats and blocks
// stand by themselves in definition parts.
nxhost::PartRules recordRules()
{
    using namespace QelFmt;
    return {{kBlockV1Classname, kZemBlockV1Classname, kBlockLocationV2Classname,
             kBlockLocationV1Classname, kLocationV1Classname, kSizeLocationV1Classname,
             kEntryV1Classname, kEntryV2Classname, kZemEntryV1Classname, kFieldV1Classname,
             kZemFieldV1Classname, kFieldDefV1Classname, kFormatSizeV1Classname, kSymbolV1Classname,
             kTableV1Classname, kZemTableV1Classname, kTableDefV1Classname},
            {kFormatV1Classname}};
}

struct Checked {
    std::string path;
    std::string trouble; // it cannot be looked at; empty: it was
    nxhost::PartCheck result;
};

Checked check(const std::string &path)
{
    try {
        return {path, {}, nxhost::checkPartFile(path, recordRules())};
    } catch (const UgException &failure) {
        return {path, Problem::ofPart(path, failure.askErrorCode()).what(), {}};
    }
}

Json toJson(const Checked &checked)
{
    Json one{{"part", checked.path}};
    if (!checked.trouble.empty()) {
        one["error"] = checked.trouble;
        return one;
    }
    one["opens"] = checked.result.refusal.empty();
    if (!checked.result.refusal.empty()) one["refusal"] = checked.result.refusal;
    one["objects"] = checked.result.objects;
    one["findings"] = Json::array();
    for (const nxhost::PartFinding &finding : checked.result.findings) {
        Json entry{{"kind", finding.kind}};
        if (finding.object) entry["object"] = finding.object;
        entry["text"] = finding.text;
        one["findings"].push_back(entry);
    }
    return one;
}

void print(const Options &options, const Checked &checked)
{
    if (!checked.trouble.empty()) {
        fmt::print(stderr, "qelfmt: {}\n", checked.trouble);
        return;
    }
    for (const nxhost::PartFinding &finding : checked.result.findings)
        printLine(readable(fmt::format("{}: {}: {}", checked.path, finding.kind, finding.text)));
    const std::size_t n = checked.result.findings.size();
    if (!checked.result.refusal.empty())
        printNote(options,
                  fmt::format("{}: cannot be opened; what can be read: qelfmt part salvage "
                              "{} -o NEW.qdraw",
                              checked.path, checked.path));
    else if (n == 0)
        printNote(options, fmt::format("{}: {} objects, nothing found", checked.path,
                                       checked.result.objects));
}

int checkParts(const Options &options, const std::vector<std::string> &paths)
{
    UgException::throwOnFailure(UF_initialize());
    int status = kFine;
    Json all = Json::array();
    for (const std::string &path : paths) {
        const Checked checked = check(path);
        const int one = !checked.trouble.empty()          ? kInput
                        : checked.result.findings.empty() ? kFine
                                                          : kFindings;
        status = std::max(status, one);
        if (options.json)
            all.push_back(toJson(checked));
        else
            print(options, checked);
    }
    if (options.json) printJson(all);
    return status;
}

} // namespace

void addPartCheckVerb(CLI::App *family, Command command)
{
    auto paths = std::make_shared<std::vector<std::string>>();
    CLI::App *verb = family->add_subcommand(
        "check", "Look for damage, dangling links, orphans and condemned objects");
    verb->add_option("parts", *paths, "Drawings or definition parts")->required();
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return checkParts(options, *paths); };
    });
}

} // namespace app
