// The field definitions that a block or a table definition owns.
#pragma once

#include "definitions/field_def.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace QelFmt {

inline std::vector<TrFieldDefV1>
asValues(const std::vector<boost::shared_ptr<TrFieldDefV1>> &fields)
{
    std::vector<TrFieldDefV1> values;
    for (const auto &field : fields) values.push_back(*field);
    return values;
}

// Unbound when there is none of that id.
inline TrFieldDefV1 fieldOfId(const std::vector<TrFieldDefV1> &fields, const std::string &id)
{
    for (const TrFieldDefV1 &field : fields) {
        if (field.GetId() == id) return field;
    }
    return {};
}

} // namespace QelFmt
