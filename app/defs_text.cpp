// defs dump: definition parts as text.
#include "app/defs_text.h"

#include "app/authoring/cells_text.h"
#include "app/authoring/pattern_reader.h"
#include "app/authoring/record_text.h"
#include "app/defs_files.h"
#include "app/output.h"

#include "uf_part.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <fstream>
#include <map>
#include <memory>
#include <optional>

namespace app {

namespace {

struct DumpArguments {
    std::string part;
    std::string output;
    bool cells = false;
};

void writeText(const std::string &path, const std::string &text)
{
    if (path.empty()) {
        printText(text);
        return;
    }
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) throw Problem(path + ": cannot be written: check the folder and its permissions");
}

std::string cellsOf(const Options &options, const std::string &part,
                    const authoring::RecordFile &file)
{
    std::map<std::string, std::optional<authoring::Art>> known;
    return authoring::cellsToText(file, [&](const std::string &name) {
        const auto [found, isNew] = known.try_emplace(name);
        if (!isNew) return found->second;
        const auto path = findPattern(part, name);
        if (path) found->second = authoring::readPattern(*path);
        if (!found->second)
            printNote(options,
                      fmt::format("{}: {}: it stays by its name", path.value_or(name),
                                  path ? "art cannot say what it draws" : "no such pattern"));
        return found->second;
    });
}

int dump(const Options &options, const DumpArguments &arguments)
{
    Workspace work(options, false);
    const authoring::RecordFile file = readDefinitionPart(work, arguments.part);
    writeText(arguments.output, arguments.cells ? cellsOf(options, arguments.part, file)
                                                : authoring::recordsToText(file));
    for (const std::string &what : file.leftOut)
        fmt::print(stderr, "qelfmt: {}: not in the text: {}\n", arguments.part, what);
    return file.leftOut.empty() ? kFine : kFindings;
}

} // namespace

authoring::RecordFile readDefinitionPart(Workspace &work, const std::string &path)
{
    work.open(path);
    const tag_t part = work.part();
    authoring::RecordFile file = authoring::scanPart(part);
    UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    return file;
}

void addDefinitionTextVerbs(CLI::App *family, Command command)
{
    auto arguments = std::make_shared<DumpArguments>();
    CLI::App *verb = family->add_subcommand("dump", "Write a definition part as text");
    verb->add_option("part", arguments->part, "The definition part")->required();
    verb->add_option("-o,--output", arguments->output, "The text file, if not the standard output");
    verb->add_flag("--cells", arguments->cells, "In the cell form, as far as it goes");
    verb->callback([=] {
        command.chosen = [=, &options = command.options] { return dump(options, *arguments); };
    });
}

} // namespace app
