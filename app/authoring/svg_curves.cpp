#include "app/authoring/svg_curves.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace app::authoring {

namespace {

constexpr double kDegrees = 180.0 / std::numbers::pi;
// How far a cubic curve that stands for an arc is off its circle, of the radius: a quarter turn is 3e-4.
constexpr double kRoundness = 1e-3;

// Figures that do not depend on the last bit of a sine: the name of a pattern is made of them.
double rounded(double value)
{
    constexpr double kScale = 1e6;
    const double result = std::round(value * kScale) / kScale;
    return result == 0.0 ? 0.0 : result; // no -0
}

ArtPoint rounded(ArtPoint p) { return {rounded(p.x), rounded(p.y)}; }

double distance(ArtPoint a, ArtPoint b) { return std::hypot(a.x - b.x, a.y - b.y); }

ArtPoint pointAt(ArtPoint from, const SvgCurve &curve, double t)
{
    const double s = 1.0 - t;
    const double w0 = s * s * s, w1 = 3 * s * s * t, w2 = 3 * s * t * t, w3 = t * t * t;
    return {w0 * from.x + w1 * curve.control1.x + w2 * curve.control2.x + w3 * curve.to.x,
            w0 * from.y + w1 * curve.control1.y + w2 * curve.control2.y + w3 * curve.to.y};
}

// Points behind the first one, so close to each other that the chords stay within the tolerance: their
// distance from the curve is at most an eighth of its second derivative by the square of their number.
void follow(ArtPoint from, const SvgCurve &curve, double tolerance, std::vector<ArtPoint> &points)
{
    if (!curve.straight) {
        const auto bend = [](ArtPoint a, ArtPoint b, ArtPoint c) {
            return std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y);
        };
        const double second = 6 * std::max(bend(from, curve.control1, curve.control2),
                                           bend(curve.control1, curve.control2, curve.to));
        const int pieces =
            std::max(1, static_cast<int>(std::ceil(std::sqrt(second / 8 / tolerance))));
        for (int i = 1; i < pieces; ++i)
            points.push_back(pointAt(from, curve, static_cast<double>(i) / pieces));
    }
    points.push_back(curve.to);
}

std::vector<ArtPoint> outlineOf(const SvgSubpath &path, double tolerance)
{
    std::vector<ArtPoint> points{path.start};
    for (const SvgCurve &curve : path.curves) follow(points.back(), curve, tolerance, points);
    for (ArtPoint &p : points) p = rounded(p);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    while (points.size() > 1 && points.front() == points.back()) points.pop_back();
    return points;
}

// --- arcs -------------------------------------------------------------------------------------------

struct Circle {
    ArtPoint centre;
    double radius;
};

std::optional<Circle> circleThrough(ArtPoint a, ArtPoint b, ArtPoint c)
{
    const double bx = b.x - a.x, by = b.y - a.y, cx = c.x - a.x, cy = c.y - a.y;
    const double twice = 2 * (bx * cy - by * cx);
    if (std::abs(twice) < 1e-12 * (bx * bx + by * by + cx * cx + cy * cy)) return {}; // on a line
    const double b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    const double x = (cy * b2 - by * c2) / twice, y = (bx * c2 - cx * b2) / twice;
    return Circle{{a.x + x, a.y + y}, std::hypot(x, y)};
}

// A part of a circle, drawn from one angle to another; a negative sweep runs clockwise.
struct Sweep {
    Circle circle;
    double start; // degrees
    double sweep;
};

double angleOf(const Circle &circle, ArtPoint p)
{
    return std::atan2(p.y - circle.centre.y, p.x - circle.centre.x) * kDegrees;
}

double turned(double angle) // into -180 to 180
{
    return std::remainder(angle, 360.0);
}

std::optional<Sweep> sweepOf(ArtPoint from, const SvgCurve &curve)
{
    if (curve.straight) return {};
    const auto circle = circleThrough(from, pointAt(from, curve, 0.5), curve.to);
    if (!circle) return {};
    for (const double t : {0.125, 0.25, 0.375, 0.625, 0.75, 0.875}) {
        const double off = distance(pointAt(from, curve, t), circle->centre) - circle->radius;
        if (std::abs(off) > kRoundness * circle->radius) return {};
    }
    const double start = angleOf(*circle, from),
                 middle = angleOf(*circle, pointAt(from, curve, 0.5));
    const double first = turned(middle - start),
                 second = turned(angleOf(*circle, curve.to) - middle);
    if (first * second <= 0) return {};
    return Sweep{*circle, start, first + second};
}

// The next piece of the same circle, drawn on in the same direction.
bool goesOn(const Sweep &before, const Sweep &next)
{
    const double least = std::min(before.circle.radius, next.circle.radius);
    return before.sweep * next.sweep > 0 &&
           std::abs(before.circle.radius - next.circle.radius) < kRoundness * least &&
           distance(before.circle.centre, next.circle.centre) < kRoundness * least &&
           std::abs(before.sweep + next.sweep) < 360.0 + 1e-3;
}

// One path while its lines and arcs are collected.
class Stroke {
public:
    Stroke(int pen, double tolerance, Art &art) : m_pen(pen), m_tolerance(tolerance), m_art(art) {}

    void draw(const SvgSubpath &path)
    {
        ArtPoint at = path.start;
        for (const SvgCurve &curve : path.curves) {
            piece(at, curve);
            at = curve.to;
        }
        if (path.closed) piece(at, {{}, {}, path.start, true});
        finishArc();
    }

private:
    void piece(ArtPoint from, const SvgCurve &curve)
    {
        if (const auto sweep = sweepOf(from, curve)) {
            if (m_sweep && goesOn(*m_sweep, *sweep)) {
                m_sweep->sweep += sweep->sweep;
                return;
            }
            finishArc();
            m_sweep = sweep;
            return;
        }
        std::vector<ArtPoint> points;
        follow(from, curve, m_tolerance, points);
        ArtPoint last = rounded(from);
        for (const ArtPoint &p : points) {
            const ArtPoint next = rounded(p);
            if (next == last) continue;
            finishArc();
            m_art.push_back(ArtLine{last, next, m_pen});
            last = next;
        }
    }

    void finishArc()
    {
        if (!m_sweep) return;
        double start = m_sweep->sweep > 0 ? m_sweep->start : m_sweep->start + m_sweep->sweep;
        double length = std::min(std::abs(m_sweep->sweep), 360.0);
        if (length > 360.0 - 1e-2) { // a circle begins anywhere
            start = 0.0;
            length = 360.0;
        }
        start = rounded(start);
        if (start < 0.0) start = rounded(start + 360.0);
        const double radius = rounded(m_sweep->circle.radius);
        const double end = rounded(start + length);
        if (radius > 0 && end > start)
            m_art.push_back(ArtArc{rounded(m_sweep->circle.centre), radius, start, end, m_pen});
        m_sweep.reset();
    }

    int m_pen;
    double m_tolerance;
    Art &m_art;
    std::optional<Sweep> m_sweep;
};

// --- areas ------------------------------------------------------------------------------------------

struct Outline {
    std::vector<ArtPoint> points;
    int turn = 0;             // 1 counterclockwise, -1 clockwise
    std::vector<int> outside; // outlines that it lies in
    bool edge = true;         // of the ink
    int root = -1;            // the outermost one
};

double areaOf(const std::vector<ArtPoint> &points)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const ArtPoint a = points[i], b = points[(i + 1) % points.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2;
}

bool contains(const std::vector<ArtPoint> &outline, ArtPoint p)
{
    bool inside = false;
    for (std::size_t i = 0, k = outline.size() - 1; i < outline.size(); k = i++) {
        const ArtPoint a = outline[i], b = outline[k];
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

} // namespace

void strokePath(const std::vector<SvgSubpath> &path, int pen, double tolerance, Art &art)
{
    Stroke stroke(pen, tolerance, art);
    for (const SvgSubpath &subpath : path) stroke.draw(subpath);
}

void fillPath(const std::vector<SvgSubpath> &path, bool evenOdd, double tolerance, Art &art)
{
    std::vector<Outline> outlines;
    for (const SvgSubpath &subpath : path) {
        Outline outline;
        outline.points = outlineOf(subpath, tolerance);
        const double area = areaOf(outline.points);
        if (outline.points.size() < 3 || area == 0.0) continue;
        outline.turn = area > 0 ? 1 : -1;
        outlines.push_back(std::move(outline));
    }
    if (evenOdd) {
        ArtArea area;
        for (Outline &outline : outlines) area.outlines.push_back(std::move(outline.points));
        if (!area.outlines.empty()) art.push_back(std::move(area));
        return;
    }
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        int winding = 0;
        for (std::size_t k = 0; k < outlines.size(); ++k) {
            if (i == k || !contains(outlines[k].points, outlines[i].points.front())) continue;
            outlines[i].outside.push_back(static_cast<int>(k));
            winding += outlines[k].turn;
        }
        outlines[i].edge = (winding == 0) != (winding + outlines[i].turn == 0);
    }
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        Outline &one = outlines[i];
        one.root = static_cast<int>(i);
        for (const int k : one.outside)
            if (outlines[static_cast<std::size_t>(k)].outside.empty()) one.root = k;
    }
    for (std::size_t root = 0; root < outlines.size(); ++root) {
        ArtArea area;
        for (const Outline &one : outlines)
            if (one.edge && one.root == static_cast<int>(root)) area.outlines.push_back(one.points);
        if (!area.outlines.empty()) art.push_back(std::move(area));
    }
}

} // namespace app::authoring
