#include "display/id_symbol.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "display/shaping.h"
#include "display/text_box.h"
#include "model/text_metrics.h"
#include "uf_drf.h"

namespace host::display {

namespace {

constexpr double kRoot3 = std::numbers::sqrt3;

bool isDivided(int type)
{
    return type == UF_DRF_sym_divcir || type == UF_DRF_sym_divsqr || type == UF_DRF_sym_divhex ||
           type == UF_DRF_sym_datum;
}

// A text's height and where it stands, as shares of the symbol's size.
struct Zone {
    double middle;    // above the centre
    double maxHeight; // of capitals
};

Zone zoneOf(int type, bool upperHalf)
{
    if (isDivided(type)) return {upperHalf ? 0.2 : -0.2, 0.3};
    if (type == UF_DRF_sym_triup) return {-1.0 / 6.0, 0.35}; // the centre of gravity
    if (type == UF_DRF_sym_tridown) return {1.0 / 6.0, 0.35};
    if (type == UF_DRF_sym_underline || type == UF_DRF_sym_nosymbol) return {0.0, 1.0};
    return {0.0, 0.6};
}

// What capitals leave out: tails, and the accents and tall signs of other scripts.
bool hasTails(const std::string &text)
{
    return std::any_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 ||
               std::string_view("gjpqyQ,;()[]{}|@$/\\_").find(c) != std::string_view::npos;
    });
}
bool hasAccents(const std::string &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

class SymbolPainter {
public:
    SymbolPainter(const SymbolLook &look, std::vector<Item> &items)
        : m_look(look), m_items(items), m_half(look.size / 2.0), m_boxHalf(roundBoxHalfWidth())
    {}

    void paint()
    {
        outline();
        if (isDivided(m_look.type)) {
            const double reach = halfWidth(0.0);
            line({-reach, 0.0}, {reach, 0.0});
            text(m_look.upper, zoneOf(m_look.type, true));
            text(m_look.lower, zoneOf(m_look.type, false));
        } else {
            text(m_look.upper, zoneOf(m_look.type, true));
        }
    }

private:
    // Of the shape at a height above its centre.
    double halfWidth(double y) const
    {
        switch (m_look.type) {
        case UF_DRF_sym_circle:
        case UF_DRF_sym_divcir:
        case UF_DRF_sym_datum:
            return std::sqrt(std::max(0.0, m_half * m_half - y * y));
        case UF_DRF_sym_hexagon:
        case UF_DRF_sym_divhex:
            return (2.0 * m_half - std::abs(y)) / kRoot3;
        case UF_DRF_sym_triup:
            return std::max(0.0, (m_half - y) / kRoot3);
        case UF_DRF_sym_tridown:
            return std::max(0.0, (m_half + y) / kRoot3);
        case UF_DRF_sym_roundbox:
            return m_boxHalf;
        case UF_DRF_sym_underline:
        case UF_DRF_sym_nosymbol:
            return std::numeric_limits<double>::infinity();
        default:
            return m_half;
        }
    }

    // As wide as its text asks, from one to three heights.
    double roundBoxHalfWidth() const
    {
        const Lettering look = sized(zoneOf(UF_DRF_sym_roundbox, true).maxHeight);
        const double wanted = lineWidth(m_look.upper, look) / 2.0 + 0.25 * m_look.size;
        return std::clamp(wanted, m_half, 3.0 * m_half);
    }

    Lettering sized(double share) const { return sized(share, false); }
    Lettering sized(double share, bool accents) const
    {
        if (accents) share *= 0.7; // they stand above the capitals
        Lettering look = m_look.lettering;
        look.site = 8; // bottom centre
        look.justification = 2;
        look.angle = 0.0;
        look.size = std::min(look.size, share * m_look.size);
        return look;
    }

    void outline()
    {
        const double h = m_half;
        switch (m_look.type) {
        case UF_DRF_sym_circle:
        case UF_DRF_sym_divcir:
        case UF_DRF_sym_datum:
            arc({0.0, 0.0}, h, 0.0, 360.0);
            break;
        case UF_DRF_sym_square:
        case UF_DRF_sym_divsqr:
            polygon({{-h, -h}, {h, -h}, {h, h}, {-h, h}});
            break;
        case UF_DRF_sym_hexagon:
        case UF_DRF_sym_divhex: {
            const double r = 2.0 * h / kRoot3;
            polygon({{r, 0}, {r / 2, h}, {-r / 2, h}, {-r, 0}, {-r / 2, -h}, {r / 2, -h}});
            break;
        }
        case UF_DRF_sym_triup:
            polygon({{-2 * h / kRoot3, -h}, {2 * h / kRoot3, -h}, {0, h}});
            break;
        case UF_DRF_sym_tridown:
            polygon({{-2 * h / kRoot3, h}, {0, -h}, {2 * h / kRoot3, h}});
            break;
        case UF_DRF_sym_roundbox:
            roundBox();
            break;
        case UF_DRF_sym_underline:
            underline();
            break;
        default:
            break;
        }
    }

    void roundBox()
    {
        const double w = m_boxHalf, h = m_half, r = h / 2.0;
        line({-w + r, -h}, {w - r, -h});
        arc({w - r, -h + r}, r, 270.0, 360.0);
        line({w, -h + r}, {w, h - r});
        arc({w - r, h - r}, r, 0.0, 90.0);
        line({w - r, h}, {-w + r, h});
        arc({-w + r, h - r}, r, 90.0, 180.0);
        line({-w, h - r}, {-w, -h + r});
        arc({-w + r, -h + r}, r, 180.0, 270.0);
    }

    void underline()
    {
        const Lettering look = sized(1.0);
        const double reach = std::max(m_half, lineWidth(m_look.upper, look) / 2.0);
        line({-reach, -0.75 * look.size}, {reach, -0.75 * look.size});
    }

    void text(const std::string &line, const Zone &zone)
    {
        if (line.empty()) return;
        Lettering look = sized(zone.maxHeight, hasAccents(line));
        const double middle = zone.middle * m_look.size;
        const double fit = room(line, look, middle) / lineWidth(line, look);
        if (fit < 1.0) {
            constexpr double narrowest = 0.5; // beyond it the text also gets smaller
            look.aspect *= std::max(fit, narrowest);
            look.size *= std::min(1.0, fit / narrowest);
            // The smaller text finds more room in a round shape.
            look.aspect *= std::min(1.0, room(line, look, middle) / lineWidth(line, look));
        }
        const Place middleOfBase{m_look.centre.x, m_look.centre.y + middle - look.size / 2.0};
        appendText({{line}, look, middleOfBase, m_look.font, m_look.group}, m_items);
        centreInk(std::get<TextItem>(m_items.back()));
    }

    // A letter's room is wider on its left than on its right. In a shape that is seen.
    void centreInk(TextItem &item) const
    {
        const InkExtent ink = inkOf(Shaper().shape(item));
        item.origin.x = m_look.centre.x - (ink.left + ink.right) / 2.0 * item.size * item.aspect;
    }

    double room(const std::string &line, const Lettering &look, double middle) const
    {
        const double below = middle - look.size * (hasTails(line) ? 0.85 : 0.5);
        const double above = middle + look.size * (hasAccents(line) ? 0.85 : 0.5);
        const double half = std::min(halfWidth(below), halfWidth(above));
        return std::max(0.05 * m_look.size,
                        2.0 * half - 2.0 * m_look.pen.width - 0.06 * m_look.size);
    }

    void polygon(const std::vector<Place> &corners)
    {
        for (std::size_t i = 0; i < corners.size(); ++i)
            line(corners[i], corners[(i + 1) % corners.size()]);
    }
    void line(Place from, Place to)
    {
        m_items.push_back(LineItem{m_look.pen, onSheet(from), onSheet(to)});
    }
    void arc(Place centre, double radius, double from, double to)
    {
        m_items.push_back(ArcItem{m_look.pen, onSheet(centre), radius, from, to});
    }
    Place onSheet(Place p) const { return {m_look.centre.x + p.x, m_look.centre.y + p.y}; }

    const SymbolLook &m_look;
    std::vector<Item> &m_items;
    double m_half;
    double m_boxHalf;
};

} // namespace

void appendSymbol(const SymbolLook &look, std::vector<Item> &items)
{
    SymbolPainter(look, items).paint();
}

} // namespace host::display
