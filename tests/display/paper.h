// The world of a picture test: a fresh session, a part and sheets to draw on through the platform's
// own calls.
#pragma once

#include "display/render.h"
#include "nxhost/authoring.h"
#include "nxhost/control.h"
#include "uf.h"
#include "uf_curve.h"
#include "uf_draw.h"
#include "uf_drf.h"
#include "uf_layer.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_patt.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

struct TextLook {
    int site = 7; // bottom left
    double size = 3.5;
    double angle = 0.0;
    double aspect = 1.0;
    double charSpace = 1.0;
    double lineSpace = 1.0;
    int justification = 1;
    int color = 7;
    int orientation = 0;
};

class Paper : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!UF_is_initialized()) {
            ASSERT_EQ(UF_initialize(), 0);
        }
        nxhost::reset();
        std::string pattern = (std::filesystem::temp_directory_path() / "paper.XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
    }

    void TearDown() override
    {
        nxhost::reset();
        std::filesystem::remove_all(m_folder);
    }

    std::string file(const std::string &name) const { return (m_folder / name).string(); }

    tag_t newPart(const std::string &name, int units = 1)
    {
        tag_t part = NULL_TAG;
        EXPECT_EQ(UF_PART_new(file(name + ".prt").c_str(), units, &part), 0);
        return part;
    }

    // Of a free size; becomes the current sheet.
    static tag_t newSheet(const std::string &name, double width, double height, int units = 1)
    {
        UF_DRAW_info_t info{};
        info.size_state = UF_DRAW_CUSTOM_SIZE;
        info.size.custom_size[0] = height;
        info.size.custom_size[1] = width;
        info.drawing_scale = 1.0;
        info.units = units;
        info.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
        tag_t sheet = NULL_TAG;
        EXPECT_EQ(UF_DRAW_create_drawing(name.c_str(), &info, &sheet), 0);
        EXPECT_EQ(UF_DRAW_open_drawing(sheet), 0);
        return sheet;
    }

    static tag_t line(double x0, double y0, double x1, double y1, int width = 0, int font = 1)
    {
        UF_CURVE_line_t ends{{x0, y0, 0}, {x1, y1, 0}};
        tag_t made = NULL_TAG;
        EXPECT_EQ(UF_CURVE_create_line(&ends, &made), 0);
        EXPECT_EQ(UF_OBJ_set_line_width(made, width), 0);
        EXPECT_EQ(UF_OBJ_set_font(made, font), 0);
        return made;
    }

    static tag_t note(std::vector<std::string> lines, double x, double y, const TextLook &look = {})
    {
        std::vector<char *> pointers;
        for (std::string &text : lines) pointers.push_back(text.data());
        double origin[3] = {x, y, 0};
        tag_t made = NULL_TAG;
        EXPECT_EQ(UF_DRF_create_note(static_cast<int>(pointers.size()), pointers.data(), origin,
                                     look.orientation, &made),
                  0);
        setLook(made, look);
        return made;
    }

    static void setLook(tag_t object, const TextLook &look)
    {
        Preferences p(object);
        p.ints[UF_DRF_MPI_align_site] = look.site;
        p.ints[UF_DRF_MPI_text_justification] = look.justification;
        p.ints[UF_DRF_MPI_text_color] = look.color;
        p.reals[UF_DRF_MPR_text_angle] = look.angle;
        p.reals[UF_DRF_MPR_char_size] = look.size;
        p.reals[UF_DRF_MPR_aspect_ratio] = look.aspect;
        p.reals[UF_DRF_MPR_char_space_factor] = look.charSpace;
        p.reals[UF_DRF_MPR_line_space_factor] = look.lineSpace;
        p.set();
    }

    static tag_t symbol(int type, const char *upper, const char *lower, double x, double y,
                        double size = 13.0, double textSize = 3.5)
    {
        double origin[3] = {x, y, 0};
        tag_t made = NULL_TAG;
        EXPECT_EQ(UF_DRF_create_id_symbol(static_cast<UF_DRF_id_symbol_type_t>(type), upper, lower,
                                          origin, UF_DRF_without_leader,
                                          UF_DRF_leader_attach_screen, nullptr, origin, &made),
                  0);
        Preferences p(made);
        p.reals[UF_DRF_MPR_id_symbol_size] = size;
        p.reals[UF_DRF_MPR_char_size] = textSize;
        p.set();
        return made;
    }

    // Saves the work part so that it can be placed, and makes `back` the work part again.
    static void saveAsPattern(tag_t part)
    {
        nxhost::setPatternDataSaved(part, true);
        EXPECT_EQ(UF_PART_save(), 0);
    }

    tag_t pattern(const std::string &name, double x, double y, double degrees = 0.0,
                  double scale = 1.0)
    {
        const double a = degrees * 3.14159265358979323846 / 180.0;
        double transform[13] = {
            std::cos(a), -std::sin(a), 0, std::sin(a), std::cos(a), 0, 0, 0, 1, x, y, 0, scale};
        std::string path = file(name + ".prt"), none;
        tag_t made = NULL_TAG;
        EXPECT_EQ(uc5823(path.data(), none.data(), 1, transform, &made), 0);
        return made;
    }

    static std::vector<host::display::TextItem> textsOf(const host::display::DisplayList &list)
    {
        return itemsOf<host::display::TextItem>(list);
    }
    template <class Item> static std::vector<Item> itemsOf(const host::display::DisplayList &list)
    {
        std::vector<Item> found;
        for (const auto &item : list.items)
            if (const auto *wanted = std::get_if<Item>(&item)) found.push_back(*wanted);
        return found;
    }

private:
    struct Preferences {
        tag_t object;
        std::array<int, 100> ints{};
        std::array<double, 70> reals{};
        std::array<char, 27> radius{}, diameter{};

        explicit Preferences(tag_t tag) : object(tag)
        {
            EXPECT_EQ(UF_DRF_ask_object_preferences(object, ints.data(), reals.data(),
                                                    radius.data(), diameter.data()),
                      0);
        }
        void set()
        {
            EXPECT_EQ(UF_DRF_set_object_preferences(object, ints.data(), reals.data(),
                                                    radius.data(), diameter.data()),
                      0);
        }
    };

    std::filesystem::path m_folder;
};
