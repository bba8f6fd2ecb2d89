// From stored ordinals to places in the list of objects that are being loaded.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace host::store {

class Ordinals {
public:
    static constexpr std::size_t kNone = ~std::size_t{0};

    // In rising order.
    void add(std::uint64_t ordinal) { m_ordinals.push_back(ordinal); }

    // After the last one. Parts that lost few objects get a direct table, others are searched.
    void finish()
    {
        if (m_ordinals.empty() || m_ordinals.back() / 8 > m_ordinals.size()) return;
        m_places.assign(m_ordinals.back() + 1, 0);
        for (std::size_t i = 0; i < m_ordinals.size(); ++i)
            m_places[m_ordinals[i]] = static_cast<std::uint32_t>(i + 1);
    }

    std::size_t find(std::uint64_t ordinal) const
    {
        if (!m_places.empty())
            return ordinal < m_places.size() && m_places[ordinal] ? m_places[ordinal] - 1 : kNone;
        const auto found = std::lower_bound(m_ordinals.begin(), m_ordinals.end(), ordinal);
        return found != m_ordinals.end() && *found == ordinal
                   ? static_cast<std::size_t>(found - m_ordinals.begin())
                   : kNone;
    }

    std::uint64_t operator[](std::size_t place) const { return m_ordinals[place]; }
    std::size_t size() const { return m_ordinals.size(); }

private:
    std::vector<std::uint64_t> m_ordinals;
    std::vector<std::uint32_t> m_places; // one more than the place; 0 for none
};

} // namespace host::store
