// A sheet as pixels, drawn by Cairo in bands from the top: the library libqelfmt-pixels.
#include "display/render.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include <cairo.h>

#include "display/on_demand.h"
#include "display/painter.h"
#include "display/png_file.h"

namespace host::display {

namespace {

constexpr double kMillimetresPerInch = 25.4;

class CairoPainter : public Painter {
public:
    CairoPainter(cairo_t *cairo, bool monochrome) : m_cairo(cairo), m_monochrome(monochrome) {}

    void line(const LineItem &line) override
    {
        setStroke(line.pen);
        cairo_move_to(m_cairo, line.start.x, line.start.y);
        cairo_line_to(m_cairo, line.end.x, line.end.y);
        cairo_stroke(m_cairo);
    }

    void arc(const ArcItem &arc) override
    {
        setStroke(arc.pen);
        constexpr double radians = std::numbers::pi / 180.0;
        cairo_new_sub_path(m_cairo);
        const auto draw = arc.endAngle >= arc.startAngle ? cairo_arc : cairo_arc_negative;
        const double sweep = std::clamp(arc.endAngle - arc.startAngle, -360.0, 360.0);
        draw(m_cairo, arc.centre.x, arc.centre.y, arc.radius, arc.startAngle * radians,
             (arc.startAngle + sweep) * radians);
        if (std::abs(sweep) == 360.0) cairo_close_path(m_cairo);
        cairo_stroke(m_cairo);
    }

    void fill(const FillItem &fill) override
    {
        setColor(m_monochrome ? Rgb{} : rgbOf(fill.color));
        for (const auto &outline : fill.outlines) {
            cairo_new_sub_path(m_cairo);
            for (const Place &place : outline) cairo_line_to(m_cairo, place.x, place.y);
            cairo_close_path(m_cairo);
        }
        cairo_set_fill_rule(m_cairo, CAIRO_FILL_RULE_EVEN_ODD);
        cairo_fill(m_cairo);
    }

    void text(const ShapedText &text) override
    {
        const TextItem &item = *text.item;
        setColor(m_monochrome ? Rgb{} : rgbOf(item.color));
        cairo_save(m_cairo);
        cairo_translate(m_cairo, item.origin.x, item.origin.y);
        cairo_rotate(m_cairo, item.angle * std::numbers::pi / 180.0);
        cairo_scale(m_cairo, item.size * item.aspect, item.size);
        for (const PlacedSign &placed : text.signs) outline(placed);
        cairo_set_fill_rule(m_cairo, CAIRO_FILL_RULE_WINDING);
        cairo_fill(m_cairo);
        cairo_restore(m_cairo);
    }

private:
    void setColor(Rgb color)
    {
        cairo_set_source_rgb(m_cairo, color.r / 255.0, color.g / 255.0, color.b / 255.0);
    }

    void setStroke(const Pen &pen)
    {
        const Stroke stroke = strokeOf(pen, m_monochrome);
        setColor(stroke.color);
        cairo_set_line_width(m_cairo, stroke.width);
        cairo_set_line_join(m_cairo, CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(m_cairo,
                           stroke.dashes.empty() ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
        cairo_set_dash(m_cairo, stroke.dashes.data(), static_cast<int>(stroke.dashes.size()), 0.0);
    }

    void outline(const PlacedSign &placed)
    {
        const double unit = 1.0 / placed.sign->face->capitalHeight();
        for (const auto &contour : placed.sign->shape.contours) {
            const auto at = [&](std::size_t i) {
                const GlyphPoint &p = contour[i % contour.size()];
                return Place{placed.x + p.x * unit, p.y * unit};
            };
            cairo_new_sub_path(m_cairo);
            cairo_line_to(m_cairo, at(0).x, at(0).y);
            for (std::size_t i = 1; i <= contour.size(); ++i) {
                if (contour[i % contour.size()].onCurve)
                    cairo_line_to(m_cairo, at(i).x, at(i).y);
                else
                    quadratic(at(i), at(i + 1)), ++i;
            }
            cairo_close_path(m_cairo);
        }
    }

    void quadratic(Place control, Place end)
    {
        double x = 0.0, y = 0.0;
        cairo_get_current_point(m_cairo, &x, &y);
        const auto third = [](double from, double to) { return from + (to - from) * 2.0 / 3.0; };
        cairo_curve_to(m_cairo, third(x, control.x), third(y, control.y), third(end.x, control.x),
                       third(end.y, control.y), end.x, end.y);
    }

    cairo_t *m_cairo;
    bool m_monochrome;
};

unsigned pixels(double millimetres, double dpi)
{
    const double count = std::round(millimetres * dpi / kMillimetresPerInch);
    constexpr double most = 32767.0; // of the rasterizer
    if (count > most)
        throw RenderError(
            "A side of " + std::to_string(std::lround(millimetres)) + " mm at " +
            std::to_string(std::lround(dpi)) + " dpi has more than 32767 pixels; choose at most " +
            std::to_string(std::lround(std::floor(most * kMillimetresPerInch / millimetres))) +
            " dpi.");
    return std::max(1u, static_cast<unsigned>(count));
}

void checkDpi(double dpi)
{
    if (!(dpi >= 10.0 && dpi <= 2400.0))
        throw RenderError("A resolution of " + std::to_string(dpi) +
                          " dpi is out of range; choose 10 to 2400.");
}

bool isColourful(const DisplayList &list)
{
    const auto black = [](const Item &item) {
        if (const auto *line = std::get_if<LineItem>(&item)) return rgbOf(line->pen.color) == Rgb{};
        if (const auto *arc = std::get_if<ArcItem>(&item)) return rgbOf(arc->pen.color) == Rgb{};
        if (const auto *fill = std::get_if<FillItem>(&item)) return rgbOf(fill->color) == Rgb{};
        return rgbOf(std::get<TextItem>(item).color) == Rgb{};
    };
    return !std::all_of(list.items.begin(), list.items.end(), black);
}

struct Band {
    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface;
    std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo;

    Band(unsigned width, unsigned height)
        : surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                             static_cast<int>(height)),
                  cairo_surface_destroy),
          cairo(cairo_create(surface.get()), cairo_destroy)
    {
        if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS)
            throw RenderError("Out of memory for a picture; choose a lower resolution.");
    }
};

} // namespace

extern "C" void qelfmt_pixels_png(const DisplayList &list, const RenderOptions &options,
                                  RenderResult *result, std::string &bytes)
{
    checkDpi(options.pngDpi);
    Shaper shaper;
    const Page page = shaped(list, shaper);
    if (result) result->substitutions = shaper.substitutions();

    const unsigned width = pixels(list.width, options.pngDpi),
                   height = pixels(list.height, options.pngDpi);
    PngFile file(width, height, !options.monochrome && isColourful(list), options.pngDpi);
    // Some ten million pixels at a time.
    const unsigned bandHeight = std::clamp(10'000'000u / width, 64u, height < 64u ? 64u : height);
    for (unsigned top = 0; top < height; top += bandHeight) {
        const unsigned rows = std::min(bandHeight, height - top);
        Band band(width, rows);
        cairo_t *cairo = band.cairo.get();
        cairo_set_source_rgb(cairo, 1.0, 1.0, 1.0);
        cairo_paint(cairo);
        cairo_translate(cairo, 0.0, -static_cast<double>(top));
        cairo_scale(cairo, width / list.width, -(height / list.height));
        cairo_translate(cairo, 0.0, -list.height);
        cairo_set_tolerance(cairo, 0.05);
        CairoPainter painter(cairo, options.monochrome);
        paint(page, painter);
        cairo_surface_flush(band.surface.get());
        const unsigned char *data = cairo_image_surface_get_data(band.surface.get());
        const int stride = cairo_image_surface_get_stride(band.surface.get());
        for (unsigned y = 0; y < rows; ++y)
            file.row(reinterpret_cast<const std::uint32_t *>(data + static_cast<std::ptrdiff_t>(y) *
                                                                        stride));
    }
    bytes = file.finish();
}

} // namespace host::display
