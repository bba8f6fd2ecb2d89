#include "display/pdf_file.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "display/render.h"
#include "display/utf8.h"

namespace host::display {

PdfFile::PdfFile() : m_bytes("%PDF-1.7\n%\xe2\xe3\xcf\xd3\n") {} // the second line says "binary"

int PdfFile::reserve()
{
    m_offsets.push_back(0);
    return static_cast<int>(m_offsets.size());
}

void PdfFile::put(int id, std::string_view body)
{
    m_offsets[static_cast<std::size_t>(id - 1)] = place();
    m_bytes.append(std::to_string(id)).append(" 0 obj\n").append(body).append("\nendobj\n");
}

int PdfFile::put(std::string_view body)
{
    const int id = reserve();
    put(id, body);
    return id;
}

void PdfFile::putStream(int id, std::string_view deflatedData, std::string_view entries)
{
    std::string body = "<</Filter/FlateDecode/Length " + std::to_string(deflatedData.size());
    body.append(entries).append(">>stream\n").append(deflatedData).append("\nendstream");
    put(id, body);
}

int PdfFile::putStream(std::string_view deflatedData, std::string_view entries)
{
    const int id = reserve();
    putStream(id, deflatedData, entries);
    return id;
}

std::string PdfFile::take()
{
    m_taken += m_bytes.size();
    return std::exchange(m_bytes, {});
}

std::string PdfFile::finish(int catalog, int info)
{
    const std::size_t table = place();
    const std::string size = std::to_string(m_offsets.size() + 1);
    m_bytes.append("xref\n0 ").append(size).append("\n0000000000 65535 f \n");
    for (const std::size_t offset : m_offsets) {
        char line[32];
        std::snprintf(line, sizeof line, "%010zu 00000 n \n", offset);
        m_bytes += line;
    }
    m_bytes.append("trailer<</Size ").append(size);
    m_bytes.append("/Root ").append(reference(catalog)).append("/Info ").append(reference(info));
    m_bytes.append(">>\nstartxref\n").append(std::to_string(table)).append("\n%%EOF\n");
    return take();
}

std::string reference(int id) { return std::to_string(id) + " 0 R"; }

std::string pdfText(std::string_view utf8)
{
    const bool plain =
        std::all_of(utf8.begin(), utf8.end(), [](char c) { return c >= 0x20 && c < 0x7f; });
    if (plain) {
        std::string text = "(";
        for (const char c : utf8) {
            if (c == '(' || c == ')' || c == '\\') text += '\\';
            text += c;
        }
        return text + ')';
    }
    std::string text = "<FEFF";
    const auto unit = [&](char32_t value) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "%04X", static_cast<unsigned>(value));
        text += hex;
    };
    for (const char32_t c : charactersOf(utf8)) {
        if (c >= 0x10000) {
            unit(0xd800 + ((c - 0x10000) >> 10));
            unit(0xdc00 + ((c - 0x10000) & 0x3ff));
        } else {
            unit(c);
        }
    }
    return text + '>';
}

namespace {

// Digits at a place, as a number between two limits.
bool number(std::string_view text, std::size_t at, std::size_t length, int least, int most)
{
    int value = 0;
    for (std::size_t i = at; i < at + length; ++i) {
        if (i >= text.size() || text[i] < '0' || text[i] > '9') return false;
        value = value * 10 + (text[i] - '0');
    }
    return value >= least && value <= most;
}

int daysIn(int month, int year)
{
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (month == 2) return leap ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

bool isDay(std::string_view text)
{
    if (text.size() < 10 || !number(text, 0, 4, 0, 9999) || text[4] != '-' ||
        !number(text, 5, 2, 1, 12) || text[7] != '-')
        return false;
    const int year = std::stoi(std::string(text.substr(0, 4)));
    const int month = std::stoi(std::string(text.substr(5, 2)));
    return number(text, 8, 2, 1, daysIn(month, year));
}

bool isTime(std::string_view text) // T12:00:00
{
    return text.size() >= 9 && text[0] == 'T' && number(text, 1, 2, 0, 23) && text[3] == ':' &&
           number(text, 4, 2, 0, 59) && text[6] == ':' && number(text, 7, 2, 0, 59);
}

bool isZone(std::string_view text) // nothing, Z or +01:00
{
    if (text.empty() || text == "Z") return true;
    return text.size() == 6 && (text[0] == '+' || text[0] == '-') && number(text, 1, 2, 0, 23) &&
           text[3] == ':' && number(text, 4, 2, 0, 59);
}

} // namespace

std::string pdfDate(std::string_view iso)
{
    const bool hasTime = iso.size() > 10;
    if (!isDay(iso) || (hasTime && (!isTime(iso.substr(10)) || !isZone(iso.substr(19)))))
        throw RenderError("The creation date \"" + std::string(iso) +
                          "\" is not understood; write it as 2024-05-01 or 2024-05-01T12:00:00Z.");
    std::string date = "(D:";
    for (const char c : iso.substr(0, std::min<std::size_t>(iso.size(), 19)))
        if (c >= '0' && c <= '9') date += c;
    const std::string_view zone = hasTime ? iso.substr(19) : std::string_view{};
    if (zone.size() == 6)
        date.append(zone.substr(0, 3)).append("'").append(zone.substr(4, 2)).append("'");
    else
        date += hasTime ? "Z" : "";
    return date + ')';
}

} // namespace host::display
