// A drawing with blocks, fields and tables for measurements, driven through the C interface.
#pragma once

#include "api/trv_fmt.h"
#include "bench/processor_time.h"
#include "tests/support/definitions.h"
#include "tests/support/story.h"
#include "tests/support/text_field.h"

#include <cstdlib>
#include <iostream>
#include <string>

inline void require(int status)
{
    if (status == 0) return;
    std::cerr << TRV_FMT_ask_last_error() << '\n';
    std::abort();
}

// Format F in size A3 requires block TITLE, which `fill` furnishes.
class Scene {
public:
    template <class Fill> explicit Scene(Fill &&fill)
    {
        writeDefinitionPart(story, "f.prt", [&] {
            makeFormat("F", {"A3"}).SetRequiredBlockIds({"TITLE"});
            TrBlockDefV1 title = makeBlock("TITLE");
            title.SetTextLayer(21);
            title.SetPatternLayer(20);
            fill(title);
        });
        require(TRV_FMT_initialize());
        story.newPart();
    }
    ~Scene() { TRV_FMT_terminate(); }
    Scene(const Scene &) = delete;
    Scene &operator=(const Scene &) = delete;

    tag_t addSheet(const std::string &name)
    {
        const tag_t sheet = story.addSheet(name, 420, 297);
        require(TRV_FMT_add_format(sheet, "F", "A3"));
        return sheet;
    }

    Story story;
};

inline void setText(tag_t sheet, const char *field, std::string text)
{
    char *lines[] = {text.data()};
    const TRV_FMT_value_list_t list{1, lines};
    require(TRV_FMT_set_field_value(sheet, "TITLE", field, &list));
}
