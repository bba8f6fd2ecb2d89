// Where a field's note stands.
#include "content/field.h"
#include "content/note_text.h"
#include "content/recompute_guard.h"
#include "definitions/field_def.h"
#include "drawing/drawing.h"
#include "foundation/log.h"

#include "point2.hxx"
#include "uf_drf.h"
#include "ug_displayable.hxx"
#include "ug_exception.hxx"

#include <cstdio>
#include <functional>
#include <stdexcept>

namespace {

using Def = TrFieldDefV1;

// The reference point of the text within its box, from where the definition places the box. The
// sites are a grid of three by three, row by row from the top left. A box without a width has no
// margins, not even above and below. The height is asked for only where it counts.
Point2 siteInBox(const LumUg::Record &def, const std::function<double()> &height)
{
    double x = def.get(Def::kLocationX);
    double y = def.get(Def::kLocationY);
    const double width = def.get(Def::kWidth);
    const int site = def.get(Def::kTextSite);
    if (width == 0.0 || site < 1 || site > 9) return {x, y};

    const int column = (site - 1) % 3;
    if (column == 0) x += def.get(Def::kMarginWidth);
    if (column == 1) x += width * 0.5;
    if (column == 2) x += width - def.get(Def::kMarginWidth);

    const int row = (site - 1) / 3;
    if (row == 0) y -= def.get(Def::kMarginHeight);
    if (row == 1) y += height() * 0.5;
    if (row == 2) y += def.get(Def::kMarginHeight);
    return {x, y};
}

// What a stored point is measured from: the block, the sheet's lower left corner, its top edge, its
// right edge, its upper right corner.
Point2 onSheet(int relativeOffsetType, const Point2 &at, const std::vector<double> &base,
               const std::function<Point2()> &sheetSize)
{
    const Point2 fromBlock(base[0] + at[0], base[1] + at[1]);
    switch (relativeOffsetType) {
    case 0:
        return fromBlock;
    case 1:
        return at;
    case 2:
        return {at[0], sheetSize()[1] - at[1]};
    case 3:
        return {sheetSize()[0] - at[0], at[1]};
    case 4: {
        const Point2 size = sheetSize();
        return {size[0] - at[0], size[1] - at[1]};
    }
    }
    // No blank before the number: so it has always been printed.
    const std::string text = "The offsetRelative value" + std::to_string(relativeOffsetType) +
                             " is not currently implemented. Using BlockBottomLeft";
    std::printf("%s\n", text.c_str());
    return fromBlock;
}

} // namespace

double TrFieldBase::CalcHeight() const
{
    const double margins = 2.0 * LumUg::Record(GetDefinition()).get(Def::kMarginHeight);
    const UgDisplayableObject *note = GetNote();
    return note ? margins + QelFmt::NoteText(note->getTag()).height() : margins;
}

Point2 TrFieldBase::placeByDefinition() const
{
    const LumUg::Record def(GetDefinition());
    const std::vector<double> base = baseLocation();
    const Point2 raw = siteInBox(def, [this] { return CalcHeight(); });
    QELFMT_INFO << "Raw Location = " << raw[0] << "," << raw[1];
    return onSheet(def.get(Def::kRelativeOffsetType), raw, base,
                   [this] { return TrDrawing::getDrawing(*this)->drawingSize(); });
}

// A field of an older block, which has no definition yet, stays where it is.
void TrFieldBase::locate()
{
    const TrFieldDefV1 definition = GetDefinition();
    if (definition.IsNull()) return;
    QELFMT_INFO << "Locating note for field " << definition.GetId();
    const Point2 at = placeByDefinition();
    QELFMT_INFO << "location of field " << definition.GetId() << " = " << at[0] << "," << at[1];
    LumUg::Record record(*this);
    record.put(kX, at[0]);
    record.put(kY, at[1]);
    record.write(*this);
    Move();
}

// A field whose default is not only its initial value is computed anew on every move, but not
// before it has had its first value.
void TrFieldBase::Move()
{
    if (const UgDisplayableObject *note = GetNote()) {
        const LumUg::Record placed(*this);
        double origin[3] = {placed.get(kX), placed.get(kY), 0.0};
        UgException::throwOnFailure(UF_DRF_set_origin(note->getTag(), origin));
    }
    const TrFieldDefV1 def = GetDefinition();
    if (def.IsNull() || def.GetUseDefaultInitially() != 0) return;
    if (QelFmt::mayRecompute(tag()) && hasInitialValue()) SetToDefaultValue();
}

std::vector<double> TrFieldBase::baseLocation() const
{
    if (!m_baseLocationCmd)
        throw std::logic_error("Field " + GetFieldDefName() +
                               " cannot be placed: nobody has told it where its block stands");
    std::vector<double> base = m_baseLocationCmd();
    if (base.size() < 2)
        throw std::logic_error("Field " + GetFieldDefName() +
                               " cannot be placed: its base point has no two coordinates");
    return base;
}

// Slots are written from the first on: the count is stored when the first value is.
bool TrFieldBase::hasInitialValue() const
{
    return LumUg::Record(*this).ints().size() > kNumberOfLines.index;
}
