// Formats of sheets.
#include "api/guard.h"
#include "api/lookup.h"
#include "api/trv_fmt.h"

#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"

#include <cstring>
#include <stdexcept>

namespace {

using namespace QelFmt::api;

void addFormat(unsigned tag, const char *format_id, const char *size_id)
{
    const auto drawing = findDrawing(tag);
    if (drawing->hasFormat()) throw std::runtime_error("Format already exists on drawing");
    const auto definition = TrDefinitionFileManager::GetFormatDefinition(text(format_id));
    if (!definition) throw std::runtime_error("No format with ID " + text(format_id));
    const TrFormatSizeV1 size = definition->GetSizeDef(text(size_id));
    if (size.IsNull()) throw std::runtime_error("No size with ID " + text(size_id));
    drawing->addFormat(definition, size);
}

// Cut, never overrun: the buffers hold TRV_FMT_MAX_ID_BUFSIZE bytes.
void copyTo(char *buffer, const std::string &value)
{
    const std::size_t bytes = std::min<std::size_t>(value.size(), TRV_FMT_MAX_ID_BUFSIZE - 1);
    std::memcpy(buffer, value.data(), bytes);
    buffer[bytes] = '\0';
}

void askFormat(unsigned tag, char *format_id, char *size_name)
{
    const auto drawing = findDrawing(tag);
    requireArgument(format_id);
    requireArgument(size_name);
    if (!drawing->hasFormat()) return;
    copyTo(format_id, drawing->format()->GetFormatDefName());
    copyTo(size_name, drawing->format()->GetSizeName());
}

// Runs `work` on the sheet's format; a sheet without one is no error.
template <class Work> int onFormat(unsigned tag, Work &&work)
{
    return guarded([&] {
        const auto drawing = findDrawing(tag);
        if (drawing->hasFormat()) work(*drawing);
    });
}

} // namespace

extern "C" int TRV_FMT_add_format(unsigned drawing, const char *format_id, const char *size_id)
{
    return guarded([&] { addFormat(drawing, format_id, size_id); });
}

extern "C" int TRV_FMT_ask_format(unsigned drawing, char *format_id, char *size_name)
{
    return guarded([&] { askFormat(drawing, format_id, size_name); });
}

extern "C" int TRV_FMT_delete_format(unsigned drawing)
{
    return onFormat(drawing, [](TrDrawing &sheet) { sheet.removeFormat(); });
}

extern "C" int TRV_FMT_update(unsigned drawing)
{
    return onFormat(drawing, [](TrDrawing &sheet) { sheet.updateFormat(); });
}

extern "C" int TRV_FMT_recreate_notes(unsigned drawing)
{
    return onFormat(drawing, [](TrDrawing &sheet) { sheet.format()->recreateNotes(); });
}

extern "C" int TRV_FMT_verify_block_locations(unsigned drawing)
{
    return onFormat(drawing, [](TrDrawing &sheet) { sheet.format()->verifyBlockLocations(); });
}
