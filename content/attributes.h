// String attributes that may or may not be there.
#pragma once

#include "ug_attributable.hxx"

#include <optional>
#include <string>
#include <string_view>

namespace QelFmt {

inline std::optional<std::string> readAttribute(const UgAttributableObject &object,
                                                const std::string &title)
{
    if (!object.hasStringAttribute(title)) return {};
    return object.getStringAttributeValue(title);
}

inline void writeAttribute(UgAttributableObject &object, const std::string &title,
                           const std::string &value)
{
    if (object.hasStringAttribute(title))
        object.setStringAttributeValue(title, value);
    else
        object.addStringAttribute(title, value);
}

inline void dropAttribute(UgAttributableObject &object, const std::string &title)
{
    if (object.hasStringAttribute(title)) object.deleteStringAttribute(title);
}

// "VALUE" and 3 give "VALUE3".
inline std::string indexed(std::string_view title, std::size_t index)
{
    return std::string(title) + std::to_string(index);
}

} // namespace QelFmt
