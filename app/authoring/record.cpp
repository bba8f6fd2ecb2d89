#include "app/authoring/record.h"

namespace app::authoring {

namespace {

template <class T> void putElement(std::vector<T> &values, std::size_t index, const T &value)
{
    if (index >= values.size()) values.resize(index + 1);
    values[index] = value;
}

} // namespace

std::string RecordTree::text(const std::string &key) const
{
    const SlotInfo *slot = kind->slot(key);
    if (!slot) return {};
    if (slot->shape == SlotShape::attribute) {
        for (const auto &[title, value] : attributes)
            if (title == slot->title) return value;
        return {};
    }
    return slot->index < strings.size() ? strings[slot->index] : std::string();
}

std::vector<std::string> RecordTree::texts(const std::string &key) const
{
    const SlotInfo *slot = kind->slot(key);
    if (!slot || slot->index >= strings.size()) return {};
    return {strings.begin() + slot->index, strings.end()};
}

int RecordTree::integer(const std::string &key) const
{
    const SlotInfo *slot = kind->slot(key);
    return slot && slot->index < ints.size() ? ints[slot->index] : 0;
}

double RecordTree::real(const std::string &key) const
{
    const SlotInfo *slot = kind->slot(key);
    return slot && slot->index < doubles.size() ? doubles[slot->index] : 0.0;
}

std::vector<const RecordTree *> RecordTree::childrenOf(const std::string &word) const
{
    std::vector<const RecordTree *> found;
    for (const RecordTree &child : children)
        if (child.kind->word == word) found.push_back(&child);
    return found;
}

void RecordTree::put(const SlotInfo &slot, int value) { putElement(ints, slot.index, value); }

void RecordTree::put(const SlotInfo &slot, double value) { putElement(doubles, slot.index, value); }

void RecordTree::put(const SlotInfo &slot, const std::string &value)
{
    if (slot.shape != SlotShape::attribute) {
        putElement(strings, slot.index, value);
        return;
    }
    for (auto &[title, stored] : attributes) {
        if (title == slot.title) {
            stored = value;
            return;
        }
    }
    attributes.emplace_back(slot.title, value);
}

void RecordTree::put(const SlotInfo &slot, const std::vector<std::string> &values)
{
    strings.resize(slot.index);
    strings.insert(strings.end(), values.begin(), values.end());
}

void RecordTree::put(const SlotInfo &slot, const std::vector<double> &values)
{
    for (std::size_t i = 0; i < values.size(); ++i)
        putElement(doubles, slot.index + i * slot.stride, values[i]);
}

} // namespace app::authoring
