// Sizes of texts: the host's own figures, from a committed table of the default drafting font's
// advances, so that what is computed is what is drawn. A character size is the height of a capital.
#pragma once

#include "object.h"

#include <string>
#include <string_view>
#include <vector>

namespace host {

// n lines of size s and line space factor f: n s + (n - 1) s f / 2; no lines: 0. From the top of the
// first line's capitals to the last baseline.
double textHeight(std::size_t lines, const Lettering &lettering);
// From baseline to baseline: s + s f / 2.
double linePitch(const Lettering &lettering);
// Width of one UTF-8 line: the advances times size and aspect, plus (charSpace - 1) times 0.2 size
// times aspect after each character but the last.
double lineWidth(std::string_view utf8, const Lettering &lettering);
double textWidth(const std::vector<std::string> &lines, const Lettering &lettering);

// Lower left corner of the text box relative to the origin, before the rotation, for a site 1 to 9.
Vec3 boxOffset(int site, double width, double height);

} // namespace host
