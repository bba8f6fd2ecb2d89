// Opens what the C client made, reads it through the exported classes and draws it.
#include "content/field.h"
#include "display/render.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <trv_fmt.h>

#include <uf.h>
#include <uf_draw.h>
#include <uf_part.h>
#include <ug_exception.hxx>

#include <iostream>

int main(int argc, char **argv)
{
    if (argc != 3) return 2;
    UF_initialize();
    if (TRV_FMT_initialize()) return 1;
    tag_t part = NULL_TAG;
    UF_PART_load_status_t status{};
    UgException::throwOnFailure(UF_PART_open(argv[1], &part, &status));
    UF_PART_free_load_status(&status);
    int count = 0;
    tag_t *sheets = nullptr;
    UgException::throwOnFailure(UF_DRAW_ask_drawings(&count, &sheets));
    const tag_t sheet = count == 1 ? sheets[0] : NULL_TAG;
    UF_free(sheets);
    const auto format = TrDrawing::getDrawing(sheet)->format();
    for (const auto &block : format->getBlocks())
        for (const auto &field : block->getFields())
            if (field->GetFieldDefName() == "title") std::cout << field->GetValue().at(0) << "\n";
    host::display::writePdf({sheet}, argv[2], {});
    TRV_FMT_terminate();
    UF_terminate();
}
