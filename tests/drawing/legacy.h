// Records of older generations, made with the platform's own calls as old parts hold them.
#pragma once

#include "tests/support/story.h"
#include "udo/class_names.h"
#include "udo/udo_class.h"

#include "uf_drf.h"
#include "uf_layer.h"
#include "uf_obj.h"
#include "uf_udobj.h"

#include <string>
#include <vector>

struct LegacyRecord {
    const char *className;
    std::vector<std::string> strings = {};
    std::vector<int> ints = {};
    std::vector<double> doubles = {};
    std::vector<tag_t> children = {};
    std::vector<tag_t> owned = {};
};

inline tag_t make(LegacyRecord record)
{
    const auto check = UgException::throwOnFailure;
    tag_t udo = NULL_TAG;
    check(UF_UDOBJ_create_udo(LumUg::UDOClass::GetClass(record.className)->GetClassId(), &udo));
    check(UF_OBJ_set_layer(udo, 254));
    std::vector<char *> texts;
    for (std::string &text : record.strings) texts.push_back(text.data());
    const auto n = [](const auto &values) { return static_cast<unsigned>(values.size()); };
    if (!texts.empty()) check(UF_UDOBJ_add_strings(udo, n(texts), texts.data()));
    if (!record.ints.empty()) check(UF_UDOBJ_add_integers(udo, n(record.ints), record.ints.data()));
    if (!record.doubles.empty())
        check(UF_UDOBJ_add_doubles(udo, n(record.doubles), record.doubles.data()));
    for (const tag_t child : record.children) {
        UF_UDOBJ_link_t link{2, child, 0};
        check(UF_UDOBJ_add_links(udo, 1, &link));
    }
    if (!record.owned.empty())
        check(UF_UDOBJ_add_owning_links(udo, n(record.owned), record.owned.data()));
    return udo;
}

inline tag_t makeNote(std::string text, double x, double y)
{
    char *line = text.data();
    double origin[3] = {x, y, 0.0};
    tag_t note = NULL_TAG;
    UgException::throwOnFailure(UF_DRF_create_note(1, &line, origin, 0, &note));
    return note;
}

// A field with its note; the number of lines is 1.
inline tag_t makeZemField(const std::string &name, const std::string &text, double x, double y)
{
    return make({.className = QelFmt::kZemFieldV1Classname,
                 .strings = {name},
                 .ints = {0, 0, 0, 0, 0, 1},
                 .doubles = {x, y},
                 .owned = {makeNote(text, x, y)}});
}

inline tag_t makeZemBlock(const std::string &name, double x, double y,
                          const std::vector<tag_t> &children)
{
    return make({.className = QelFmt::kZemBlockV1Classname,
                 .strings = {name},
                 .doubles = {x, y},
                 .children = children});
}

// A current format record on a sheet, without its definition.
inline tag_t makeFormat(const char *className, tag_t sheet, const std::string &name,
                        const std::string &size, const std::vector<tag_t> &children)
{
    const tag_t format =
        make({.className = className, .strings = {name, size}, .children = children});
    UF_UDOBJ_link_t link{1, sheet, 0};
    UgException::throwOnFailure(UF_UDOBJ_add_links(format, 1, &link));
    return format;
}
