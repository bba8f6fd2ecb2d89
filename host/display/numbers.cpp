#include "display/numbers.h"

#include <charconv>
#include <cmath>

namespace host::display {

void appendNumber(std::string &text, double value) { appendNumber(text, value, 3); }

void appendNumber(std::string &text, double value, int decimals)
{
    constexpr double powers[]{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
    constexpr double limit = 1e8; // far beyond any sheet
    if (!(std::abs(value) < limit)) value = std::isnan(value) ? 0.0 : std::copysign(limit, value);
    long long scaled = std::llround(value * powers[decimals]);
    if (scaled < 0) {
        text += '-';
        scaled = -scaled;
    }
    const auto unit = static_cast<long long>(powers[decimals]);
    char digits[24];
    auto end = std::to_chars(digits, digits + sizeof digits, scaled / unit).ptr;
    long long rest = scaled % unit;
    if (rest != 0) {
        *end++ = '.';
        for (long long place = unit / 10; rest != 0; place /= 10) {
            *end++ = static_cast<char>('0' + rest / place);
            rest %= place;
        }
    }
    text.append(digits, end);
}

} // namespace host::display
