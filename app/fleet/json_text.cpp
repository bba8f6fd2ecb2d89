#include "app/fleet/json_text.h"

#include "app/fleet/report_output.h"

#include <algorithm>

namespace app::fleet {

namespace {

bool standsForItself(char c)
{
    return static_cast<signed char>(c) >= 0x20 && c != '"' && c != '\\' && c != 0x7f;
}

} // namespace

void appendJson(std::string &to, std::string_view text)
{
    if (!std::all_of(text.begin(), text.end(), standsForItself)) {
        to += compact(text);
        return;
    }
    to += '"';
    to += text;
    to += '"';
}

} // namespace app::fleet
