#include "uf_ugfont.h"

#include "model/calls.h"
#include "model/session.h"

#include "uf.h"

#include <cstring>

using host::FontTable;
using host::Session;

namespace {

constexpr std::size_t kLongestName = 16;

FontTable &fontTable(tag_t tag)
{
    return Session::get().requireBody<FontTable>(tag, UF_err_wrong_class);
}

} // namespace

extern "C" int UF_UGFONT_add_font(tag_t font_table, int *font_index, char *font_name)
{
    return host::call("UF_UGFONT_add_font", [&] {
        host::require(font_index, UF_err_bad_parameter_number_2);
        *font_index = 0;
        host::require(font_name && *font_name && std::strlen(font_name) <= kLongestName,
                      UF_err_bad_parameter_number_3);
        fontTable(font_table);
        host::Part &part = *Session::get().require(font_table).part;
        *font_index = Session::get().addFont(part, font_name);
    });
}

// NULL for a slot that was emptied.
extern "C" int UF_UGFONT_ask_font_name(tag_t font_table, int font_index, char **font_name)
{
    return host::call("UF_UGFONT_ask_font_name", [&] {
        host::require(font_name, UF_err_bad_parameter_number_3);
        *font_name = nullptr;
        const auto &names = fontTable(font_table).names;
        host::require(font_index >= 1 && static_cast<std::size_t>(font_index) <= names.size(),
                      UF_err_bad_parameter_number_2);
        const std::string &name = names[font_index - 1];
        if (!name.empty()) *font_name = host::allocateText(name);
    });
}

// Slots, the empty ones too.
extern "C" int UF_UGFONT_ask_number_of_fonts(tag_t font_table, int *number_of_fonts)
{
    return host::call("UF_UGFONT_ask_number_of_fonts", [&] {
        host::require(number_of_fonts, UF_err_bad_parameter_number_2);
        *number_of_fonts = static_cast<int>(fontTable(font_table).names.size());
    });
}
