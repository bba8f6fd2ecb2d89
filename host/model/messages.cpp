// The texts of all codes. Callers read them into 133 bytes.
#include "calls.h"

#include "uf.h"
#include "uf_curve.h"
#include "uf_draw.h"
#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_patt.h"

#include <algorithm>
#include <iterator>

namespace host {

namespace {

struct Message {
    int code;
    std::string_view text;
};

constexpr Message kMessages[] = {
    // Reasons of the pattern calls, below all modules; errors below zero.
    {UF_PATT_err_bad_argument, "An argument of the pattern call is not valid"},
    {UF_PATT_err_unreadable, "The file of the pattern cannot be read as a part"},
    {1, "The file of the pattern was not found"},
    {3, "The file of the pattern is a checkpoint"},
    {5, "The revision check of the pattern failed"},
    {6, "The part holds no pattern data: save it with pattern data on"},
    {14, "The pattern data of the part must be made again"},
    {20, "The name of the pattern is not valid"},
    {21, "The matrix of the pattern is not orthogonal"},
    {22, "The scale of the pattern must be positive"},

    {UF_PART_err_no_work_part, "There is no work part"},
    {UF_PART_err_file_exists, "A part file of this name exists already"},
    {UF_PART_err_file_not_found, "The part file was not found"},
    {UF_PART_err_already_loaded, "The part is loaded already"},
    {UF_PART_err_not_a_part, "The file is not a part file"},
    {UF_PART_err_damaged, "The part file is damaged"},
    {UF_PART_err_newer_version, "The part file was written by a newer version"},
    {UF_PART_err_cannot_write, "The part file cannot be written"},
    {UF_PART_err_locked, "The part file is in use by another program"},
    {UF_PART_err_changed_on_disk, "The part file was changed by somebody else since it was opened"},
    {UF_PART_err_modified, "The part has changes that are not saved"},

    {UF_err_program_not_initialized, "The program interface is not initialised"},
    {UF_err_bad_parameter_number_1, "The first argument of the call is not valid"},
    {UF_err_bad_parameter_number_2, "The second argument of the call is not valid"},
    {UF_err_bad_parameter_number_3, "The third argument of the call is not valid"},
    {UF_err_bad_parameter_number_4, "The fourth argument of the call is not valid"},
    {UF_err_bad_parameter_number_5, "The fifth argument of the call is not valid"},
    {UF_err_unknown_tag, "There is no object with this tag, or it was deleted"},
    {UF_err_wrong_class, "The call does not apply to this kind of object"},
    {UF_err_class_exists, "A class of user defined objects with this name is registered already"},
    {UF_err_unknown_class_id, "There is no class of user defined objects with this number"},
    {UF_err_class_query_refused,
     "This class of user defined objects does not allow to be asked for"},
    {UF_err_link_cycle, "The link would close a cycle of user defined objects"},
    {UF_err_no_such_link, "The user defined object has no such link"},
    {UF_err_already_owned, "The object is owned by a user defined object already"},
    {UF_err_other_part, "User defined objects link to and own objects of their own part only"},
    {UF_err_attribute_missing, "The object has no attribute of this title"},
    {UF_err_attribute_exists, "The object has an attribute of this title already"},
    {UF_err_no_work_part, "There is no work part: open or create one first"},
    {UF_err_count_mismatch, "The number of values differs from the number that is stored"},
    {UF_err_layer_range, "Layers are numbered from 1 to 256"},
    {UF_err_unknown_font, "The font is not known to this installation"},

    {UF_OBJ_err_cannot_delete, "The object cannot be deleted"},
    {UF_OBJ_err_no_name, "The object has no name"},
    {UF_OBJ_err_internal, "Internal error of the object calls"},

    {UF_DRF_err_invalid_parameter, "A parameter of the drafting call is not valid"},
    {UF_DRF_err_null_structure, "The object structure of the drafting call is missing"},
    {UF_DRF_err_null_object, "The object of the drafting call is missing"},
    {UF_DRF_err_invalid_object, "The drafting call does not apply to this object"},

    {UF_DRAW_err_unrecoverable, "The drawing call failed"},
    {UF_DRAW_err_invalid_parameter, "A parameter of the drawing call is not valid"},
    {UF_DRAW_err_not_current, "The drawing sheet must be the current one"},
    {UF_DRAW_err_name_in_use, "A drawing sheet of this name exists already"},
    {UF_DRAW_err_null_object, "The drawing sheet is missing"},

    {UF_CURVE_err_not_a_point, "The object is not a point"},
    {UF_CURVE_err_not_a_line, "The object is not a line"},
    {UF_CURVE_err_not_an_arc, "The object is not an arc"},
    {UF_err_zero_length, "A line must have a length: its ends are the same point"},
};

constexpr bool messagesAreInOrder()
{
    for (std::size_t i = 1; i < std::size(kMessages); ++i)
        if (kMessages[i - 1].code >= kMessages[i].code) return false;
    return true;
}
static_assert(messagesAreInOrder());

} // namespace

std::string_view messageOf(int code)
{
    const auto found =
        std::lower_bound(std::begin(kMessages), std::end(kMessages), code,
                         [](const Message &message, int wanted) { return message.code < wanted; });
    return found == std::end(kMessages) || found->code != code ? std::string_view() : found->text;
}

} // namespace host
