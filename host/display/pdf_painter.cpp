#include "display/pdf_painter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "display/numbers.h"

namespace host::display {

PdfPainter::PdfPainter(const PdfFonts &fonts, bool monochrome, double scale)
    : m_fonts(fonts), m_monochrome(monochrome)
{
    appendNumber(m_content, scale, 9);
    m_content += " 0 0 ";
    appendNumber(m_content, scale, 9);
    m_content += " 0 0 cm 1 j\n";
}

void PdfPainter::number(double value)
{
    appendNumber(m_content, value);
    m_content += ' ';
}

void PdfPainter::point(Place place)
{
    number(place.x);
    number(place.y);
}

void PdfPainter::op(const char *name) { m_content.append(name) += '\n'; }

void PdfPainter::endPath()
{
    if (m_pathEnd) op("S");
    m_pathEnd.reset();
}

void PdfPainter::leaveText()
{
    if (m_inText) op("ET");
    m_inText = false;
}

void PdfPainter::setStroke(const Stroke &stroke)
{
    leaveText();
    if (m_stroke == stroke) return;
    endPath();
    const bool first = !m_stroke;
    if (first || m_stroke->width != stroke.width) {
        number(stroke.width);
        op("w");
    }
    if (first || m_stroke->dashes != stroke.dashes) {
        m_content += '[';
        for (const double dash : stroke.dashes) number(dash);
        op(stroke.dashes.empty() ? "]0 d 1 J" : "]0 d 0 J");
    }
    if (first ? stroke.color != Rgb{} : m_stroke->color != stroke.color) {
        for (const auto part : {stroke.color.r, stroke.color.g, stroke.color.b})
            number(part / 255.0);
        op("RG");
    }
    m_stroke = stroke;
}

void PdfPainter::setFillColor(Rgb color)
{
    if (color == m_fillColor) return;
    for (const auto part : {color.r, color.g, color.b}) number(part / 255.0);
    op("rg");
    m_fillColor = color;
}

// Lines that continue each other become one path; a dashed one begins its pattern anew, as if alone.
void PdfPainter::line(const LineItem &line)
{
    setStroke(strokeOf(line.pen, m_monochrome));
    if (m_pathEnd != line.start || !m_stroke->dashes.empty()) {
        point(line.start);
        op("m");
    }
    point(line.end);
    op("l");
    m_pathEnd = line.end;
}

void PdfPainter::arc(const ArcItem &arc)
{
    setStroke(strokeOf(arc.pen, m_monochrome));
    const double degrees = std::clamp(arc.endAngle - arc.startAngle, -360.0, 360.0);
    const double sweep = degrees * std::numbers::pi / 180.0;
    const int pieces =
        std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (std::numbers::pi / 4.0))));
    const double step = sweep / pieces;
    const double handle = 4.0 / 3.0 * std::tan(step / 4.0) * arc.radius;
    double angle = arc.startAngle * std::numbers::pi / 180.0;
    const auto at = [&](double a) {
        return Place{arc.centre.x + arc.radius * std::cos(a),
                     arc.centre.y + arc.radius * std::sin(a)};
    };
    point(at(angle));
    op("m");
    for (int i = 0; i < pieces; ++i, angle += step) {
        const Place from = at(angle), to = at(angle + step);
        point({from.x - handle * std::sin(angle), from.y + handle * std::cos(angle)});
        point({to.x + handle * std::sin(angle + step), to.y - handle * std::cos(angle + step)});
        point(to);
        op("c");
    }
    const bool isCircle = std::abs(degrees) == 360.0;
    if (isCircle) op("h");
    m_pathEnd = at(angle);
}

void PdfPainter::fill(const FillItem &fill)
{
    leaveText();
    endPath();
    setFillColor(m_monochrome ? Rgb{} : rgbOf(fill.color));
    for (const auto &outline : fill.outlines) {
        for (std::size_t i = 0; i < outline.size(); ++i) {
            point(outline[i]);
            op(i == 0 ? "m" : "l");
        }
        op("h");
    }
    if (!fill.outlines.empty()) op("f*");
}

// Signs of one font are one string: their widths in the embedded font are those of the metrics.
void PdfPainter::text(const ShapedText &text)
{
    endPath();
    if (text.signs.empty()) return;
    if (!m_inText) op("BT");
    m_inText = true;
    setFillColor(m_monochrome ? Rgb{} : rgbOf(text.item->color));
    for (std::size_t begin = 0; begin < text.signs.size();) {
        std::size_t end = begin + 1;
        while (end < text.signs.size() &&
               text.signs[end].sign->face == text.signs[begin].sign->face)
            ++end;
        showRun(text, begin, end);
        begin = end;
    }
}

void PdfPainter::setFont(std::size_t font, double size)
{
    if (font == m_font && size == m_fontSize) return;
    m_content.append("/F").append(std::to_string(font)) += ' ';
    number(size);
    op("Tf");
    m_font = font;
    m_fontSize = size;
}

void PdfPainter::setGap(double gap)
{
    if (gap == m_gap) return;
    number(gap);
    op("Tc");
    m_gap = gap;
}

void PdfPainter::setMatrix(const TextItem &item, double x)
{
    double s = 0.0, c = 1.0;
    if (item.angle != 0.0) {
        s = std::sin(item.angle * std::numbers::pi / 180.0);
        c = std::cos(item.angle * std::numbers::pi / 180.0);
    }
    for (const double part : {item.aspect * c, item.aspect * s, -s, c}) {
        appendNumber(m_content, part, 6);
        m_content += ' ';
    }
    const double along = x * item.size * item.aspect;
    point({item.origin.x + along * c, item.origin.y + along * s});
    op("Tm");
}

void PdfPainter::showRun(const ShapedText &text, std::size_t begin, std::size_t end)
{
    const TextItem &item = *text.item;
    const PlacedSign &first = text.signs[begin];
    const Face &face = *first.sign->face;
    setFont(m_fonts.nameOf(first), item.size * face.unitsPerEm() / face.capitalHeight());
    setGap(text.gap * item.size);
    setMatrix(item, first.x);
    m_content += '(';
    const auto byte = [&](unsigned value) {
        const char c = static_cast<char>(value);
        if (c == '(' || c == ')' || c == '\\') m_content += '\\';
        if (c == '\r')
            m_content += "\\r"; // a bare one would be read as a line feed
        else
            m_content += c;
    };
    for (std::size_t i = begin; i < end; ++i) {
        const unsigned code = m_fonts.codeOf(text.signs[i]);
        byte(code >> 8);
        byte(code & 0xff);
    }
    op(")Tj");
}

std::string PdfPainter::finish()
{
    endPath();
    leaveText();
    return std::move(m_content);
}

} // namespace host::display
