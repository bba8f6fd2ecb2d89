// Records of the older generations, written slot by slot as old parts hold them.
#pragma once

#include "tests/content/block_on_sheet.h"

#include "uf_udobj.h"
#include "ug_line.hxx"

inline void linkChild(const LumUg::UDO &parent, const LumUg::UDO &child)
{
    UF_UDOBJ_link_t link{2, child.tag(), 0};
    UgException::throwOnFailure(UF_UDOBJ_add_links(parent.tag(), 1, &link));
}

inline UgTypedObject *freeNote(const Lines &lines)
{
    std::vector<char *> texts;
    for (const std::string &line : lines) texts.push_back(const_cast<char *>(line.c_str()));
    double origin[3] = {11.0, 12.0, 0.0};
    tag_t note = NULL_TAG;
    UgException::throwOnFailure(
        UF_DRF_create_note(static_cast<int>(texts.size()), texts.data(), origin, 0, &note));
    return dynamic_cast<UgTypedObject *>(UgObject::find(note));
}

// At (11, 12), bottom and right border on and their lines drawn; a note unless the value is in the
// attributes only.
inline ZemFieldV1 legacyField(const std::string &id, const Lines &value, bool withNote = true)
{
    ZemFieldV1 field;
    for (const int number : {1, 0, 0, 1, 0, static_cast<int>(value.size())})
        field.SetInt(static_cast<unsigned>(field.IsNull() ? 0 : field.GetInts().size()), number);
    field.SetDouble(0, 11.0);
    field.SetDouble(1, 12.0);
    field.SetString(0, id);
    for (std::size_t i = 0; i < value.size(); ++i)
        field.GetUdoObject()->addStringAttribute("VALUE" + std::to_string(i), value[i]);
    if (withNote) field.AddOwnedObjects({freeNote(value)});
    field.AddOwnedObjects({UgLine::create(Point3(1, 1, 0), Point3(2, 1, 0)),
                           UgLine::create(Point3(2, 1, 0), Point3(2, 2, 0))});
    return field;
}

template <class Entry>
Entry legacyEntry(const std::string &table, int hidden, int middle,
                  const std::vector<ZemFieldV1> &fields)
{
    Entry entry;
    entry.SetInt(0, hidden);
    entry.SetInt(1, middle);
    entry.SetString(0, table);
    for (const ZemFieldV1 &field : fields) linkChild(entry, field);
    return entry;
}
