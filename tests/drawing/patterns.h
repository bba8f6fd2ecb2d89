// Pattern parts for tests: what a block or a frame is drawn with.
#pragma once

#include "tests/support/story.h"

#include "nxhost/authoring.h"
#include "uf_curve.h"

// A part in the patterns folder with one line, saved with its pattern data. The work part stays.
inline void makePattern(const Story &story, const std::string &name, bool withData = true,
                        double length = 10.0)
{
    const tag_t work = UF_ASSEM_ask_work_part();
    tag_t part = NULL_TAG;
    const std::string path = story.patternsFolder() + "/" + name + ".prt";
    UgException::throwOnFailure(UF_PART_new(path.c_str(), UF_PART_METRIC, &part));
    UF_CURVE_line_t line{{0, 0, 0}, {length, 0, 0}};
    tag_t tag = NULL_TAG;
    UgException::throwOnFailure(UF_CURVE_create_line(&line, &tag));
    nxhost::setPatternDataSaved(part, withData);
    UgException::throwOnFailure(UF_PART_save());
    UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    if (work != NULL_TAG) {
        UgException::throwOnFailure(UF_PART_set_display_part(work));
        UgException::throwOnFailure(UF_ASSEM_set_work_part(work));
    }
}
