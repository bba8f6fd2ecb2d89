// Value lists of the C interface.
#pragma once

#include "api/trv_fmt.h"

#include <string>
#include <vector>

namespace QelFmt::api {

// What the list held is not released.
void clear(TRV_FMT_value_list_t &list);

// Fills the list with fresh copies. `num_values` is 0 until the array stands, and counts what is
// filled from then on, so that a list is never dangling.
void fill(TRV_FMT_value_list_t &list, const std::vector<std::string> &texts);

// Each text up to its NUL; a null text is an empty line.
std::vector<std::string> linesOf(const TRV_FMT_value_list_t &list);

} // namespace QelFmt::api
