// Where in a text a slot of a record comes from, so that what is found out later can be shown there.
#pragma once

#include "app/authoring/complaints.h"

#include <map>
#include <string>

namespace app::authoring {

struct Origin {
    std::string key; // as written: "size", not "text_size"
    Mark at;
};

// By the slot's key in the full form ("text_size").
using Origins = std::map<std::string, Origin>;

} // namespace app::authoring
