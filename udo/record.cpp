#include "udo/growth.h"
#include "udo/udo.h"
#include "udo/udo_data.h"

#include <bit>
#include <cstdint>

namespace LumUg {

namespace {

template <class T> void putElement(std::vector<T> &elements, unsigned index, const T &value)
{
    if (index < elements.size()) {
        elements[index] = value;
        return;
    }
    const std::vector<T> run = appendedRun(elements.size(), index, value);
    elements.insert(elements.end(), run.begin(), run.end());
}

// To the bit: a NaN that is there already need not be written, a zero that changes its sign must be.
bool identical(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
template <class T> bool identical(const T &a, const T &b) { return a == b; }

// At most one edit and one append. Elements that were stored since the snapshot stay.
template <class T>
void writeElements(UgUDO &udo, const std::vector<T> &wanted, std::vector<T> stored,
                   void (UgUDO::*replace)(const std::vector<T> &),
                   void (UgUDO::*append)(const std::vector<T> &))
{
    const std::size_t common = std::min(wanted.size(), stored.size());
    bool changed = false;
    for (std::size_t i = 0; i < common; ++i) {
        if (identical(stored[i], wanted[i])) continue;
        stored[i] = wanted[i];
        changed = true;
    }
    if (changed) (udo.*replace)(stored);
    if (wanted.size() > common) (udo.*append)({wanted.begin() + common, wanted.end()});
}

} // namespace

Record::Record(const UDO &udo) : m_source(&udo)
{
    if (!udo.IsNull()) m_read.emplace(udo.tag());
}

Record::Arrays &Record::changed()
{
    if (!m_changed) m_changed = copy();
    return *m_changed;
}

std::string Record::get(const AttributeSlot &slot) const
{
    for (const auto &[title, value] : m_attributes) {
        if (title == slot.title) return value;
    }
    return m_source->get(slot);
}

void Record::put(const IntSlot &slot, int value) { putElement(changed().ints, slot.index, value); }

void Record::put(const DoubleSlot &slot, double value)
{
    putElement(changed().doubles, slot.index, value);
}

void Record::put(const StringSlot &slot, const std::string &value)
{
    putElement(changed().strings, slot.index, value);
}

void Record::put(const StringTail &slot, const std::vector<std::string> &values)
{
    std::vector<std::string> &strings = changed().strings;
    strings.resize(slot.index);
    strings.insert(strings.end(), values.begin(), values.end());
}

void Record::put(const AttributeSlot &slot, const std::string &value)
{
    for (auto &[title, pending] : m_attributes) {
        if (title == slot.title) {
            pending = value;
            return;
        }
    }
    m_attributes.emplace_back(slot.title, value);
}

void Record::write(UDO &udo) const
{
    udo.CreateUDO();
    UgUDO &target = *udo.m_udo;
    if (m_changed) {
        Arrays stored = Record(udo).copy();
        const auto &[ints, doubles, strings] = *m_changed;
        writeElements(target, ints, std::move(stored.ints), &UgUDO::setInts, &UgUDO::addInts);
        writeElements(target, doubles, std::move(stored.doubles), &UgUDO::setDoubles,
                      &UgUDO::addDoubles);
        if (stored.strings.size() > strings.size()) { // a tail has become shorter
            udo.keepStrings(strings.size());
            stored.strings = udo.GetStrings();
        }
        writeElements(target, strings, std::move(stored.strings), &UgUDO::setStrings,
                      &UgUDO::addStrings);
    }
    for (const auto &[title, value] : m_attributes)
        udo.set(AttributeSlot{title.c_str(), title.c_str()}, value);
}

} // namespace LumUg
