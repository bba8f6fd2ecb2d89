#include "app/authoring/library_writer.h"

#include "app/authoring/pattern_writer.h"
#include "app/authoring/record_builder.h"
#include "app/authoring/stored_order.h"
#include "app/problem.h"

#include "uf_part.h"
#include "ug_exception.hxx"

#include <filesystem>

namespace app::authoring {

namespace {

namespace fs = std::filesystem;

void replaceFile(const fs::path &fresh, const fs::path &final)
{
    std::error_code error;
    fs::rename(fresh, final, error);
    if (error)
        throw Problem(final.string() + ": cannot be written (" + error.message() +
                      "): check the folder's permissions");
}

} // namespace

WrittenLibrary writeLibrary(const Library &library, const std::string &name,
                            const std::string &folder, const RecordFile *keepOrderOf)
{
    const fs::path definitions = fs::path(folder) / "format_defs";
    const fs::path patterns = fs::path(folder) / "patterns";
    std::error_code error;
    fs::create_directories(definitions, error);
    fs::create_directories(patterns, error);
    if (error)
        throw Problem(folder + ": cannot be made (" + error.message() + "): choose another -o");

    WrittenLibrary written;
    // Patterns first: each is a part of its own, and the definition part is the work part afterwards.
    const auto draw = [&](const std::string &pattern, const Art &art) {
        if (pattern.empty()) return;
        writePattern(patterns.string(), pattern, art, library.units);
        ++written.patterns;
    };
    for (const Format &format : library.formats)
        for (const Size &size : format.sizes)
            draw(frameOf(format, size, library.units), size.frame);
    for (const Block &block : library.blocks) draw(patternOf(block, library.units), block.art);
    std::vector<RecordTree> records = recordsOf(library);
    if (keepOrderOf) keepOrder(records, keepOrderOf->records);

    const fs::path final = definitions / (name + ".prt");
    const fs::path fresh = definitions / ("." + name + ".new.prt");
    fs::remove(fresh, error);
    tag_t part = NULL_TAG;
    if (const int code = UF_PART_new(fresh.c_str(), library.units, &part))
        throw Problem::ofPart(fresh.string(), code);
    writeRecords(records);
    if (const int code = UF_PART_save()) throw Problem::ofPart(fresh.string(), code);
    UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    replaceFile(fresh, final);

    written.definitionPart = final.string();
    for (const RecordTree &record : records) {
        written.formats += record.kind->word == "format";
        written.blocks += record.kind->word == "block";
    }
    return written;
}

} // namespace app::authoring
