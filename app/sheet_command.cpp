#include "app/sheet_command.h"

#include "app/formats.h"
#include "app/output.h"
#include "app/problem.h"
#include "app/update.h"

#include "uf_draw.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <map>

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

// What fails in the library knows nothing of files: the place goes before it.
template <class Body> void at(const std::string &place, const Body &body)
{
    try {
        body();
    } catch (const Problem &) {
        throw;
    } catch (const UgException &failure) {
        throw Problem(
            fmt::format("{}: {} ({})", place, failure.askErrorText(), failure.askErrorCode()));
    } catch (const std::exception &failure) {
        throw Problem(fmt::format("{}: {}", place, failure.what()));
    }
}

} // namespace

// The library converts a sheet of an older generation when it is looked at, which a field does that shares
// its value with all sheets, and pairs fields with their definitions by position. Here each gets its own, and
// nothing that it says is lost unseen. A sheet whose definition is not loaded fails when it is looked at.
std::vector<SheetRef> convertOldSheets(const Workspace &work)
{
    std::map<tag_t, SheetBefore> before;
    const std::vector<SheetRef> sheets = work.sheets();
    for (const SheetRef &sheet : sheets) before[sheet.tag] = lookBefore(sheet.tag);
    tag_t current = NULL_TAG;
    UF_DRAW_ask_current_drawing(&current); // none is open: none is opened again
    std::vector<SheetRef> converted;
    std::vector<std::string> losses;
    for (const SheetRef &sheet : sheets) {
        if (!canConvert(sheet.tag, before[sheet.tag])) continue;
        UgException::throwOnFailure(UF_DRAW_open_drawing(sheet.tag));
        const std::string place = placeOf(work, sheet);
        UpdateReport report;
        at(place, [&] { report = updateSheet(sheet.tag, place, before[sheet.tag]); });
        for (const std::string &loss : lossesOf(report))
            losses.push_back(fmt::format("sheet {}, {}", sheet.name, loss));
        converted.push_back(sheet);
    }
    if (current != NULL_TAG) UgException::throwOnFailure(UF_DRAW_open_drawing(current));
    if (!losses.empty())
        throw Problem(fmt::format("{}: is of an older generation, and {} would be lost with it: "
                                  "convert it first with 'qelfmt format update --force {}'",
                                  work.path(), joined(losses, "; "), work.path()));
    return converted;
}

int changeSheet(const Options &options, const SheetTarget &target,
                const std::function<void(Workspace &, const SheetRef &)> &change)
{
    Workspace work(options);
    work.open(target.path);
    const SheetRef sheet = work.openSheet(target.sheet);
    for (const SheetRef &converted : convertOldSheets(work))
        printNote(options, placeOf(work, converted) + ": of an older generation, converted");
    at(placeOf(work, sheet), [&] { change(work, sheet); });
    if (!options.dryRun) work.save();
    return kFine;
}

} // namespace app
