// The fonts of this machine, as fontconfig knows them: the library libqelfmt-fonts.
#include "display/on_demand.h"

#include <memory>

#include <fontconfig/fontconfig.h>

namespace host::display {

extern "C" void qelfmt_fonts_with(char32_t character, FontFile &found)
{
    static const std::unique_ptr<FcConfig, decltype(&FcConfigDestroy)> config(
        FcInitLoadConfigAndFonts(), FcConfigDestroy); // ours alone: nobody else's may be ended
    FcPattern *pattern = FcPatternCreate();
    FcCharSet *wanted = FcCharSetCreate();
    FcCharSetAddChar(wanted, character);
    FcPatternAddCharSet(pattern, FC_CHARSET, wanted);
    FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
    FcPatternAddBool(pattern, FC_OUTLINE, FcTrue);
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8 *>("sans-serif"));
    FcConfigSubstitute(config.get(), pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);

    FcResult result = FcResultNoMatch;
    FcFontSet *fonts = FcFontSort(config.get(), pattern, FcFalse, nullptr, &result);
    for (int i = 0; fonts && i < fonts->nfont && found.file.empty(); ++i) {
        FcCharSet *has = nullptr;
        FcChar8 *file = nullptr;
        FcBool outline = FcFalse;
        FcPatternGetBool(fonts->fonts[i], FC_OUTLINE, 0, &outline);
        if (outline && FcPatternGetCharSet(fonts->fonts[i], FC_CHARSET, 0, &has) == FcResultMatch &&
            FcCharSetHasChar(has, character) &&
            FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &file) == FcResultMatch) {
            found.file = reinterpret_cast<const char *>(file);
            FcPatternGetInteger(fonts->fonts[i], FC_INDEX, 0, &found.index);
        }
    }
    if (fonts) FcFontSetDestroy(fonts);
    FcCharSetDestroy(wanted);
    FcPatternDestroy(pattern);
}

} // namespace host::display
