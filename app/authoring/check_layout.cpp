#include "app/authoring/check_layout.h"

#include "app/authoring/check_places.h"
#include "app/authoring/stored_order.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace app::authoring {

namespace {

constexpr double kSame = 1e-6;

using Ids = std::vector<std::string>;

// With the columns of its tables, of which one row stands there.
std::optional<FieldBox> areaOf(const LaidOutBlock &block)
{
    std::optional<FieldBox> area = block.extent;
    const auto add = [&](double left, double right, double y) {
        if (!(std::isfinite(left) && std::isfinite(right) && std::isfinite(y))) return;
        if (!area) area = FieldBox{left, y, 0, 0};
        const double low = std::min(area->x, left), bottom = std::min(area->y, y);
        area->width = std::max(area->x + area->width, right) - low;
        area->height = std::max(area->y + area->height, y) - bottom;
        area->x = low;
        area->y = bottom;
    };
    for (const RecordTree *table : block.record->childrenOf("table"))
        for (const RecordTree *column : table->childrenOf("field")) {
            const double left = table->real("location_x") + column->real("location_x");
            add(left, left + column->real("width"), table->real("location_y"));
        }
    return area;
}

// The lines of a frame run along most of the sheet; marks and grid lines are short.
class Frame {
public:
    Frame(const Art &art, const RecordTree &size)
    {
        for (const Shape &shape : art) {
            const auto *line = std::get_if<ArtLine>(&shape);
            if (!line) continue;
            const double wide = std::abs(line->to.x - line->from.x);
            const double high = std::abs(line->to.y - line->from.y);
            if ((high <= kSame && wide > size.real("length") / 2) ||
                (wide <= kSame && high > size.real("height") / 2))
                m_lines.push_back(*line);
        }
    }

    bool crosses(const FieldBox &box) const
    {
        return std::any_of(m_lines.begin(), m_lines.end(), [&](const ArtLine &line) {
            const auto [left, right] = std::minmax(line.from.x, line.to.x);
            const auto [low, high] = std::minmax(line.from.y, line.to.y);
            return left < box.x + box.width - kSame && right > box.x + kSame &&
                   low < box.y + box.height - kSame && high > box.y + kSame;
        });
    }

private:
    std::vector<ArtLine> m_lines;
};

struct Placed {
    const LaidOutBlock *block;
    const RecordTree *location;
    std::optional<FieldBox> area;
    Ids outside, crossing; // sizes
};

class Layout {
public:
    Layout(const LaidOutFormat &format, const std::vector<LaidOutBlock> &blocks, Findings &findings)
        : m_format(*format.record), m_frameOf(format.frameOf), m_findings(findings)
    {
        for (const LaidOutBlock &block : blocks)
            if (const RecordTree *location = locationFor(*block.record, m_format))
                m_placed.push_back({&block, location, areaOf(block), {}, {}});
    }

    void run()
    {
        for (const RecordTree *size : m_format.childrenOf("size")) {
            if (!(size->real("length") > 0 && size->real("height") > 0)) continue;
            const auto art = m_frameOf ? m_frameOf(*size) : std::nullopt;
            const Frame frame(art.value_or(Art()), *size);
            for (Placed &placed : m_placed)
                if (const auto box = boxOn(placed, *size)) look(placed, *box, frame, *size);
        }
        for (const Placed &placed : m_placed) tell(placed);
        overlaps();
    }

private:
    std::optional<FieldBox> boxOn(const Placed &placed, const RecordTree &size) const
    {
        const auto at = placeOn(*placed.location, m_format, size);
        if (!at || !placed.area || !std::isfinite(at->x) || !std::isfinite(at->y)) return {};
        const FieldBox &area = *placed.area;
        return FieldBox{at->x + area.x, at->y + area.y, area.width, area.height};
    }

    static void look(Placed &placed, const FieldBox &box, const Frame &frame,
                     const RecordTree &size)
    {
        if (box.x < -kSame || box.y < -kSame || box.x + box.width > size.real("length") + kSame ||
            box.y + box.height > size.real("height") + kSame)
            placed.outside.push_back(size.text("id"));
        else if (frame.crosses(box))
            placed.crossing.push_back(size.text("id"));
    }

    std::string onSizes(const Ids &sizes) const
    {
        return fmt::format("on {} of the format {}", fmt::join(sizes, ", "), m_format.text("id"));
    }

    void add(const Placed &placed, const std::string &text)
    {
        m_findings.inFile(placed.block->file);
        m_findings.add(identityOf(*placed.block->record), *placed.location, "place", text);
    }

    void tell(const Placed &placed)
    {
        if (!placed.outside.empty())
            add(placed, fmt::format("the block leaves the sheet {}: place it elsewhere, or make it "
                                    "smaller",
                                    onSizes(placed.outside)));
        if (!placed.crossing.empty())
            add(placed, fmt::format("the block crosses the lines of the frame {}: place it inside "
                                    "or outside of it",
                                    onSizes(placed.crossing)));
    }

    // Of blocks that every sheet of the format gets.
    void overlaps()
    {
        const auto required = m_format.texts("required_block_ids");
        std::vector<const Placed *> all;
        for (const Placed &placed : m_placed)
            if (std::count(required.begin(), required.end(), placed.block->record->text("id")))
                all.push_back(&placed);
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                Ids sizes;
                for (const RecordTree *size : m_format.childrenOf("size")) {
                    const auto a = boxOn(*all[i], *size), b = boxOn(*all[k], *size);
                    if (a && b && overlap(*a, *b)) sizes.push_back(size->text("id"));
                }
                if (!sizes.empty())
                    add(*all[i], fmt::format("covers the block {} {}, which requires both: move "
                                             "one of them",
                                             all[k]->block->record->text("id"), onSizes(sizes)));
            }
        }
    }

    const RecordTree &m_format;
    const std::function<std::optional<Art>(const RecordTree &)> &m_frameOf;
    Findings &m_findings;
    std::vector<Placed> m_placed;
};

} // namespace

void checkLayout(const std::vector<LaidOutFormat> &formats, const std::vector<LaidOutBlock> &blocks,
                 Findings &findings)
{
    for (const LaidOutFormat &format : formats) Layout(format, blocks, findings).run();
}

} // namespace app::authoring
