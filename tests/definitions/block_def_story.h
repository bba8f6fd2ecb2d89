// A block definition and a sheet that it may be asked for.
#pragma once

#include "definitions/block_def.h"

#include "tests/definitions/slot_walk.h"
#include "tests/support/definitions.h"

#include <string>
#include <vector>

class BlockDef : public testing::Test {
protected:
    using Def = TrBlockDefV1;

    BlockDef() { sheet = story.newSheet(420, 297); }

    static Def filled()
    {
        Def block;
        fill(block, Def::kLayout);
        return block;
    }
    static Def cloneOf(const Def &source) { return *source.clone(); }

    // Size A3 of the format on the sheet.
    boost::shared_ptr<TrDrawing> drawingOf(const std::string &format_id,
                                           const std::string &suite = "")
    {
        const auto onSheet = TrDrawing::getDrawing(sheet);
        if (!onSheet->hasFormat()) {
            const boost::shared_ptr<TrFormatDefV1> format(
                new TrFormatDefV1(makeFormat(format_id, {"A3"})));
            format->SetSuiteName(suite);
            onSheet->addFormat(format, format->GetSizeDef("A3"));
        }
        return onSheet;
    }
    std::size_t records(const LumUg::UDOClass &of) const
    {
        return LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), of.GetClassId()).size();
    }

    Story story;
    tag_t sheet;
};
