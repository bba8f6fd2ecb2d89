// Where blocks stand on the sheets of formats.
#pragma once

#include "app/authoring/art.h"
#include "app/authoring/findings.h"

#include <optional>
#include <string>
#include <vector>

namespace app::authoring {

bool isLocation(const RecordTree &record); // of either generation
// The places that count on a format: the first ones that are for it. Null when there are none.
const RecordTree *locationFor(const RecordTree &block, const RecordTree &format);
// Where the block's lower left corner comes on that size by default, from the sheet's.
std::optional<ArtPoint> placeOn(const RecordTree &location, const RecordTree &format,
                                const RecordTree &size);

// A place for every size of every format that the block is for, and for formats and sizes that exist.
void checkPlaces(const RecordTree &block, const std::vector<const RecordTree *> &formats,
                 const std::string &where, Findings &findings);

} // namespace app::authoring
