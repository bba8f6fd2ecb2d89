#include "app/authoring/text_ruler.h"

#include "nxhost/control.h"
#include "uf.h"
#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_ugfont.h"
#include "ug_exception.hxx"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include <unistd.h>

namespace app::authoring {

namespace {

void check(int status) { UgException::throwOnFailure(status); }

// The part is the work part as long as this lives.
class AtWork {
public:
    explicit AtWork(tag_t part) : m_before(UF_ASSEM_ask_work_part())
    {
        check(UF_ASSEM_set_work_part(part));
    }
    ~AtWork()
    {
        if (m_before != NULL_TAG) UF_ASSEM_set_work_part(m_before);
    }
    AtWork(const AtWork &) = delete;
    AtWork &operator=(const AtWork &) = delete;

private:
    tag_t m_before;
};

std::string freshName()
{
    static int count = 0;
    const auto folder = std::filesystem::temp_directory_path();
    return (folder / fmt::format("qelfmt-ruler-{}-{}.prt", getpid(), ++count)).string();
}

} // namespace

TextRuler::TextRuler()
{
    const tag_t before = UF_ASSEM_ask_work_part();
    check(UF_PART_new(freshName().c_str(), UF_PART_METRIC, &m_part));
    check(UF_OBJ_cycle_objs_in_part(m_part, UF_font_table_type, &m_fonts));
    if (before != NULL_TAG) check(UF_ASSEM_set_work_part(before));
}

TextRuler::~TextRuler() { UF_PART_close(m_part, 0, 1); }

TextExtent TextRuler::measure(const std::vector<std::string> &lines, const TextLook &look)
{
    if (lines.empty() || !(look.size > 0)) return {};
    const AtWork work(m_part);
    std::vector<std::string> copies = lines;
    std::vector<char *> pointers;
    for (std::string &line : copies) pointers.push_back(line.data());
    double origin[3] = {0, 0, 0};
    tag_t note = NULL_TAG;
    check(UF_DRF_create_note(static_cast<int>(pointers.size()), pointers.data(), origin, 0, &note));
    int mpi[NUM_INT_PARAMS];
    double mpr[NUM_REAL_PARAMS];
    char radius[27], diameter[27];
    check(UF_DRF_ask_object_preferences(note, mpi, mpr, radius, diameter));
    mpr[UF_DRF_MPR_char_size] = look.size;
    mpr[UF_DRF_MPR_aspect_ratio] = look.aspect;
    mpr[UF_DRF_MPR_char_space_factor] = look.charSpace == 0.0 ? 1.0 : look.charSpace;
    mpr[UF_DRF_MPR_line_space_factor] = look.lineSpace;
    check(UF_DRF_set_object_preferences(note, mpi, mpr, radius, diameter));

    int count = 0;
    UF_DRF_draft_aid_text_info_t *info = nullptr;
    check(UF_DRF_ask_draft_aid_text_info(note, &count, &info));
    TextExtent extent;
    for (int i = 0; i < count; ++i)
        extent = {std::max(extent.width, info[i].length), std::max(extent.height, info[i].height)};
    UF_DRF_free_text(count, &info);
    check(UF_OBJ_delete_object(note));
    return extent;
}

TextExtent TextRuler::measure(int characters, int lines, const TextLook &look)
{
    static const std::string sample =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    TextExtent extent = measure(std::vector(static_cast<std::size_t>(lines), sample), look);
    extent.width *= static_cast<double>(characters) / static_cast<double>(sample.size());
    return extent;
}

bool TextRuler::knowsFont(const std::string &font)
{
    std::string name = font;
    int index = 0;
    nxhost::setRejectUnknownFonts(true);
    const int code = UF_UGFONT_add_font(m_fonts, &index, name.data());
    nxhost::setRejectUnknownFonts(false);
    return code == 0;
}

} // namespace app::authoring
