#include "app/authoring/flow.h"

#include "app/authoring/scalars.h"

#include <algorithm>

namespace app::authoring {

namespace {

template <class Values, class ToText> std::string listOf(const Values &values, ToText toText)
{
    std::string text;
    for (const auto &value : values) text += (text.empty() ? "" : ", ") + toText(value);
    return "[" + text + "]";
}

} // namespace

void FlowMapping::put(const std::string &key, const std::string &value)
{
    m_entries.emplace_back(key, value);
}

void FlowMapping::putText(const std::string &key, const std::string &text)
{
    put(key, quoted(text));
}

void FlowMapping::putNumber(const std::string &key, double number) { put(key, realText(number)); }

bool FlowMapping::has(const std::string &key) const
{
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [&](const auto &entry) { return entry.first == key; });
}

std::string FlowMapping::text() const
{
    std::string text;
    for (const auto &[key, value] : m_entries)
        text += (text.empty() ? "" : ", ") + key + ": " + value;
    return "{" + text + "}";
}

std::string flowList(const std::vector<double> &numbers) { return listOf(numbers, realText); }

std::string flowList(const std::vector<std::string> &texts) { return listOf(texts, quoted); }

} // namespace app::authoring
