#include "foundation/info_lines.h"

#include "ug_info_window.hxx"

namespace QelFmt {

void InfoLines::flush()
{
    UgInfoWindow::open();
    UgInfoWindow::write(m_text.str());
    m_text.str({});
}

std::string InfoLines::padded(std::string_view label)
{
    constexpr std::size_t width = 24;
    std::string text(label);
    if (text.size() < width) text.resize(width, ' ');
    return text;
}

} // namespace QelFmt
