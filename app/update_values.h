// What the fields of a sheet say, and what an update made of it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class TrFormatBase;

namespace app {

// A value and where it stands: the place of its block on the sheet, and the way to the field in it.
struct ShownValue {
    std::size_t blockIndex;
    std::string block;
    std::string field;
    std::vector<std::string> lines;
};

enum class ValueChangeKind { added, lost, recomputed };

struct ValueChange {
    std::string block;
    std::string field; // "NUMBER"; of a row "REVS[2].WHAT"
    ValueChangeKind kind = ValueChangeKind::added;
    std::vector<std::string> before;
    std::vector<std::string> after;
};

std::string nameOf(ValueChangeKind kind);

std::vector<ShownValue> valuesOn(const TrFormatBase &format);
std::vector<ValueChange> changesBetween(const std::vector<ShownValue> &before,
                                        const std::vector<ShownValue> &after);
// "TITLE.NUMBER = 4711", a text a value that was lost.
std::vector<std::string> lossesOf(const std::vector<ValueChange> &changes);

} // namespace app
