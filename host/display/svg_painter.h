// A sheet as SVG, in millimetres with y downwards as SVG has it. Texts are <text> elements in the
// drafting font's name.
#pragma once

#include "display/painter.h"

#include <string>

namespace host::display {

class SvgPainter : public Painter {
public:
    SvgPainter(const DisplayList &list, const RenderOptions &options);
    void line(const LineItem &line) override;
    void arc(const ArcItem &arc) override;
    void fill(const FillItem &fill) override;
    void text(const ShapedText &text) override;
    std::string finish();

private:
    void head(const DisplayList &list, const RenderOptions &options);
    void setStroke(const Pen &pen);
    void endPath();
    void point(Place place);
    void color(const char *attribute, Rgb value);
    void showRun(const ShapedText &text, std::size_t begin, std::size_t end);
    void characters(const ShapedText &text, std::size_t begin, std::size_t end);
    void transform(const TextItem &item, const PlacedSign &first);

    const bool m_monochrome;
    const double m_height;
    std::string m_svg;
    Stroke m_stroke;
    bool m_inPath = false;
    Place m_pathEnd;
};

// Text made safe for XML; what XML cannot hold at all becomes U+FFFD.
void appendXml(std::string &xml, char32_t character);
void appendXml(std::string &xml, std::string_view utf8);

} // namespace host::display
