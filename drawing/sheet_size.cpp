#include "drawing/sheet_size.h"

#include <span>
#include <stdexcept>
#include <string>

namespace {

struct Size {
    double height;
    double width;
};

// By size code, which counts from 1.
constexpr Size kMetric[] = {{841, 1189}, {594, 841}, {420, 594}, {297, 420}, {210, 297}};
constexpr Size kEnglish[] = {{8.5, 11}, {11, 17}, {17, 22}, {22, 34},
                             {34, 44},  {28, 40}, {28, 44}, {34, 55}};

Point2 sizeOfCode(std::span<const Size> sizes, int code, const char *kind)
{
    const int count = static_cast<int>(sizes.size());
    if (code < 1 || code > count)
        throw std::runtime_error("The drawing sheet has size code " + std::to_string(code) + ", " +
                                 kind + " sizes have codes 1 to " + std::to_string(count) +
                                 ". Give the sheet one of these sizes or a custom size.");
    const Size &size = sizes[static_cast<std::size_t>(code) - 1];
    return {size.width, size.height};
}

} // namespace

Point2 sheetSize(const UF_DRAW_info_t &info)
{
    switch (info.size_state) {
    case UF_DRAW_CUSTOM_SIZE:
        return {info.size.custom_size[1], info.size.custom_size[0]};
    case UF_DRAW_ENGLISH_SIZE:
        return sizeOfCode(kEnglish, info.size.english_size_code, "English");
    default:
        return sizeOfCode(kMetric, info.size.metric_size_code, "metric");
    }
}
