// The part's own row: what is known of the part beside its objects.
#pragma once

#include "body_codec.h"

namespace host::store {

// A row of the part's values, without the tallies; the layers live here.
struct PartRowSource {
    PartRowSource(const Part &part, const Encoder &encoder);
    PartRowSource(const PartRowSource &) = delete;
    PartRowSource &operator=(const PartRowSource &) = delete;

    PartRow row;

private:
    std::string m_layers;
};

// The part's values from the row (Malformed); current sheet and font table are left 0.
void decodePart(const PartRow &row, Part &part);

} // namespace host::store
