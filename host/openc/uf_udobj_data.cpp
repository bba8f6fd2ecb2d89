// The data arrays of user defined objects.
#include "uf_udobj.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

#include <cstdlib>
#include <cstring>
#include <new>

using host::Session;
using host::Udo;

namespace {

Udo &dataOf(tag_t udo) { return Session::get().requireBody<Udo>(udo, UF_err_wrong_class); }

template <class Stored, class Given>
void append(tag_t udo, std::vector<Stored> Udo::*family, const char *what, unsigned n,
            Given values[])
{
    auto &stored = dataOf(udo).*family;
    host::require(n == 0 || values, UF_err_bad_parameter_number_3);
    if constexpr (std::is_same_v<Given, char *>)
        for (unsigned i = 0; i < n; ++i)
            host::require(values[i] != nullptr, UF_err_bad_parameter_number_3);
    if (n == 0) return;
    Session::get().changing(Session::get().require(udo), what);
    stored.insert(stored.end(), values, values + n);
}

// By their bits: writing a NaN over the same NaN changes nothing.
template <class T> bool sameStored(const std::vector<T> &a, const std::vector<T> &b)
{
    if constexpr (std::is_arithmetic_v<T>)
        return std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
    else
        return a == b;
}

// Brings no count: as many values are read as are stored.
template <class Stored, class Given>
void replace(tag_t udo, std::vector<Stored> Udo::*family, const char *what, Given values[])
{
    auto &stored = dataOf(udo).*family;
    if (stored.empty()) return;
    host::require(values != nullptr, UF_err_bad_parameter_number_2);
    if constexpr (std::is_same_v<Given, char *>)
        for (std::size_t i = 0; i < stored.size(); ++i)
            host::require(values[i] != nullptr, UF_err_bad_parameter_number_2);
    std::vector<Stored> given(values, values + stored.size());
    if (sameStored(given, stored)) return;
    Session::get().changing(Session::get().require(udo), what);
    stored = std::move(given);
}

template <class Stored> void clear(tag_t udo, std::vector<Stored> Udo::*family, const char *what)
{
    auto &stored = dataOf(udo).*family;
    if (stored.empty()) return;
    Session::get().changing(Session::get().require(udo), what);
    stored.clear();
}

} // namespace

// --- six families -----------------------------------------------------------------------------------

int UF_UDOBJ_add_integers(tag_t udo, unsigned int n, int values[])
{
    return host::call("UF_UDOBJ_add_integers",
                      [&] { append(udo, &Udo::ints, "integers", n, values); });
}

int UF_UDOBJ_add_doubles(tag_t udo, unsigned int n, double values[])
{
    return host::call("UF_UDOBJ_add_doubles",
                      [&] { append(udo, &Udo::doubles, "doubles", n, values); });
}

int UF_UDOBJ_add_strings(tag_t udo, unsigned int n, char *values[])
{
    return host::call("UF_UDOBJ_add_strings",
                      [&] { append(udo, &Udo::strings, "strings", n, values); });
}

int UF_UDOBJ_add_lengths(tag_t udo, unsigned int n, double values[])
{
    return host::call("UF_UDOBJ_add_lengths",
                      [&] { append(udo, &Udo::lengths, "lengths", n, values); });
}

int UF_UDOBJ_add_areas(tag_t udo, unsigned int n, double values[])
{
    return host::call("UF_UDOBJ_add_areas", [&] { append(udo, &Udo::areas, "areas", n, values); });
}

int UF_UDOBJ_add_volumes(tag_t udo, unsigned int n, double values[])
{
    return host::call("UF_UDOBJ_add_volumes",
                      [&] { append(udo, &Udo::volumes, "volumes", n, values); });
}

int UF_UDOBJ_edit_integers(tag_t udo, int values[])
{
    return host::call("UF_UDOBJ_edit_integers",
                      [&] { replace(udo, &Udo::ints, "integers", values); });
}

int UF_UDOBJ_edit_doubles(tag_t udo, double values[])
{
    return host::call("UF_UDOBJ_edit_doubles",
                      [&] { replace(udo, &Udo::doubles, "doubles", values); });
}

int UF_UDOBJ_edit_strings(tag_t udo, char *values[])
{
    return host::call("UF_UDOBJ_edit_strings",
                      [&] { replace(udo, &Udo::strings, "strings", values); });
}

int UF_UDOBJ_edit_lengths(tag_t udo, double values[])
{
    return host::call("UF_UDOBJ_edit_lengths",
                      [&] { replace(udo, &Udo::lengths, "lengths", values); });
}

int UF_UDOBJ_edit_areas(tag_t udo, double values[])
{
    return host::call("UF_UDOBJ_edit_areas", [&] { replace(udo, &Udo::areas, "areas", values); });
}

int UF_UDOBJ_edit_volumes(tag_t udo, double values[])
{
    return host::call("UF_UDOBJ_edit_volumes",
                      [&] { replace(udo, &Udo::volumes, "volumes", values); });
}

int UF_UDOBJ_delete_integers(tag_t udo)
{
    return host::call("UF_UDOBJ_delete_integers", [&] { clear(udo, &Udo::ints, "integers"); });
}

int UF_UDOBJ_delete_doubles(tag_t udo)
{
    return host::call("UF_UDOBJ_delete_doubles", [&] { clear(udo, &Udo::doubles, "doubles"); });
}

int UF_UDOBJ_delete_strings(tag_t udo)
{
    return host::call("UF_UDOBJ_delete_strings", [&] { clear(udo, &Udo::strings, "strings"); });
}

int UF_UDOBJ_delete_lengths(tag_t udo)
{
    return host::call("UF_UDOBJ_delete_lengths", [&] { clear(udo, &Udo::lengths, "lengths"); });
}

int UF_UDOBJ_delete_areas(tag_t udo)
{
    return host::call("UF_UDOBJ_delete_areas", [&] { clear(udo, &Udo::areas, "areas"); });
}

int UF_UDOBJ_delete_volumes(tag_t udo)
{
    return host::call("UF_UDOBJ_delete_volumes", [&] { clear(udo, &Udo::volumes, "volumes"); });
}

// --- reading ----------------------------------------------------------------------------------------

// One block holds a whole reading, so that a reading costs one allocation: the arrays in order of
// their alignment, the characters of the strings behind them. The first array that is not empty
// starts the block.
namespace {

class BlockWriter {
public:
    explicit BlockWriter(std::size_t bytes)
        : m_block(bytes ? static_cast<std::byte *>(std::malloc(bytes)) : nullptr), m_next(m_block)
    {
        if (bytes && !m_block) throw std::bad_alloc();
    }

    template <class T> T *reserve(std::size_t n)
    {
        if (n == 0) return nullptr;
        T *const place = reinterpret_cast<T *>(m_next);
        m_next += n * sizeof(T);
        return place;
    }
    template <class T> T *copy(const std::vector<T> &values)
    {
        T *const place = reserve<T>(values.size());
        if (place) std::memcpy(place, values.data(), values.size() * sizeof(T));
        return place;
    }
    char *copyText(const std::string &text)
    {
        char *const place = reserve<char>(text.size() + 1);
        std::memcpy(place, text.c_str(), text.size() + 1);
        return place;
    }
    const void *block() const { return m_block; }

private:
    std::byte *m_block;
    std::byte *m_next;
};

std::size_t bytesFor(const Udo &data)
{
    std::size_t characters = 0;
    for (const std::string &text : data.strings) characters += text.size() + 1;
    const std::size_t doubles =
        data.doubles.size() + data.lengths.size() + data.areas.size() + data.volumes.size();
    return doubles * sizeof(double) + data.strings.size() * sizeof(char *) +
           data.links.size() * sizeof(UF_UDOBJ_link_t) + data.ints.size() * sizeof(int) +
           characters;
}

constexpr unsigned kLinkChanged = 2; // a bit of udo_status

void fill(UF_UDOBJ_all_data_t &all, const Udo &data)
{
    BlockWriter writer{bytesFor(data)};
    const auto count = [](const auto &values) { return static_cast<unsigned>(values.size()); };
    all.class_id = data.classId;
    all.udo_status = 0;
    all.num_doubles = count(data.doubles);
    all.doubles = writer.copy(data.doubles);
    all.num_lengths = count(data.lengths);
    all.lengths = writer.copy(data.lengths);
    all.num_areas = count(data.areas);
    all.areas = writer.copy(data.areas);
    all.num_volumes = count(data.volumes);
    all.volumes = writer.copy(data.volumes);
    all.num_strings = count(data.strings);
    all.strings = writer.reserve<char *>(data.strings.size());
    all.num_links = count(data.links);
    all.link_defs = writer.reserve<UF_UDOBJ_link_t>(data.links.size());
    for (std::size_t i = 0; i < data.links.size(); ++i) {
        const host::Link &link = data.links[i];
        all.link_defs[i] = {link.type, link.target, link.status};
        if (link.status) all.udo_status = kLinkChanged;
    }
    all.num_ints = count(data.ints);
    all.ints = writer.copy(data.ints);
    for (std::size_t i = 0; i < data.strings.size(); ++i)
        all.strings[i] = writer.copyText(data.strings[i]);
    if (writer.block()) host::dataBlockTaken(writer.block());
}

} // namespace

int UF_UDOBJ_ask_udo_data(tag_t udo, UF_UDOBJ_all_data_t *all_data)
{
    return host::call("UF_UDOBJ_ask_udo_data", [&] {
        host::require(all_data != nullptr, UF_err_bad_parameter_number_2);
        fill(*all_data, dataOf(udo));
    });
}

// The struct is left as it is, so that a second return of the same reading is seen as one.
int UF_UDOBJ_free_udo_data(UF_UDOBJ_all_data_p_t all)
{
    if (const int code = host::enterAnytime("UF_UDOBJ_free_udo_data")) return code;
    if (!all) return UF_err_bad_parameter_number_1;
    void *const starts[] = {all->doubles, all->lengths,   all->areas, all->volumes,
                            all->strings, all->link_defs, all->ints};
    for (void *const start : starts) {
        if (!start) continue;
        if (!host::dataBlockReturned(start)) return UF_err_bad_parameter_number_1;
        std::free(start);
        break;
    }
    return 0;
}
