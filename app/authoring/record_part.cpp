// Records from and to parts, by the platform's calls: what is stored, slot by slot, without the
// accessors' defaults.
#include "app/authoring/record.h"

#include "udo/udo_class.h"

#include "uf.h"
#include "uf_attr.h"
#include "uf_obj.h"
#include "uf_object_types.h"
#include "uf_part.h"
#include "uf_udobj.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <map>
#include <set>

namespace app::authoring {

namespace {

constexpr int kOwning = 2; // the type of links from a record to those it owns

void check(int status) { UgException::throwOnFailure(status); }

std::string classOf(tag_t udo)
{
    char *name = nullptr;
    check(UF_UDOBJ_ask_udo_class_name(udo, &name));
    std::string result = name ? name : "";
    UF_free(name);
    return result;
}

void readAttributes(tag_t udo, RecordTree &record)
{
    int index = 0;
    for (;;) {
        char title[UF_ATTR_MAX_TITLE_LEN + 1] = "";
        UF_ATTR_value_t value{};
        check(UF_ATTR_cycle(udo, &index, UF_ATTR_string, title, &value));
        if (index == 0) return;
        record.attributes.emplace_back(title, value.value.string ? value.value.string : "");
        UF_free(value.value.string);
    }
}

class Scan {
public:
    explicit Scan(tag_t part)
    {
        for (tag_t tag = UF_OBJ_cycle_all(part, NULL_TAG); tag != NULL_TAG;
             tag = UF_OBJ_cycle_all(part, tag)) {
            int type = 0, subtype = 0;
            check(UF_OBJ_ask_type_and_subtype(tag, &type, &subtype));
            if (type != UF_user_defined_object_type) continue;
            if (kindOfClass(classOf(tag)))
                m_records.push_back(tag);
            else
                m_file.leftOut.push_back("a record of class " + classOf(tag));
        }
    }

    RecordFile read()
    {
        std::set<tag_t> owned;
        for (const tag_t tag : m_records)
            for (const tag_t child : ownedBy(tag)) owned.insert(child);
        for (const tag_t tag : m_records)
            if (!owned.contains(tag)) m_file.records.push_back(readRecord(tag));
        return std::move(m_file);
    }

private:
    static std::vector<tag_t> ownedBy(tag_t tag)
    {
        UF_UDOBJ_all_data_t data{};
        check(UF_UDOBJ_ask_udo_data(tag, &data));
        std::vector<tag_t> children;
        for (unsigned i = 0; i < data.num_links; ++i) {
            const UF_UDOBJ_link_t &link = data.link_defs[i];
            if (link.link_type == kOwning && link.assoc_ug_tag != NULL_TAG)
                children.push_back(link.assoc_ug_tag);
        }
        UF_UDOBJ_free_udo_data(&data);
        return children;
    }

    RecordTree readRecord(tag_t tag)
    {
        RecordTree record;
        record.kind = kindOfClass(classOf(tag));
        if (!m_seen.insert(tag).second)
            m_file.leftOut.push_back(
                fmt::format("a {} that two records own: it is written twice", record.kind->word));
        UF_UDOBJ_all_data_t data{};
        check(UF_UDOBJ_ask_udo_data(tag, &data));
        record.ints.assign(data.ints, data.ints + data.num_ints);
        record.doubles.assign(data.doubles, data.doubles + data.num_doubles);
        record.strings.assign(data.strings, data.strings + data.num_strings);
        if (data.num_lengths + data.num_areas + data.num_volumes)
            m_file.leftOut.push_back("lengths, areas or volumes of a " + record.kind->word);
        UF_UDOBJ_free_udo_data(&data);
        readAttributes(tag, record);
        UF_OBJ_disp_props_t shown{};
        check(UF_OBJ_ask_display_properties(tag, &shown));
        record.layer = shown.layer;
        char name[UF_OBJ_NAME_LEN + 1] = "";
        if (UF_OBJ_ask_name(tag, name) == 0) record.name = name;
        for (const tag_t child : ownedBy(tag)) {
            int type = 0, subtype = 0;
            check(UF_OBJ_ask_type_and_subtype(child, &type, &subtype));
            if (type == UF_user_defined_object_type && kindOfClass(classOf(child)))
                record.children.push_back(readRecord(child));
            else if (type != UF_user_defined_object_type)
                m_file.leftOut.push_back("an object owned by a " + record.kind->word);
        }
        return record;
    }

    RecordFile m_file;
    std::vector<tag_t> m_records;
    std::set<tag_t> m_seen;
};

void writeStrings(tag_t tag, std::vector<std::string> strings)
{
    std::vector<char *> pointers;
    for (std::string &text : strings) pointers.push_back(text.data());
    if (!pointers.empty())
        check(UF_UDOBJ_add_strings(tag, static_cast<unsigned>(pointers.size()), pointers.data()));
}

void writeAttributes(tag_t tag, const RecordTree &record)
{
    for (auto [title, text] : record.attributes) {
        UF_ATTR_value_t value{};
        value.type = UF_ATTR_string;
        value.value.string = text.data();
        check(UF_ATTR_assign(tag, title.data(), value));
    }
}

tag_t writeRecord(RecordTree record)
{
    tag_t tag = NULL_TAG;
    check(UF_UDOBJ_create_udo(record.kind->registration->GetClassId(), &tag));
    check(UF_OBJ_set_layer(tag, record.layer));
    if (!record.ints.empty())
        check(UF_UDOBJ_add_integers(tag, static_cast<unsigned>(record.ints.size()),
                                    record.ints.data()));
    if (!record.doubles.empty())
        check(UF_UDOBJ_add_doubles(tag, static_cast<unsigned>(record.doubles.size()),
                                   record.doubles.data()));
    writeStrings(tag, record.strings);
    writeAttributes(tag, record);
    if (!record.name.empty()) check(UF_OBJ_set_name(tag, record.name.c_str()));
    for (RecordTree &child : record.children) {
        UF_UDOBJ_link_t link{kOwning, writeRecord(std::move(child)), 0};
        check(UF_UDOBJ_add_links(tag, 1, &link));
    }
    return tag;
}

} // namespace

RecordFile scanPart(tag_t part)
{
    RecordFile file = Scan(part).read();
    check(UF_PART_ask_units(part, &file.units));
    return file;
}

void writeRecords(const std::vector<RecordTree> &records)
{
    for (const RecordTree &record : records) writeRecord(record);
}

} // namespace app::authoring
