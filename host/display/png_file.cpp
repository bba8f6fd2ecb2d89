#include "display/png_file.h"

#include <cmath>

#include <zlib.h>

#include "display/render.h"

namespace host::display {

struct PngFile::Deflater {
    z_stream stream{};
    std::string data; // compressed, not yet in a chunk

    Deflater()
    {
        if (deflateInit(&stream, 6) != Z_OK)
            throw RenderError("Out of memory for a picture; choose a lower resolution.");
    }
    ~Deflater() { deflateEnd(&stream); }

    void feed(std::string &rows, int flush)
    {
        stream.next_in = reinterpret_cast<Bytef *>(rows.data());
        stream.avail_in = static_cast<uInt>(rows.size());
        char buffer[16384];
        do {
            stream.next_out = reinterpret_cast<Bytef *>(buffer);
            stream.avail_out = sizeof buffer;
            deflate(&stream, flush);
            data.append(buffer, sizeof buffer - stream.avail_out);
        } while (stream.avail_out == 0);
    }
};

namespace {

std::string bigEndian(std::uint32_t value)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xff);
    return bytes;
}

} // namespace

PngFile::PngFile(unsigned width, unsigned height, bool colour, double dotsPerInch)
    : m_width(width), m_colour(colour), m_deflater(std::make_unique<Deflater>()),
      m_row(width * (colour ? 3u : 1u) + 1u, '\0'), m_previous(width * (colour ? 3u : 1u), '\0'),
      m_bytes("\x89PNG\r\n\x1a\n")
{
    std::string header = bigEndian(width) + bigEndian(height);
    header += {'\x08', static_cast<char>(colour ? 2 : 0), '\0', '\0', '\0'};
    chunk("IHDR", header);
    const std::string perMetre =
        bigEndian(static_cast<std::uint32_t>(std::lround(dotsPerInch / 0.0254)));
    chunk("pHYs", perMetre + perMetre + '\x01');
}

PngFile::~PngFile() = default;

void PngFile::chunk(const char *type, const std::string &data)
{
    const std::string body = type + data;
    m_bytes += bigEndian(static_cast<std::uint32_t>(data.size())) + body;
    const uLong sum =
        crc32(0, reinterpret_cast<const Bytef *>(body.data()), static_cast<uInt>(body.size()));
    m_bytes += bigEndian(static_cast<std::uint32_t>(sum));
}

// The difference to the row above is nothing nearly everywhere on a drawing.
void PngFile::row(const std::uint32_t *pixels)
{
    constexpr char up = 2;
    m_row[0] = up;
    char *out = m_row.data() + 1;
    char *above = m_previous.data();
    const auto put = [&](std::uint32_t sample) {
        *out++ = static_cast<char>(sample - static_cast<unsigned char>(*above));
        *above++ = static_cast<char>(sample);
    };
    for (unsigned i = 0; i < m_width; ++i) {
        if (m_colour) {
            put(pixels[i] >> 16 & 0xff);
            put(pixels[i] >> 8 & 0xff);
        }
        put(pixels[i] & 0xff);
    }
    m_deflater->feed(m_row, Z_NO_FLUSH);
}

std::string PngFile::finish()
{
    std::string nothing;
    m_deflater->feed(nothing, Z_FINISH);
    chunk("IDAT", m_deflater->data);
    chunk("IEND", "");
    return std::move(m_bytes);
}

} // namespace host::display
