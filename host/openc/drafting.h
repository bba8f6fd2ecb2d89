// What the drafting calls share: notes and ID symbols are annotations with a text, a lettering and
// an origin.
#pragma once

#include "model/session.h"

#include "uf_drf.h"

namespace host::drafting {

// A note or an ID symbol; any other object is refused with a drafting code.
Object &requireAnnotation(Tag tag);

Lettering &letteringOf(Object &annotation);
Vec3 &originOf(Object &annotation);
NumberedPreferences &numberedOf(Object &annotation);
std::vector<std::string> linesOf(const Object &annotation); // as stored

// The session's settings, for an object that is about to be made in the part.
Lettering letteringForNew(const Part &part);
bool isInFontTable(const Part &part, int font);

// Refuses with UF_DRF_err_invalid_parameter.
void requireValid(bool condition);
void checkLettering(const Lettering &lettering);

} // namespace host::drafting
