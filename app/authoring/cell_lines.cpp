#include "app/authoring/cell_lines.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace app::authoring {

namespace {

constexpr double kSame = 1e-6; // coordinates closer than this are one

// Edges along one direction: offset across it, to spans along it.
class Edges {
public:
    void add(double across, double from, double to)
    {
        for (auto &[at, spans] : m_spans) {
            if (std::abs(at - across) < kSame) {
                spans.push_back({from, to});
                return;
            }
        }
        m_spans[across].push_back({from, to});
    }

    // Each merged span once.
    template <class Draw> void merged(Draw draw)
    {
        for (auto &[across, spans] : m_spans) {
            std::sort(spans.begin(), spans.end());
            auto current = spans.front();
            for (const auto &span : spans) {
                if (span.first <= current.second + kSame) {
                    current.second = std::max(current.second, span.second);
                    continue;
                }
                draw(across, current.first, current.second);
                current = span;
            }
            draw(across, current.first, current.second);
        }
    }

private:
    std::map<double, std::vector<std::pair<double, double>>> m_spans;
};

bool isAt(double value, double edge) { return std::abs(value - edge) < kSame; }

} // namespace

void drawCellLines(Art &art, double width, double height, const std::vector<Box> &cells,
                   int outlinePen, int cellPen)
{
    art.push_back(ArtLine{{0, 0}, {width, 0}, outlinePen});
    art.push_back(ArtLine{{width, 0}, {width, height}, outlinePen});
    art.push_back(ArtLine{{width, height}, {0, height}, outlinePen});
    art.push_back(ArtLine{{0, height}, {0, 0}, outlinePen});

    Edges horizontal, vertical;
    for (const Box &cell : cells) {
        for (const double y : {cell.y, cell.y + cell.height})
            if (!isAt(y, 0) && !isAt(y, height)) horizontal.add(y, cell.x, cell.x + cell.width);
        for (const double x : {cell.x, cell.x + cell.width})
            if (!isAt(x, 0) && !isAt(x, width)) vertical.add(x, cell.y, cell.y + cell.height);
    }
    horizontal.merged([&](double y, double from, double to) {
        art.push_back(ArtLine{{from, y}, {to, y}, cellPen});
    });
    vertical.merged([&](double x, double from, double to) {
        art.push_back(ArtLine{{x, from}, {x, to}, cellPen});
    });
}

} // namespace app::authoring
