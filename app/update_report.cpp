#include "app/update_report.h"

namespace app {

Json toJson(const SheetRef &sheet, const UpdateReport &report)
{
    Json result{{"sheet", sheet.name},
                {"state", nameOf(report.before.state)},
                {"format", report.before.format},
                {"size", report.before.size},
                {"formatChanged", report.formatChanged},
                {"blocks", Json::array()},
                {"addedBlocks", report.addedBlocks},
                {"values", Json::array()}};
    for (const BlockUpdate &block : report.blocks) {
        result["blocks"].push_back(
            Json{{"id", block.id}, {"update", nameOf(block.method)}, {"reasons", block.reasons}});
        if (block.moved())
            result["blocks"].back()["moved"] = Json{{"from", block.from}, {"to", block.to}};
    }
    for (const ValueChange &value : report.values)
        result["values"].push_back(Json{{"block", value.block},
                                        {"field", value.field},
                                        {"change", nameOf(value.kind)},
                                        {"before", value.before},
                                        {"after", value.after}});
    return result;
}

} // namespace app
