// Where a block stands: its pattern, its stored point, and what hangs on it.
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/locations.h"
#include "drawing/block.h"

#include <algorithm>

namespace {

using Place = QelFmt::LocationInfoType;

// No name is never found, though a definition that does not know the size of the sheet answers with
// a nameless place.
TrBlockBase::Places::const_iterator findNamed(const std::string &name,
                                              const TrBlockBase::Places &places)
{
    if (name.empty()) return places.end();
    return std::find_if(places.begin(), places.end(),
                        [&](const Place &place) { return place.name == name; });
}

} // namespace

void TrBlockBase::locateBlock(const Place &location)
{
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    // A place without a name can be had where the definition knows none at all.
    const bool ask = !location.name.empty() && !def->IsNull();
    locateAt(location, ask ? def->getLocations() : Places());
}

void TrBlockBase::locateAt(const Place &location, const Places &places)
{
    placeAt(location.location);
    const auto named = findNamed(location.name, places);
    if (named != places.end()) // else the index stays what it was
        SetAlternateLocationIndex(static_cast<int>(named - places.begin()));
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

// A block that the user placed freely, that has no place on this size (a negative X says so), or
// that has lost its definition stays where it is.
void TrBlockBase::placeByDefinition()
{
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    if (def->IsNull()) return;
    const bool movable = def->GetMovable() != 0;
    const int index = movable ? GetAlternateLocationIndex() : 0;
    if (index < 0) return;
    const Places places = def->getLocations();
    if (!movable) {
        locateAt(places.empty() ? def->getDefaultLocation() : places.front(), places);
        return;
    }
    if (static_cast<std::size_t>(index) >= places.size()) return;
    const Place &place = places[static_cast<std::size_t>(index)];
    if (place.location[0] >= 0.0) locateAt(place, places);
}

void TrBlockBase::locateChildren()
{
    for (const auto &field : getFields()) {
        field->locate();
        field->fitBorders();
    }
    for (const auto &table : getTables()) table->locate();
}

void TrBlockBase::move(const Place &location)
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
