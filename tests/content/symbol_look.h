// How an ID symbol looks, as the platform tells it.
#pragma once

#include "tests/content/block_on_sheet.h"

struct SymbolLook {
    int type, density;
    double size, textSize, aspect;
    int color, layer;
    Lines text;
};

inline SymbolLook lookOf(const QelFmt::SymbolBase &symbol)
{
    const tag_t object = symbol.GetSymbolObject()->getTag();
    int ints[100];
    double reals[70];
    char radius[27], diameter[27];
    UgException::throwOnFailure(
        UF_DRF_ask_object_preferences(object, ints, reals, radius, diameter));
    int count = 0;
    UF_DRF_draft_aid_text_info_t *info = nullptr;
    UgException::throwOnFailure(UF_DRF_ask_draft_aid_text_info(object, &count, &info));
    Lines text;
    for (int i = 0; i < info->num_lines; ++i) text.push_back(info->text[i].full_string);
    UF_DRF_free_text(count, &info);
    const UF_OBJ_disp_props_t display = shown(object);
    return {ints[UF_DRF_MPI_id_symbol_type],
            ints[UF_DRF_MPI_id_symbol_density],
            reals[UF_DRF_MPR_id_symbol_size],
            reals[UF_DRF_MPR_char_size],
            reals[UF_DRF_MPR_aspect_ratio],
            display.color,
            display.layer,
            text};
}

inline At placeOf(const QelFmt::SymbolBase &symbol)
{
    double origin[3] = {};
    UgException::throwOnFailure(UF_DRF_ask_origin(symbol.GetSymbolObject()->getTag(), origin));
    return {origin[0], origin[1]};
}
