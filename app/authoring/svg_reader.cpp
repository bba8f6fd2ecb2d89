#include "app/authoring/svg_reader.h"

#include "app/authoring/pens.h"
#include "app/authoring/svg_curves.h"
#include "app/authoring/svg_path.h"
#include "app/text_file.h"

#include <fmt/format.h>
#include <pugixml.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <string_view>

namespace app::authoring {

namespace {

constexpr double kTolerance = 0.02; // mm, a sixth of the thinnest pen
constexpr double kInch = 25.4;

// Properties that children take over.
struct Paint {
    bool fill = true;
    bool stroke = false;
    bool evenOdd = false;
    bool visible = true;
    double width = 1.0; // of the stroke, user units
};

class SvgReader {
public:
    SvgReader(const std::string &path, const Box &box, int units, std::optional<int> pen,
              std::vector<Complaint> &complaints)
        : m_path(path), m_box(box), m_millimetres(units == 2 ? kInch : 1.0), m_pen(pen),
          m_complaints(complaints)
    {}

    Art read()
    {
        std::string why;
        const auto text = readTextFile(m_path, why);
        if (!text) {
            complain(Mark(), "", why + ", which counts from the text's folder");
            return {};
        }
        m_text = *text;
        pugi::xml_document document;
        const auto result = document.load_buffer(m_text.data(), m_text.size());
        const pugi::xml_node root = document.child("svg");
        if (!result)
            complain(markAt(result.offset), "", fmt::format("is no XML: {}", result.description()));
        else if (!root)
            complain(Mark{1, 1}, "", "is no SVG: its first element must be svg");
        else if (fit(root)) {
            const std::size_t before = m_complaints.size();
            children(root, m_fit, Paint());
            if (m_art.empty() && m_complaints.size() == before)
                complain(root, "",
                         "draws nothing: its shapes need a fill or a stroke, and must be visible");
        }
        return std::move(m_art);
    }

private:
    void complain(Mark at, const std::string &key, const std::string &text)
    {
        m_complaints.push_back({m_path, at, "", key, text});
    }

    void complain(const pugi::xml_node &node, const std::string &key, const std::string &text)
    {
        complain(markAt(node.offset_debug()), key, text);
    }

    Mark markAt(std::ptrdiff_t offset) const
    {
        const auto end = m_text.begin() + std::min<std::ptrdiff_t>(
                                              offset, static_cast<std::ptrdiff_t>(m_text.size()));
        const auto lines = std::count(m_text.begin(), end, '\n');
        const auto line = std::find(std::make_reverse_iterator(end), m_text.rend(), '\n').base();
        return {static_cast<int>(lines) + 1, static_cast<int>(end - line) + 1};
    }

    // --- numbers ----------------------------------------------------------------------------------

    // In user units, which are pixels: 96 to the inch.
    std::optional<double> length(const pugi::xml_node &node, const char *name, double absent)
    {
        const std::string_view text = node.attribute(name).value();
        if (text.empty()) return absent;
        const auto value = lengthOf(text);
        if (!value)
            complain(node, name, fmt::format("\"{}\" is no length in px, mm, cm, in or pt", text));
        return value;
    }

    static std::optional<double> lengthOf(std::string_view text)
    {
        static const std::map<std::string_view, double> units{
            {"", 1.0},           {"px", 1.0},  {"mm", 96 / kInch},
            {"cm", 960 / kInch}, {"in", 96.0}, {"pt", 96.0 / 72},
        };
        while (text.starts_with(' ') || text.starts_with('+')) text.remove_prefix(1);
        double value = 0.0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
        while (unit.ends_with(' ')) unit.remove_suffix(1);
        const auto known = units.find(unit);
        if (error != std::errc() || known == units.end() || !std::isfinite(value)) return {};
        return value * known->second;
    }

    // What is fitted: the view box, or width and height.
    std::optional<Box> frameOf(const pugi::xml_node &root)
    {
        const std::string view = root.attribute("viewBox").value();
        if (!view.empty()) {
            std::string words = view;
            std::replace(words.begin(), words.end(), ',', ' ');
            std::istringstream stream(words);
            Box frame;
            if (stream >> frame.x >> frame.y >> frame.width >> frame.height && frame.width > 0 &&
                frame.height > 0)
                return frame;
            complain(root, "viewBox", "must be four numbers, x, y, width and height");
            return {};
        }
        const auto width = length(root, "width", 0.0), height = length(root, "height", 0.0);
        if (!width || !height) return {};
        if (*width > 0 && *height > 0) return Box{0, 0, *width, *height};
        complain(root, "viewBox",
                 "is missing, and so are width and height: what is to be fitted into the cell?");
        return {};
    }

    // y runs down in SVG and up on a sheet.
    bool fit(const pugi::xml_node &root)
    {
        const auto frame = frameOf(root);
        if (!frame) return false;
        const double scale = std::min(m_box.width / frame->width, m_box.height / frame->height);
        const double left = m_box.x + (m_box.width - scale * frame->width) / 2;
        const double top = m_box.y + (m_box.height + scale * frame->height) / 2;
        m_fit = {scale, 0, 0, -scale, left - scale * frame->x, top + scale * frame->y};
        return true;
    }

    // --- elements ---------------------------------------------------------------------------------

    void children(const pugi::xml_node &parent, const SvgTransform &transform, const Paint &paint)
    {
        for (const pugi::xml_node &node : parent.children())
            if (node.type() == pugi::node_element) element(node, transform, paint);
    }

    void element(const pugi::xml_node &node, const SvgTransform &outer, Paint paint)
    {
        static const std::set<std::string_view> silent{"title", "desc", "metadata", "defs"};
        const std::string_view name = node.name();
        if (name == "defs") styleSheets(node);
        if (silent.contains(name) || name.find(':') != std::string_view::npos) return;
        const bool group = name == "g" || name == "a";
        const auto data = group ? std::string() : dataOf(node);
        if (!data) return;
        if (!paintOf(node, paint)) return; // not displayed
        SvgTransform transform = outer;
        if (const pugi::xml_attribute list = node.attribute("transform")) {
            const auto own = svgTransform(list.value());
            if (!own) {
                complain(node, "transform", fmt::format("\"{}\" is no transform", list.value()));
                return;
            }
            transform = outer.after(*own);
        }
        if (group)
            children(node, transform, paint);
        else
            draw(node, *data, transform, paint);
    }

    // What stands under defs draws nothing by itself, but a style sheet there paints the rest.
    void styleSheets(const pugi::xml_node &defs)
    {
        for (const pugi::xml_node &node : defs.children()) {
            const bool says = *node.text().get() != '\0';
            if (std::string_view(node.name()) == "style" && says) dataOf(node);
            styleSheets(node);
        }
    }

    // A shape as path data; nothing for what is no shape.
    std::optional<std::string> dataOf(const pugi::xml_node &node)
    {
        const std::string_view name = node.name();
        if (name == "path") return node.attribute("d").value();
        if (name == "line") return lineData(node);
        if (name == "rect") return rectData(node);
        if (name == "circle" || name == "ellipse") return ellipseData(node);
        if (name == "polyline") return "M " + std::string(node.attribute("points").value());
        if (name == "polygon") return "M " + std::string(node.attribute("points").value()) + " Z";
        static const std::map<std::string_view, const char *> remedies{
            {"text", "convert it to paths in the drawing program"},
            {"use", "unlink clones in the drawing program"},
            {"symbol", "unlink clones in the drawing program"},
            {"image", "trace it, or leave it out"},
            {"style", "write fill and stroke as attributes (\"presentation attributes\")"},
        };
        const auto remedy = remedies.find(name);
        complain(node, std::string(name),
                 fmt::format("is not supported: {}", remedy == remedies.end()
                                                         ? "use paths and basic shapes, or leave "
                                                           "it out"
                                                         : remedy->second));
        return {};
    }

    std::optional<std::string> lineData(const pugi::xml_node &node)
    {
        const auto x1 = length(node, "x1", 0), y1 = length(node, "y1", 0);
        const auto x2 = length(node, "x2", 0), y2 = length(node, "y2", 0);
        if (!x1 || !y1 || !x2 || !y2) return {};
        return fmt::format("M {} {} L {} {}", *x1, *y1, *x2, *y2);
    }

    std::optional<std::string> rectData(const pugi::xml_node &node)
    {
        const auto x = length(node, "x", 0), y = length(node, "y", 0);
        const auto w = length(node, "width", 0), h = length(node, "height", 0);
        auto rx = length(node, "rx", -1), ry = length(node, "ry", -1);
        if (!x || !y || !w || !h || !rx || !ry) return {};
        if (*rx < 0) rx = std::max(*ry, 0.0); // one stands for both
        if (*ry < 0) ry = rx;
        const double a = std::min(*rx, *w / 2), b = std::min(*ry, *h / 2);
        if (!(*w > 0 && *h > 0)) return "";
        if (!(a > 0 && b > 0)) return fmt::format("M {} {} h {} v {} h {} Z", *x, *y, *w, *h, -*w);
        const double across = *w - 2 * a, down = *h - 2 * b;
        return fmt::format(
            "M {} {} h {} a {a} {b} 0 0 1 {a} {b} v {} a {a} {b} 0 0 1 -{a} {b} h {} "
            "a {a} {b} 0 0 1 -{a} -{b} v {} a {a} {b} 0 0 1 {a} -{b} Z",
            *x + a, *y, across, down, -across, -down, fmt::arg("a", a), fmt::arg("b", b));
    }

    std::optional<std::string> ellipseData(const pugi::xml_node &node)
    {
        const bool circle = std::string_view(node.name()) == "circle";
        const auto x = length(node, "cx", 0), y = length(node, "cy", 0);
        const auto rx = length(node, circle ? "r" : "rx", 0);
        const auto ry = circle ? rx : length(node, "ry", 0);
        if (!x || !y || !rx || !ry) return {};
        if (!(*rx > 0 && *ry > 0)) return "";
        return fmt::format("M {} {} a {a} {b} 0 1 1 {} 0 a {a} {b} 0 1 1 {} 0 Z", *x - *rx, *y,
                           2 * *rx, -2 * *rx, fmt::arg("a", *rx), fmt::arg("b", *ry));
    }

    // --- paint ------------------------------------------------------------------------------------

    // False for what is not displayed at all.
    bool paintOf(const pugi::xml_node &node, Paint &paint)
    {
        std::map<std::string, std::string> properties;
        for (const pugi::xml_attribute &attribute : node.attributes())
            properties[attribute.name()] = attribute.value();
        for (const auto &[name, value] : svgStyle(node.attribute("style").value()))
            properties[name] = value; // a style wins over attributes
        for (const char *name : {"clip-path", "mask", "filter", "marker-start", "marker-mid",
                                 "marker-end", "stroke-dasharray"})
            if (properties.contains(name) && properties[name] != "none")
                complain(node, name, "is not supported: remove it, or convert it to paths");
        for (const char *name : {"opacity", "fill-opacity", "stroke-opacity"})
            if (properties.contains(name)) opaque(node, name, properties[name]);
        if (properties["display"] == "none") return false;
        if (properties.contains("visibility"))
            paint.visible = properties["visibility"] == "visible";
        if (properties.contains("fill-rule")) paint.evenOdd = properties["fill-rule"] == "evenodd";
        if (properties.contains("fill")) ink(node, "fill", properties["fill"], paint.fill);
        if (properties.contains("stroke")) ink(node, "stroke", properties["stroke"], paint.stroke);
        if (properties.contains("stroke-width")) {
            if (const auto width = lengthOf(properties["stroke-width"]))
                paint.width = *width;
            else
                complain(node, "stroke-width",
                         fmt::format("\"{}\" is no length in px, mm, cm, in or pt",
                                     properties["stroke-width"]));
        }
        return true;
    }

    void opaque(const pugi::xml_node &node, const char *name, const std::string &text)
    {
        double value = 1.0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && end != text.data() + text.size() && *end == '%') value /= 100;
        if (error == std::errc() && value < 1.0)
            complain(node, name,
                     "transparency is not supported: use a plain colour, or leave the shape out");
    }

    // Patterns have one ink: everything but none and white is drawn with it.
    void ink(const pugi::xml_node &node, const char *key, std::string value, bool &drawn)
    {
        std::transform(value.begin(), value.end(), value.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        static const std::set<std::string> whites{"white", "#fff", "#ffffff", "rgb(255,255,255)",
                                                  "rgb(255, 255, 255)"};
        if (value == "inherit") return;
        drawn = value != "none" && value != "transparent";
        if (whites.contains(value))
            complain(node, key,
                     "white ink is not supported: cut the shape out of the one below it, or leave "
                     "it out");
        else if (value.starts_with("url("))
            complain(node, key, "gradients and patterns are not supported: use a plain colour");
    }

    void draw(const pugi::xml_node &node, const std::string &data, const SvgTransform &transform,
              const Paint &paint)
    {
        if (!paint.visible || data.empty()) return;
        auto path = svgPath(data);
        if (!path) {
            complain(node, node.name(), "its path data or points cannot be read");
            return;
        }
        for (SvgSubpath &subpath : *path) {
            subpath.start = transform(subpath.start);
            for (SvgCurve &curve : subpath.curves)
                curve = {transform(curve.control1), transform(curve.control2), transform(curve.to),
                         curve.straight};
        }
        const double tolerance = kTolerance / m_millimetres;
        if (paint.fill) fillPath(*path, paint.evenOdd, tolerance, m_art);
        if (!paint.stroke) return;
        const double width = paint.width * transform.scale() * m_millimetres;
        strokePath(*path, m_pen.value_or(nearestPen(width)), tolerance, m_art);
    }

    const std::string &m_path;
    const Box m_box;
    const double m_millimetres; // in a unit of the box
    const std::optional<int> m_pen;
    std::vector<Complaint> &m_complaints;
    std::string m_text;
    SvgTransform m_fit;
    Art m_art;
};

} // namespace

Art readSvg(const std::string &path, const Box &box, int units, std::optional<int> pen,
            std::vector<Complaint> &complaints)
{
    return SvgReader(path, box, units, pen, complaints).read();
}

} // namespace app::authoring
