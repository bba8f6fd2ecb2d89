// What few pictures need stands in libraries of its own beside this one, loaded on first use: Cairo
// and fontconfig bring some twenty libraries, which every start of a program would pay for.
#pragma once

#include "display/render.h"

#include <filesystem>
#include <string>

namespace host::display {

// The folder of libqelfmt-display.
std::filesystem::path libraryFolder();

struct FontFile {
    std::string file; // empty: none
    int index = 0;    // of the face in it
};

// The best outline font of this machine that has the character. RenderError when libqelfmt-fonts
// cannot be loaded.
FontFile systemFontWith(char32_t character);

// The entries of those libraries. They throw what pngOf throws.
extern "C" {
void qelfmt_pixels_png(const DisplayList &list, const RenderOptions &options, RenderResult *result,
                       std::string &bytes);                  // libqelfmt-pixels
void qelfmt_fonts_with(char32_t character, FontFile &found); // libqelfmt-fonts
}

} // namespace host::display
