// Values by a number that rises: objects by order of creation, links by the order in which they were
// made.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>

namespace host {

// A sorted array: new numbers come at the end as a rule, which costs nothing, and a part of a hundred
// thousand objects is walked from front to back in memory. What is erased leaves an empty place; the
// places are closed up when a sixteenth of them are empty. Value{} is no value. Iterators hold until
// something is added or erased.
template <class Value> class ByNumber {
    using Place = std::pair<std::uint64_t, Value>;
    using Places = std::vector<Place>;

public:
    class Iterator {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Place;
        using difference_type = std::ptrdiff_t;
        using pointer = const Place *;
        using reference = const Place &;

        Iterator() = default;
        const Place &operator*() const { return *m_at; }
        const Place *operator->() const { return m_at; }
        Iterator &operator++()
        {
            ++m_at;
            return skipForward();
        }
        Iterator operator++(int)
        {
            Iterator before = *this;
            ++*this;
            return before;
        }
        Iterator &operator--() // never from the first value
        {
            do --m_at;
            while (m_at->second == Value{});
            return *this;
        }
        bool operator==(const Iterator &other) const { return m_at == other.m_at; }

    private:
        friend class ByNumber;
        Iterator(const Place *at, const Place *end) : m_at(at), m_end(end) { skipForward(); }
        Iterator &skipForward()
        {
            while (m_at != m_end && m_at->second == Value{}) ++m_at;
            return *this;
        }

        const Place *m_at = nullptr;
        const Place *m_end = nullptr;
    };
    using const_iterator = Iterator;
    using value_type = Place;

    Iterator begin() const
    {
        return iterator(m_places.begin() + static_cast<std::ptrdiff_t>(m_first));
    }
    Iterator end() const { return iterator(m_places.end()); }
    auto rbegin() const { return std::reverse_iterator(end()); }
    auto rend() const { return std::reverse_iterator(begin()); }
    std::size_t size() const { return m_used; }
    bool empty() const { return m_used == 0; }

    Iterator find(std::uint64_t number) const
    {
        const auto place = lowest(number);
        const bool found =
            place != m_places.end() && place->first == number && place->second != Value{};
        return found ? iterator(place) : end();
    }
    Value at(std::uint64_t number) const
    {
        const Iterator found = find(number);
        if (found == end()) throw std::out_of_range("no value has this number");
        return found->second;
    }
    Iterator
    lower_bound(std::uint64_t number) const // the first one with this number or a higher one
    {
        return iterator(lowest(number));
    }
    Iterator upper_bound(std::uint64_t number) const // the first one with a higher number
    {
        return iterator(lowest(number + 1));
    }

    // Replaces what has that number.
    void set(std::uint64_t number, Value value)
    {
        if (m_places.empty() || m_places.back().first < number) {
            m_places.emplace_back(number, value);
            ++m_used;
            return;
        }
        const auto place = m_places.begin() + (lowest(number) - m_places.cbegin());
        if (place->first != number) {
            const auto made = m_places.insert(place, {number, value});
            m_first = std::min(m_first, static_cast<std::size_t>(made - m_places.begin()));
            ++m_used;
            return;
        }
        if (place->second == Value{}) ++m_used;
        place->second = value;
        m_first = std::min(m_first, static_cast<std::size_t>(place - m_places.begin()));
    }
    void erase(std::uint64_t number)
    {
        const auto place = m_places.begin() + (lowest(number) - m_places.cbegin());
        if (place == m_places.end() || place->first != number || place->second == Value{}) return;
        place->second = Value{};
        --m_used;
        while (!m_places.empty() && m_places.back().second == Value{}) m_places.pop_back();
        m_first = std::min(m_first, m_places.size());
        while (m_first < m_places.size() && m_places[m_first].second == Value{}) ++m_first;
        if (m_places.size() - m_used > 64 + m_used / 16) closeUp();
    }

private:
    typename Places::const_iterator lowest(std::uint64_t number) const
    {
        return std::lower_bound(
            m_places.begin(), m_places.end(), number,
            [](const Place &place, std::uint64_t wanted) { return place.first < wanted; });
    }
    Iterator iterator(typename Places::const_iterator at) const
    {
        const Place *const first = m_places.data();
        return {first + (at - m_places.begin()), first + m_places.size()};
    }
    void closeUp()
    {
        std::erase_if(m_places, [](const Place &place) { return place.second == Value{}; });
        m_first = 0;
    }

    Places m_places;
    std::size_t m_used = 0;
    std::size_t m_first = 0; // no place before it is used
};

} // namespace host
