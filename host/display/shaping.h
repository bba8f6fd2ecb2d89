// A text as signs in their places, the same for every painter. Places are along the baseline, in a
// space where a capital is 1 high and the aspect is 1.
#pragma once

#include "display/display_list.h"
#include "display/render.h"
#include "display/sign.h"

#include <unordered_map>
#include <vector>

namespace host::display {

struct PlacedSign {
    const Sign *sign = nullptr;
    std::size_t use = 0; // place in Shaper::uses()
    double x = 0.0;
};

struct ShapedText {
    const TextItem *item = nullptr;
    std::vector<PlacedSign> signs;
    double gap = 0.0; // extra space after each
    double width = 0.0;
};

// From the first to the last ink.
struct InkExtent {
    double left = 0.0;
    double right = 0.0;
};
InkExtent inkOf(const ShapedText &text);

// Shapes the texts of one file and notes which characters another font had to lend.
class Shaper {
public:
    ShapedText shape(const TextItem &item);
    const std::vector<Substitution> &substitutions() const { return m_substitutions; }
    const std::vector<const Sign *> &uses() const { return m_uses; } // each once, by first use

private:
    std::size_t useOf(std::u32string_view text);
    void note(const Sign::Lent &lent);

    std::vector<std::size_t> m_ascii =
        std::vector<std::size_t>(128, kUnknown); // nearly all there is
    std::unordered_map<std::u32string, std::size_t> m_others;
    std::vector<const Sign *> m_uses;
    std::vector<Substitution> m_substitutions;

    static constexpr std::size_t kUnknown = ~std::size_t{0};
};

} // namespace host::display
