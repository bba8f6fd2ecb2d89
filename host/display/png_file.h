// The PNG format, written row by row: a sheet at a high resolution does not stand in memory whole.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace host::display {

class PngFile {
public:
    // Grey or colour, eight bits a sample.
    PngFile(unsigned width, unsigned height, bool colour, double dotsPerInch);
    ~PngFile();
    PngFile(const PngFile &) = delete;
    PngFile &operator=(const PngFile &) = delete;

    // Rows of 0x00RRGGBB; of a grey picture only the blue counts.
    void row(const std::uint32_t *pixels);
    std::string finish();

private:
    void chunk(const char *type, const std::string &data);

    struct Deflater;
    unsigned m_width;
    bool m_colour;
    std::unique_ptr<Deflater> m_deflater;
    std::string m_row;      // with the filter's number
    std::string m_previous; // unfiltered samples of the row above
    std::string m_bytes;
};

} // namespace host::display
