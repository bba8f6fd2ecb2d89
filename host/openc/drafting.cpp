#include "openc/drafting.h"

#include "model/calls.h"

#include <cmath>

namespace host::drafting {

Object &requireAnnotation(Tag tag)
{
    host::require(tag != NULL_TAG, UF_DRF_err_null_object);
    Object &object = Session::get().require(tag);
    host::require(object.as<Note>() || object.as<IdSymbol>(), UF_DRF_err_invalid_object);
    return object;
}

Lettering &letteringOf(Object &annotation)
{
    if (Note *note = annotation.as<Note>()) return note->lettering;
    return annotation.as<IdSymbol>()->lettering;
}

Vec3 &originOf(Object &annotation)
{
    if (Note *note = annotation.as<Note>()) return note->origin;
    return annotation.as<IdSymbol>()->origin;
}

NumberedPreferences &numberedOf(Object &annotation)
{
    if (Note *note = annotation.as<Note>()) return note->other;
    return annotation.as<IdSymbol>()->other;
}

std::vector<std::string> linesOf(const Object &annotation)
{
    if (const Note *note = annotation.as<Note>()) return note->lines;
    const IdSymbol &symbol = *annotation.as<IdSymbol>();
    if (symbol.textLines == 2) return {symbol.upper, symbol.lower};
    return {symbol.upper};
}

Lettering letteringForNew(const Part &part)
{
    Lettering lettering = Session::get().drafting.general;
    // The setting may come from work on another part, with a longer font table.
    if (!isInFontTable(part, lettering.font)) lettering.font = 1;
    return lettering;
}

bool isInFontTable(const Part &part, int font)
{
    const auto &names =
        Session::get().requireBody<FontTable>(part.fontTable, UF_DRF_err_invalid_object).names;
    return font >= 1 && static_cast<std::size_t>(font) <= names.size() && !names[font - 1].empty();
}

void requireValid(bool condition) { host::require(condition, UF_DRF_err_invalid_parameter); }

void checkLettering(const Lettering &lettering)
{
    requireValid(lettering.site >= 1 && lettering.site <= 9);
    requireValid(std::isfinite(lettering.size) && lettering.size > 0.0);
    requireValid(std::isfinite(lettering.angle) && std::isfinite(lettering.aspect));
    requireValid(std::isfinite(lettering.charSpace) && std::isfinite(lettering.lineSpace));
}

} // namespace host::drafting
