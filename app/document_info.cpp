#include "app/document_info.h"

#include "app/drift.h"

#include "content/field.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include "display/note_text.h"
#include "display/pdf_file.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <map>

namespace app {

namespace {

using Values = std::map<std::string, std::string>; // by the field's name in small letters

// The fields that say something of a document, the first before the next.
using Names = std::initializer_list<const char *>;
constexpr Names kTitle{"title"};
constexpr Names kNumber{"number", "dwg_no", "drawing_no"};
constexpr Names kAuthor{"creator", "drawn", "drawn_by", "author"};
constexpr Names kRevision{"revision"};

bool saysSomething(const std::string &field)
{
    const Names all[]{kTitle, kNumber, kAuthor, kRevision};
    return std::any_of(std::begin(all), std::end(all), [&](const Names &names) {
        return std::find(names.begin(), names.end(), field) != names.end();
    });
}

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : static_cast<char>(c);
    });
    return text;
}

// As it is read on the sheet, in one line.
std::string shownValue(const TrFieldBase &field)
{
    std::string text;
    for (const std::string &line : field.GetValue()) {
        const std::string shown = host::display::visibleText(line);
        if (!shown.empty()) text += (text.empty() ? "" : " ") + shown;
    }
    return text;
}

// The first field of a name that says something. Reading would convert the records of older generations:
// such a sheet is drawn as it is and says nothing.
void collect(const SheetRef &sheet, Values &values)
{
    if (hasLegacyRecords(sheet.tag)) return;
    const auto drawing = TrDrawing::getDrawing(sheet.tag);
    if (!drawing->hasFormat()) return;
    for (const auto &block : drawing->format()->getBlocks())
        for (const auto &field : block->getFields()) {
            const std::string name = lowered(field->GetFieldDefName());
            if (!saysSomething(name)) continue;
            std::string &value = values[name];
            if (value.empty()) value = shownValue(*field);
        }
}

void take(std::string &into, const Values &values, Names names)
{
    for (const char *name : names) {
        if (!into.empty()) return;
        const auto found = values.find(name);
        if (found != values.end()) into = found->second;
    }
}

} // namespace

host::display::RenderOptions withDocumentInfo(host::display::RenderOptions options,
                                              const std::vector<SheetRef> &sheets)
{
    Values values;
    for (const SheetRef &sheet : sheets) collect(sheet, values);
    take(options.title, values, kTitle);
    take(options.subject, values, kNumber);
    take(options.author, values, kAuthor);
    if (options.keywords.empty()) {
        std::string revision;
        take(revision, values, kRevision);
        if (!revision.empty()) options.keywords = "revision " + revision;
    }
    return options;
}

void addDateOption(CLI::App *verb, host::display::RenderOptions &options)
{
    verb->add_option_function<std::string>(
        "--date",
        [&options](const std::string &asked) {
            options.creationDate = asked == "now" ? fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                                                                fmt::gmtime(std::time(nullptr)))
                                                  : asked;
            try {
                host::display::pdfDate(*options.creationDate);
            } catch (const host::display::RenderError &wrong) {
                throw CLI::ValidationError("--date", wrong.what());
            }
        },
        "Creation date of a PDF: now, 2024-05-01 or 2024-05-01T12:00:00Z; none without it");
}

} // namespace app
