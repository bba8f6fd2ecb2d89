// The styles that the fields of a file have in common, under names.
#pragma once

#include "app/authoring/flow.h"
#include "app/authoring/record.h"
#include "app/authoring/style.h"

#include <string>
#include <utility>
#include <vector>

namespace app::authoring {

// The style that gives the field's text slots. Of a column the point at which the text stands counts only
// from side to side, and not its distance from the upper and lower line: both follow from the row.
Style styleOf(const RecordTree &field, int units, bool column);

class StyleBook {
public:
    // `styles`: of every field, the columns' without what follows from the row.
    StyleBook(const std::vector<Style> &styles, int units);

    // The keys that make a cell's style, a name first if it has one. `column`: as above.
    void describe(const Style &style, bool column, FlowMapping &keys) const;
    std::string text() const;                                     // the `styles:` of the file
    const Style &value() const { return m_named.front().second; } // of cells that name none

private:
    const Style *named(const Style &style, bool column, std::string &name) const;

    int m_units;
    std::vector<std::pair<std::string, Style>> m_named; // "value" first
};

} // namespace app::authoring
