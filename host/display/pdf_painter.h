// One page's content in the language of PDF, in millimetres.
#pragma once

#include "display/painter.h"
#include "display/pdf_fonts.h"

#include <optional>
#include <string>

namespace host::display {

class PdfPainter : public Painter {
public:
    // `scale`: user units a millimetre.
    PdfPainter(const PdfFonts &fonts, bool monochrome, double scale);
    void line(const LineItem &line) override;
    void arc(const ArcItem &arc) override;
    void fill(const FillItem &fill) override;
    void text(const ShapedText &text) override;
    std::string finish();

private:
    void setStroke(const Stroke &stroke);
    void setFillColor(Rgb color);
    void endPath();
    void leaveText();
    void point(Place place);
    void op(const char *name);
    void number(double value);
    void showRun(const ShapedText &text, std::size_t begin, std::size_t end);
    void setFont(std::size_t font, double size);
    void setMatrix(const TextItem &item, double x);
    void setGap(double gap);

    const PdfFonts &m_fonts;
    const bool m_monochrome;
    std::string m_content;
    std::optional<Stroke> m_stroke;
    Rgb m_fillColor;                // black is what a page begins with
    std::optional<Place> m_pathEnd; // of the path under construction
    bool m_inText = false;
    std::size_t m_font = 0;
    double m_fontSize = 0.0; // 0: none chosen yet
    double m_gap = 0.0;
};

} // namespace host::display
