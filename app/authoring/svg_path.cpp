#include "app/authoring/svg_path.h"

// False alarms in the library's templates, which depend on what the compiler inlines.
#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <svgpp/adapter/path.hpp>
#include <svgpp/adapter/transform.hpp>
#include <svgpp/parser/css_style_iterator.hpp>
#include <svgpp/parser/path_data.hpp>
#include <svgpp/parser/transform_list.hpp>
#include <svgpp/policy/error.hpp>
#include <svgpp/policy/path.hpp>
#include <svgpp/policy/transform.hpp>

#include <algorithm>
#include <cmath>
#include <exception>
#include <numbers>

namespace app::authoring {

namespace {

using Absolute = svgpp::tag::coordinate::absolute;

struct Arc {
    double rx, ry;
    double rotation; // of the ellipse, degrees
    bool large;      // more than half of it
    bool sweep;      // in the direction of growing angles
    ArtPoint to;
};

// From end points to the centre, as SVG 1.1 appendix F.6 has it; then a cubic curve for every quarter turn
// or less, which touches the ellipse at its ends and in its middle.
void appendArc(ArtPoint from, const Arc &arc, std::vector<SvgCurve> &curves)
{
    if (from == arc.to) return;
    double rx = std::abs(arc.rx), ry = std::abs(arc.ry);
    if (rx == 0.0 || ry == 0.0) {
        curves.push_back({{}, {}, arc.to, true});
        return;
    }
    const double phi = arc.rotation * std::numbers::pi / 180.0;
    const double cosine = std::cos(phi), sine = std::sin(phi);
    const double halfX = (from.x - arc.to.x) / 2, halfY = (from.y - arc.to.y) / 2;
    const double x1 = (cosine * halfX + sine * halfY), y1 = (cosine * halfY - sine * halfX);
    const double apart = std::hypot(x1 / rx, y1 / ry);
    if (apart > 1.0) { // too small to reach: grown until it just does
        rx *= apart;
        ry *= apart;
    }
    // In the circle of radius 1 that the ellipse is a picture of.
    const double ux = x1 / rx, uy = y1 / ry;
    const double squared = ux * ux + uy * uy;
    double factor = std::sqrt(std::max(0.0, (1.0 - squared) / squared));
    if (arc.large == arc.sweep) factor = -factor;
    const double centreX = factor * uy, centreY = -factor * ux;
    const double start = std::atan2(uy - centreY, ux - centreX);
    double turn = std::atan2(-uy - centreY, -ux - centreX) - start;
    if (arc.sweep && turn <= 0) turn += 2 * std::numbers::pi;
    if (!arc.sweep && turn >= 0) turn -= 2 * std::numbers::pi;

    const auto onSheet = [&](double x, double y) -> ArtPoint {
        const double ex = rx * (x + centreX), ey = ry * (y + centreY);
        return {(from.x + arc.to.x) / 2 + cosine * ex - sine * ey,
                (from.y + arc.to.y) / 2 + sine * ex + cosine * ey};
    };
    const int pieces =
        std::max(1, static_cast<int>(std::ceil(std::abs(turn) / (std::numbers::pi / 2) - 1e-9)));
    const double step = turn / pieces, reach = 4.0 / 3.0 * std::tan(step / 4);
    for (int i = 0; i < pieces; ++i) {
        const double a = start + i * step, b = a + step;
        const ArtPoint end = i + 1 == pieces ? arc.to : onSheet(std::cos(b), std::sin(b));
        curves.push_back(
            {onSheet(std::cos(a) - reach * std::sin(a), std::sin(a) + reach * std::cos(a)),
             onSheet(std::cos(b) + reach * std::sin(b), std::sin(b) - reach * std::cos(b)), end,
             false});
    }
}

// Everything absolute, without short forms; arcs as they stand, since the parser's own curves for them
// are off by a thousandth of the radius.
struct PathPolicy : svgpp::policy::path::minimal {
    static const bool arc_as_cubic_bezier = false;
};

// Takes what the parser tells, every curve as a cubic one.
class Curves {
public:
    void path_move_to(double x, double y, Absolute) { m_paths.emplace_back().start = {x, y}; }
    void path_line_to(double x, double y, Absolute)
    {
        current().curves.push_back({{}, {}, {x, y}, true});
    }
    void path_cubic_bezier_to(double x1, double y1, double x2, double y2, double x, double y,
                              Absolute)
    {
        current().curves.push_back({{x1, y1}, {x2, y2}, {x, y}, false});
    }
    void path_elliptical_arc_to(double rx, double ry, double rotation, bool large, bool sweep,
                                double x, double y, Absolute)
    {
        SvgSubpath &path = current();
        const ArtPoint from = path.curves.empty() ? path.start : path.curves.back().to;
        appendArc(from, {rx, ry, rotation, large, sweep, {x, y}}, path.curves);
    }
    void path_close_subpath() { current().closed = true; }
    void path_exit() {}

    std::vector<SvgSubpath> take() { return std::move(m_paths); }

private:
    // After a closed one the next begins where that began, unless a move says otherwise.
    SvgSubpath &current()
    {
        if (m_paths.back().closed) {
            const ArtPoint start = m_paths.back().start;
            m_paths.emplace_back().start = start;
        }
        return m_paths.back();
    }

    std::vector<SvgSubpath> m_paths;
};

struct Matrix {
    void transform_matrix(const boost::array<double, 6> &m)
    {
        value = {m[0], m[1], m[2], m[3], m[4], m[5]};
    }
    SvgTransform value;
};

} // namespace

SvgTransform SvgTransform::after(const SvgTransform &inner) const
{
    return {a * inner.a + c * inner.b,     b * inner.a + d * inner.b,
            a * inner.c + c * inner.d,     b * inner.c + d * inner.d,
            a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
}

double SvgTransform::scale() const { return std::sqrt(std::abs(a * d - b * c)); }

std::optional<std::vector<SvgSubpath>> svgPath(const std::string &data)
{
    using Parser = svgpp::value_parser<svgpp::tag::type::path_data, svgpp::path_policy<PathPolicy>>;
    Curves curves;
    try {
        Parser::parse(svgpp::tag::attribute::d(), curves, data, svgpp::tag::source::attribute());
    } catch (const std::exception &) {
        return {};
    }
    return curves.take();
}

std::optional<SvgTransform> svgTransform(const std::string &list)
{
    using Parser = svgpp::value_parser<svgpp::tag::type::transform_list,
                                       svgpp::transform_policy<svgpp::policy::transform::matrix>>;
    Matrix matrix;
    try {
        Parser::parse(svgpp::tag::attribute::transform(), matrix, list,
                      svgpp::tag::source::attribute());
    } catch (const std::exception &) {
        return {};
    }
    return matrix.value;
}

std::vector<std::pair<std::string, std::string>> svgStyle(const std::string &style)
{
    std::vector<std::pair<std::string, std::string>> found;
    const char *begin = style.data(), *end = begin + style.size();
    for (svgpp::css_style_iterator<const char *> it(begin, end); !it.eof(); ++it)
        found.emplace_back(std::string(it->first.begin(), it->first.end()),
                           std::string(it->second.begin(), it->second.end()));
    return found;
}

} // namespace app::authoring
