// One answer to "which records link to this object".
#pragma once

#include "uf.h"
#include "uf_udobj.h"
#include "ug_exception.hxx"

#include <span>

class LinksTo {
public:
    explicit LinksTo(tag_t object)
    {
        UgException::throwOnFailure(UF_UDOBJ_ask_udo_links_to_obj(object, &m_count, &m_links));
    }
    ~LinksTo() { UF_free(m_links); }
    LinksTo(LinksTo &&) = delete; // neither copied nor moved: one owner

    // In the order in which the links were made; each names the linking record.
    std::span<const UF_UDOBJ_link_t> links() const
    {
        return {m_links, static_cast<std::size_t>(m_count)};
    }

private:
    int m_count = 0;
    UF_UDOBJ_link_t *m_links = nullptr;
};
