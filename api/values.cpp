#include "api/values.h"

#include <cstring>
#include <stdexcept>

namespace QelFmt::api {

void clear(TRV_FMT_value_list_t &list) { list = {0, nullptr}; }

void fill(TRV_FMT_value_list_t &list, const std::vector<std::string> &texts)
{
    clear(list);
    list.values = new char *[texts.size()];
    for (const std::string &text : texts) {
        // Up to the first NUL, as a C caller will read it.
        const std::size_t bytes = std::strlen(text.c_str()) + 1;
        char *copy = new char[bytes];
        std::memcpy(copy, text.c_str(), bytes);
        list.values[list.num_values++] = copy;
    }
}

std::vector<std::string> linesOf(const TRV_FMT_value_list_t &list)
{
    if (list.num_values < 0 || (list.num_values > 0 && !list.values))
        throw std::runtime_error("Invalid argument");
    std::vector<std::string> lines;
    lines.reserve(static_cast<std::size_t>(list.num_values));
    for (int i = 0; i < list.num_values; ++i)
        lines.emplace_back(list.values[i] ? list.values[i] : "");
    return lines;
}

} // namespace QelFmt::api

extern "C" void TRV_FMT_free_value(TRV_FMT_value_list_t *list)
{
    if (!list) return;
    for (int i = 0; i < list->num_values; ++i) delete[] list->values[i];
    delete[] list->values;
    QelFmt::api::clear(*list); // released twice, nothing happens
}
