#include "display/svg_painter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "display/numbers.h"
#include "display/utf8.h"

namespace host::display {

void appendXml(std::string &xml, char32_t character)
{
    switch (character) {
    case U'<':
        xml += "&lt;";
        break;
    case U'>':
        xml += "&gt;";
        break;
    case U'&':
        xml += "&amp;";
        break;
    case U'"':
        xml += "&quot;";
        break;
    default:
        if (character < 0x20 || character == 0xfffe || character == 0xffff) character = 0xfffd;
        appendUtf8(xml, character);
    }
}

void appendXml(std::string &xml, std::string_view utf8)
{
    for (std::size_t at = 0; at < utf8.size();) appendXml(xml, nextCharacter(utf8, at));
}

SvgPainter::SvgPainter(const DisplayList &list, const RenderOptions &options)
    : m_monochrome(options.monochrome), m_height(list.height)
{
    head(list, options);
}

void SvgPainter::head(const DisplayList &list, const RenderOptions &options)
{
    std::string width, height;
    appendNumber(width, list.width);
    appendNumber(height, list.height);
    m_svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
            "xml:space=\"preserve\" "
            "width=\"" +
            width + "mm\" height=\"" + height + "mm\" viewBox=\"0 0 " + width + ' ' + height +
            "\">\n<title>";
    appendXml(m_svg, options.title.empty() ? list.sheet : options.title);
    m_svg += "</title>\n";
    if (!options.subject.empty()) {
        m_svg += "<desc>";
        appendXml(m_svg, options.subject);
        m_svg += "</desc>\n";
    }
    // Kerning and ligatures are off because the host's metrics, by which texts were placed, have none.
    m_svg += "<style>path{fill:none;stroke:#000;stroke-linecap:round;stroke-linejoin:round}"
             "text{font-family:";
    m_svg += FontBook::get().drafting().family();
    m_svg += ",sans-serif;font-kerning:none;font-variant-ligatures:none}</style>\n"
             "<rect width=\"" +
             width + "\" height=\"" + height + "\" fill=\"#fff\"/>\n";
}

void SvgPainter::point(Place place)
{
    appendNumber(m_svg, place.x);
    m_svg += ' ';
    appendNumber(m_svg, m_height - place.y);
}

void SvgPainter::color(const char *attribute, Rgb value)
{
    if (value == Rgb{}) return; // black is the default
    char text[48];
    std::snprintf(text, sizeof text, " %s=\"#%02x%02x%02x\"", attribute, value.r, value.g, value.b);
    m_svg += text;
}

void SvgPainter::endPath()
{
    if (m_inPath) m_svg += "\"/>\n";
    m_inPath = false;
}

void SvgPainter::setStroke(const Pen &pen)
{
    Stroke stroke = strokeOf(pen, m_monochrome);
    if (m_inPath && stroke == m_stroke) return;
    endPath();
    m_stroke = std::move(stroke);
    m_svg += "<path stroke-width=\"";
    appendNumber(m_svg, m_stroke.width);
    m_svg += '"';
    // As a style, because the sheet's own rule would win over an attribute.
    std::string style;
    if (m_stroke.color != Rgb{}) {
        char text[24];
        std::snprintf(text, sizeof text, "stroke:#%02x%02x%02x", m_stroke.color.r, m_stroke.color.g,
                      m_stroke.color.b);
        style += text;
    }
    if (!m_stroke.dashes.empty()) {
        style += style.empty() ? "" : ";";
        style += "stroke-linecap:butt;stroke-dasharray:";
        for (std::size_t i = 0; i < m_stroke.dashes.size(); ++i) {
            if (i > 0) style += ' ';
            appendNumber(style, m_stroke.dashes[i]);
        }
    }
    if (!style.empty()) m_svg += " style=\"" + style + '"';
    m_svg += " d=\"";
    m_inPath = true;
    m_pathEnd = {std::nan(""), 0.0};
}

void SvgPainter::line(const LineItem &line)
{
    setStroke(line.pen);
    if (m_pathEnd != line.start || !m_stroke.dashes.empty()) {
        m_svg += 'M';
        point(line.start);
    }
    m_svg += 'L';
    point(line.end);
    m_pathEnd = line.end;
}

void SvgPainter::arc(const ArcItem &arc)
{
    setStroke(arc.pen);
    const double sweep = std::clamp(arc.endAngle - arc.startAngle, -360.0, 360.0);
    const auto at = [&](double degrees) {
        const double a = degrees * std::numbers::pi / 180.0;
        return Place{arc.centre.x + arc.radius * std::cos(a),
                     arc.centre.y + arc.radius * std::sin(a)};
    };
    // SVG cannot draw an arc that ends where it begins: a circle is two.
    const int pieces = std::abs(sweep) > 180.0 ? 2 : 1;
    m_svg += 'M';
    point(at(arc.startAngle));
    for (int i = 1; i <= pieces; ++i) {
        m_svg += 'A';
        appendNumber(m_svg, arc.radius);
        m_svg += ' ';
        appendNumber(m_svg, arc.radius);
        m_svg += sweep >= 0.0 ? " 0 0 0 " : " 0 0 1 "; // y points down: counter-clockwise is 0
        point(at(arc.startAngle + sweep * i / pieces));
    }
    if (std::abs(sweep) == 360.0) m_svg += 'Z';
    m_pathEnd = {std::nan(""), 0.0};
}

void SvgPainter::fill(const FillItem &fill)
{
    endPath();
    const Rgb rgb = m_monochrome ? Rgb{} : rgbOf(fill.color);
    char text[64];
    std::snprintf(text, sizeof text,
                  "<path style=\"fill:#%02x%02x%02x;fill-rule:evenodd;stroke:none\" d=\"", rgb.r,
                  rgb.g, rgb.b);
    m_svg += text;
    for (const auto &outline : fill.outlines) {
        for (std::size_t i = 0; i < outline.size(); ++i) {
            m_svg += i == 0 ? 'M' : 'L';
            point(outline[i]);
        }
        m_svg += 'Z';
    }
    m_svg += "\"/>\n";
}

// Signs of one font that are all drawn as they are, or all narrowed alike, are one element.
void SvgPainter::text(const ShapedText &text)
{
    endPath();
    for (std::size_t begin = 0; begin < text.signs.size();) {
        const Sign &first = *text.signs[begin].sign;
        std::size_t end = begin + 1;
        while (end < text.signs.size() && text.signs[end].sign->face == first.face &&
               text.signs[end].sign->stretch == first.stretch)
            ++end;
        showRun(text, begin, end);
        begin = end;
    }
}

void SvgPainter::transform(const TextItem &item, const PlacedSign &first)
{
    double s = 0.0, c = 1.0;
    if (item.angle != 0.0) {
        s = std::sin(item.angle * std::numbers::pi / 180.0);
        c = std::cos(item.angle * std::numbers::pi / 180.0);
    }
    const double along = (first.x + first.sign->shift) * item.size * item.aspect;
    const double width = item.aspect * first.sign->stretch;
    const Place at{item.origin.x + along * c, item.origin.y + along * s};
    if (item.angle == 0.0 && width == 1.0) {
        m_svg += " x=\"";
        appendNumber(m_svg, at.x);
        m_svg += "\" y=\"";
        appendNumber(m_svg, m_height - at.y);
        m_svg += '"';
        return;
    }
    m_svg += " transform=\"matrix(";
    for (const double part : {width * c, -width * s, s, c}) {
        appendNumber(m_svg, part, 6);
        m_svg += ' ';
    }
    point(at);
    m_svg += ")\"";
}

void SvgPainter::showRun(const ShapedText &text, std::size_t begin, std::size_t end)
{
    const TextItem &item = *text.item;
    const PlacedSign &first = text.signs[begin];
    const Face &face = *first.sign->face;
    m_svg += "<text";
    transform(item, first);
    m_svg += " font-size=\"";
    appendNumber(m_svg, item.size * face.unitsPerEm() / face.capitalHeight());
    m_svg += '"';
    if (text.gap != 0.0) {
        m_svg += " letter-spacing=\"";
        appendNumber(m_svg, text.gap * item.size / first.sign->stretch);
        m_svg += '"';
    }
    color("fill", m_monochrome ? Rgb{} : rgbOf(item.color));
    if (&face != &FontBook::get().drafting())
        m_svg += " style=\"font-family:'" + face.family() + "'\"";
    m_svg += '>';
    characters(text, begin, end);
    m_svg += "</text>\n";
}

// Where the next sign would not be set by the font alone (a stand-in in the middle of its place, marks
// before it) or where a renderer would kern against our will, a new position is given.
void SvgPainter::characters(const ShapedText &text, std::size_t begin, std::size_t end)
{
    const TextItem &item = *text.item;
    const Sign &first = *text.signs[begin].sign;
    const double start = text.signs[begin].x + first.shift;
    const bool plain = item.angle == 0.0 && item.aspect * first.stretch == 1.0;
    const auto position = [&](double x) { // in the element's own coordinates
        return plain ? item.origin.x + x * item.size : (x - start) * item.size / first.stretch;
    };
    double x = start; // where the font alone would be
    double lifted = 0.0;
    bool inSpan = false;
    const auto span = [&](double at, double rise) {
        m_svg += inSpan ? "</tspan><tspan x=\"" : "<tspan x=\"";
        appendNumber(m_svg, position(at));
        if (rise != lifted) {
            m_svg += "\" dy=\"";
            appendNumber(m_svg, (lifted - rise) * item.size);
        }
        m_svg += "\">";
        inSpan = true;
        lifted = rise;
    };
    for (std::size_t i = begin; i < end; ++i) {
        const Sign &sign = *text.signs[i].sign;
        const double place = text.signs[i].x + sign.shift;
        constexpr double drift = 2e-3;
        const bool kerned =
            i > begin && first.face->kerning(text.signs[i - 1].sign->glyph, sign.glyph) != 0;
        if (kerned || !(std::abs(place - x) <= drift)) span(place, 0.0);
        for (std::size_t c = 0; c < sign.inGlyph; ++c) appendXml(m_svg, sign.text[c]);
        x = place + sign.advance - 2.0 * sign.shift + text.gap; // as wide as the glyph itself
        for (const Sign::Mark &mark : sign.marks) {
            // Of another font: the renderer takes letter and mark from it together and knows best.
            if (mark.face == sign.face) span(text.signs[i].x + mark.x, mark.y);
            appendXml(m_svg, mark.character);
            x = std::nan(""); // renderers differ in how far a mark goes
        }
    }
    if (inSpan) m_svg += "</tspan>";
}

std::string SvgPainter::finish()
{
    endPath();
    m_svg += "</svg>\n";
    return std::move(m_svg);
}

std::string svgOf(const DisplayList &list, const RenderOptions &options, RenderResult *result)
{
    Shaper shaper;
    const Page page = shaped(list, shaper);
    if (result) result->substitutions = shaper.substitutions();
    SvgPainter painter(list, options);
    paint(page, painter);
    return painter.finish();
}

} // namespace host::display
