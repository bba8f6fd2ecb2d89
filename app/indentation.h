// The blanks that the definition of a field put before its first line.
#pragma once

#include <string>

class TrFieldBase;

namespace app {

int blanksBefore(const std::string &text);

// As many as the note was really drawn with, whatever the definition says by now. A field without a note has
// none.
int drawnIndentation(const TrFieldBase &field);

} // namespace app
