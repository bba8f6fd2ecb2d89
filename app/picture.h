// Sheets as pictures, by the ending of the file.
#pragma once

#include "app/workspace.h"

#include "display/render.h"

#include <string>
#include <vector>

namespace app {

bool isPicture(const std::string &path); // .pdf, .svg or .png
// A Problem unless the path is a picture's or ends in .qdraw.
void requirePictureOrDrawing(const std::string &path);

// A PDF has a page a sheet; an SVG or PNG shows one sheet. What the file says of itself comes from the title
// block (document_info.h), unless the options have it.
host::display::RenderResult drawSheets(const std::vector<SheetRef> &sheets, const std::string &path,
                                       const host::display::RenderOptions &options = {});

// What is to be said of a picture: the fonts that were taken where the drafting font lacks characters.
std::vector<std::string> notesOf(const host::display::RenderResult &result);

// The files that the sheets are drawn to: of several in an SVG or PNG each has its own, told apart by the
// sheet's name; a PDF has them all. A Problem when two sheets would have one file.
std::vector<std::string> pictureNames(const std::vector<SheetRef> &sheets, const std::string &path);

} // namespace app
