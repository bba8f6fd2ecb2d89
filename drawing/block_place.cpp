// Where a block stands: its pattern, its stored point, and what hangs on it.
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/locations.h"
#include "drawing/block.h"

void TrBlockBase::locateBlock(const QelFmt::LocationInfoType &location)
{
    placeAt(location.location);
    rememberLocation(location.name);
    locateChildren();
}

void TrBlockBase::locateBlock(const double *point)
{
    if (!point) {
        placeByDefinition();
        return;
    }
    SetAlternateLocationIndex(-1);
    placeAt(Point2(point[0], point[1]));
    locateChildren();
}

void TrBlockBase::placeAt(const Point2 &point)
{
    movePattern(point); // by the difference to the stored point: before that one changes
    SetX(point[0]);
    SetY(point[1]);
}

// A name that the definition does not have leaves the index as it was; so does no name, which the
// definition's own answer for a size that it does not know would match.
void TrBlockBase::rememberLocation(const std::string &name)
{
    if (name.empty()) return;
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    if (def->IsNull()) return;
    const auto locations = def->getLocations();
    for (std::size_t i = 0; i < locations.size(); ++i) {
        if (locations[i].name != name) continue;
        SetAlternateLocationIndex(static_cast<int>(i));
        return;
    }
}

// A block that the user placed freely, that has no place on this size (a negative X says so), or
// that has lost its definition stays where it is.
void TrBlockBase::placeByDefinition()
{
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    if (def->IsNull()) return;
    if (def->GetMovable() == 0) {
        locateBlock(def->getDefaultLocation());
        return;
    }
    const int index = GetAlternateLocationIndex();
    if (index < 0) return;
    const QelFmt::LocationInfoType location = def->getLocation(index);
    if (location.location[0] >= 0.0) locateBlock(location);
}

void TrBlockBase::locateChildren()
{
    for (const auto &field : getFields()) {
        field->locate();
        field->fitBorders();
    }
    for (const auto &table : getTables()) table->locate();
}

void TrBlockBase::move(const QelFmt::LocationInfoType &location)
{
    locateBlock(location);
    moveChildren();
}

void TrBlockBase::move(const double *point)
{
    if (point)
        locateBlock(point);
    else
        locateChildren(); // pattern and point stand where they should: the children follow
    moveChildren();
}

void TrBlockBase::moveChildren()
{
    for (const auto &field : getFields()) field->Move();
    for (const auto &table : getTables()) table->Move();
}

std::vector<double> TrBlockBase::getLocation() const { return {GetX(), GetY()}; }
