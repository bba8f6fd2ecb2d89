// One reading of a UDO's stored arrays.
#pragma once

#include "uf_udobj.h"
#include "ug_exception.hxx"

#include <span>
#include <string>
#include <vector>

namespace LumUg {

class UdoData {
public:
    // NULL_TAG is refused by the platform like any other tag that is no UDO.
    explicit UdoData(tag_t udo)
    {
        UgException::throwOnFailure(UF_UDOBJ_ask_udo_data(udo, &m_data));
    }
    ~UdoData() { UF_UDOBJ_free_udo_data(&m_data); }
    UdoData(UdoData &&) = delete; // neither copied nor moved: one owner

    std::span<const int> ints() const { return {m_data.ints, m_data.num_ints}; }
    std::span<const double> doubles() const { return {m_data.doubles, m_data.num_doubles}; }
    std::span<const char *const> strings() const { return {m_data.strings, m_data.num_strings}; }
    std::span<const double> lengths() const { return {m_data.lengths, m_data.num_lengths}; }
    std::span<const double> areas() const { return {m_data.areas, m_data.num_areas}; }
    std::span<const double> volumes() const { return {m_data.volumes, m_data.num_volumes}; }

    std::span<const UF_UDOBJ_link_t> linkDefs() const
    {
        return {m_data.link_defs, m_data.num_links};
    }

    // The objects of one link type in stored order, null ones included.
    std::vector<tag_t> links(unsigned type) const
    {
        std::vector<tag_t> objects;
        for (const UF_UDOBJ_link_t &link : linkDefs()) {
            if (link.link_type == static_cast<int>(type)) objects.push_back(link.assoc_ug_tag);
        }
        return objects;
    }

private:
    UF_UDOBJ_all_data_t m_data{};
};

template <class T> std::vector<T> copyOf(std::span<const T> elements)
{
    return {elements.begin(), elements.end()};
}

inline std::vector<std::string> copyOf(std::span<const char *const> texts)
{
    return {texts.begin(), texts.end()};
}

} // namespace LumUg
