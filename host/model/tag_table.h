// What belongs to tags. Tags rise and are never used again, so the tag itself says where to look.
#pragma once

#include "uf_defs.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <memory>
#include <vector>

namespace host {

// Pages of places; a page that has emptied is given back, so that a long session keeps a pointer for
// every few hundred tags that died, no more. Addresses hold until the tag is erased.
template <class T> class TagTable {
public:
    T *find(tag_t tag)
    {
        const std::size_t page = tag / kPage;
        if (page >= m_pages.size() || !m_pages[page]) return nullptr;
        Page &held = *m_pages[page];
        return held.used[tag % kPage] ? &held.places[tag % kPage] : nullptr;
    }
    T &operator[](tag_t tag) // makes it when missing
    {
        const std::size_t page = tag / kPage;
        if (page >= m_pages.size()) m_pages.resize(page + 1);
        if (!m_pages[page]) m_pages[page] = std::make_unique<Page>();
        m_pages[page]->used[tag % kPage] = true;
        return m_pages[page]->places[tag % kPage];
    }
    void erase(tag_t tag)
    {
        if (!find(tag)) return;
        std::unique_ptr<Page> &page = m_pages[tag / kPage];
        page->places[tag % kPage] = T{};
        page->used[tag % kPage] = false;
        if (page->used.none()) page.reset();
    }

private:
    static constexpr std::size_t kPage = 256;
    struct Page {
        std::array<T, kPage> places{};
        std::bitset<kPage> used;
    };
    std::vector<std::unique_ptr<Page>> m_pages;
};

} // namespace host
