// The attributes of an object or a part: titles and values, in the order in which they were set.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host {

struct Attribute {
    std::string title;
    std::string value;
};

// Few attributes are looked through, many are found by an index: a part may carry thousands. An index
// is made when it is first needed and dropped when places change. Where a title stands twice the
// first one is found.
class Attributes {
public:
    Attributes() = default;
    Attributes(std::initializer_list<Attribute> all) : m_all(all) {}
    Attributes(const Attributes &other) : m_all(other.m_all) {}
    Attributes(Attributes &&) = default;
    Attributes &operator=(const Attributes &other);
    Attributes &operator=(Attributes &&) = default;

    auto begin() const { return m_all.begin(); }
    auto end() const { return m_all.end(); }
    std::size_t size() const { return m_all.size(); }
    bool empty() const { return m_all.empty(); }
    const Attribute &operator[](std::size_t place) const { return m_all[place]; }
    const Attribute &back() const { return m_all.back(); }

    static constexpr std::size_t kNone = ~std::size_t{0};
    std::size_t find(std::string_view title) const; // its place

    void add(Attribute attribute);
    void setValue(std::size_t place, std::string value) { m_all[place].value = std::move(value); }
    void remove(std::size_t place);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>()(text);
        }
    };
    using Index = std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>>;

    std::vector<Attribute> m_all;
    mutable std::unique_ptr<Index> m_index;
};

} // namespace host
