// A sheet that places are asked for.
#pragma once

#include "definitions/locations.h"
#include "tests/support/definitions.h"

#include <string>
#include <vector>

class OnASheet : public testing::Test {
protected:
    OnASheet() { sheet = story.newSheet(420, 297); }

    std::size_t records(const LumUg::UDOClass &of) const
    {
        return LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), of.GetClassId()).size();
    }
    // Size A3 (420 x 297) of format F. The size is of the suite BIG, the format of FAMILY.
    boost::shared_ptr<TrDrawing> drawing()
    {
        const auto onSheet = TrDrawing::getDrawing(sheet);
        if (!onSheet->hasFormat()) {
            const boost::shared_ptr<TrFormatDefV1> format(
                new TrFormatDefV1(makeFormat("F", {"A3"})));
            TrFormatSizeV1 size = format->GetSizeDef("A3");
            size.SetSuiteName("BIG");
            format->SetSuiteName("FAMILY");
            onSheet->addFormat(format, size);
        }
        return onSheet;
    }

    Story story;
    tag_t sheet;
};

inline void expectPlace(const QelFmt::LocationInfoType &place, const std::string &name, double x,
                        double y)
{
    EXPECT_EQ(place.name, name);
    EXPECT_EQ(place.location[0], x);
    EXPECT_EQ(place.location[1], y);
}
