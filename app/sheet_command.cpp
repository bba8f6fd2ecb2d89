#include "app/sheet_command.h"

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

int changeSheet(const Options &options, const SheetTarget &target,
                const std::function<void(Workspace &, const SheetRef &)> &change)
{
    return readSheet(options, target, [&](Workspace &work, const SheetRef &sheet) {
        change(work, sheet);
        if (!options.dryRun) work.save();
    });
}

} // namespace app
