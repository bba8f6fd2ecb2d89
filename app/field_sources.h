// Where the values of a field come from, by its definition.
#pragma once

#include "app/output.h"
#include "app/values.h"

#include <string>
#include <vector>

namespace app {

struct FieldSource {
    std::vector<std::string> from; // the first that has a value counts: "part TITLE", "site OWNER"
    std::string share;             // the attribute that follows the value; empty: none
    bool allSheets = false;        // a value is shared by all sheets with a format
    bool recompute = false;        // computed again whenever the block moves
    Lines value;
    Lines fresh; // what the field would be given now
};

FieldSource sourceOf(const TrFieldBase &field);
Json toJson(const FieldSource &source);

} // namespace app
