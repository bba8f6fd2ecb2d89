#include "app/sheet_command.h"

#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/update.h"

#include <fmt/format.h>

namespace app {

void addTarget(CLI::App *verb, SheetTarget &target)
{
    verb->add_option("part", target.path, "The drawing")->required();
    verb->add_option("-s,--sheet", target.sheet, "The sheet; not needed when there is one");
}

int readSheet(const Options &options, const SheetTarget &target,
              const std::function<void(Workspace &, const SheetRef &)> &read)
{
    Workspace work(options);
    work.open(target.path);
    read(work, work.openSheet(target.sheet));
    return kFine;
}

namespace {

// The library converts a sheet of an older generation when it is looked at, and pairs fields with their
// definitions by position. Here each gets its own, and nothing that it says is lost unseen.
void convert(const Options &options, const Workspace &work, const SheetRef &sheet)
{
    const SheetBefore before = lookBefore(sheet.tag);
    if (!before.legacy) return;
    const std::string place = placeOf(work, sheet);
    const auto losses = lossesOf(updateSheet(sheet.tag, place, before));
    if (!losses.empty())
        throw Problem(fmt::format("{}: is of an older generation, and {} would be lost with it: "
                                  "convert it first with 'qelfmt format update --force {}'",
                                  place, joined(losses, "; "), work.path()));
    printNote(options, place + ": of an older generation, converted");
}

} // namespace

int changeSheet(const Options &options, const SheetTarget &target,
                const std::function<void(Workspace &, const SheetRef &)> &change)
{
    return readSheet(options, target, [&](Workspace &work, const SheetRef &sheet) {
        convert(options, work, sheet);
        change(work, sheet);
        if (!options.dryRun) work.save();
    });
}

} // namespace app
