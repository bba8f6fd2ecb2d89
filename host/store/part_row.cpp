#include "part_row.h"

#include "geometry_codec.h"
#include "schema.h"

namespace host::store {

PartRowSource::PartRowSource(const Part &part, const Encoder &encoder)
{
    row.units = part.units;
    row.patternData = part.patternDataSaved;
    row.currentSheet = static_cast<std::int64_t>(encoder.ordinalOf(part.currentSheet));
    row.fontTable = static_cast<std::int64_t>(encoder.ordinalOf(part.fontTable));
    row.workLayer = part.workLayer;
    Packer layers(m_layers);
    for (std::size_t layer = 1; layer < part.layerStatus.size(); ++layer)
        layers.integer(part.layerStatus[layer]);
    row.layers = m_layers;
    row.nextOrdinal = static_cast<std::int64_t>(part.nextOrdinal);
    row.nextLinkSequence = static_cast<std::int64_t>(part.nextLinkSequence);
}

void decodePart(const PartRow &row, Part &part)
{
    if (row.id != 1) throw Malformed{"its number is not 1"};
    if (row.units != 1 && row.units != 2) throw Malformed{"the units are unknown"};
    if (row.nextOrdinal < 1 || row.nextLinkSequence < 1) throw Malformed{"a counter is below 1"};
    if (row.nextOrdinal > kMostNumbers || row.nextLinkSequence > kMostNumbers)
        throw Malformed{"a counter is out of range"};
    part.units = narrowed(row.units);
    part.patternDataSaved = row.patternData != 0;
    part.workLayer = checkedLayer(row.workLayer);
    Unpacker layers(row.layers);
    for (std::size_t layer = 1; layer < part.layerStatus.size(); ++layer)
        part.layerStatus[layer] = layers.integer();
    layers.end();
    part.nextOrdinal = static_cast<std::uint64_t>(row.nextOrdinal);
    part.nextLinkSequence = static_cast<std::uint64_t>(row.nextLinkSequence);
}

} // namespace host::store
