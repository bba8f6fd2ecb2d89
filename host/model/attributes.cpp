#include "attributes.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::size_t kFew = 16; // as many titles are compared as fast as one is hashed

} // namespace

Attributes &Attributes::operator=(const Attributes &other)
{
    m_all = other.m_all;
    m_index.reset();
    return *this;
}

std::size_t Attributes::find(std::string_view title) const
{
    if (m_all.size() <= kFew) {
        const auto found =
            std::find_if(m_all.begin(), m_all.end(),
                         [&](const Attribute &attribute) { return attribute.title == title; });
        return found == m_all.end() ? kNone : static_cast<std::size_t>(found - m_all.begin());
    }
    if (!m_index) {
        m_index = std::make_unique<Index>(m_all.size());
        for (std::size_t place = 0; place < m_all.size(); ++place)
            m_index->try_emplace(m_all[place].title, place);
    }
    const auto found = m_index->find(title);
    return found == m_index->end() ? kNone : found->second;
}

void Attributes::add(Attribute attribute)
{
    if (m_index) m_index->try_emplace(attribute.title, m_all.size());
    m_all.push_back(std::move(attribute));
}

void Attributes::remove(std::size_t place)
{
    // The last one leaves the places of the others as they are.
    if (m_index && place + 1 == m_all.size() && m_index->at(m_all[place].title) == place)
        m_index->erase(m_index->find(m_all[place].title));
    else
        m_index.reset();
    m_all.erase(m_all.begin() + static_cast<std::ptrdiff_t>(place));
}

} // namespace host
