// The world of a host test: a fresh session with one part in millimetres, in a folder of its own.
#pragma once

#include "nxhost/control.h"
#include "uf.h"
#include "uf_draw.h"
#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_udobj.h"
#include "ug_exception.hxx"
#include "ug_object.hxx"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

class DrawingHost : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!UF_is_initialized()) {
            ASSERT_EQ(UF_initialize(), 0);
        }
        nxhost::reset();
        m_allocations = nxhost::outstandingAllocations();
        std::string pattern = (std::filesystem::temp_directory_path() / "drawing_host.XXXXXX");
        m_folder = mkdtemp(pattern.data());
        m_part = newPart("drawing", UF_PART_METRIC);
    }

    void TearDown() override
    {
        EXPECT_EQ(nxhost::outstandingAllocations(), m_allocations);
        EXPECT_EQ(nxhost::badFrees(), 0u);
        EXPECT_FALSE(nxhost::faultsPending());
        nxhost::reset();
        std::filesystem::remove_all(m_folder);
    }

    tag_t part() const { return m_part; }
    const std::filesystem::path &folder() const { return m_folder; }

    // Becomes the work part.
    tag_t newPart(const std::string &name, int units)
    {
        tag_t made = NULL_TAG;
        EXPECT_EQ(UF_PART_new((m_folder / (name + ".prt")).c_str(), units, &made), 0);
        return made;
    }

    static UF_DRAW_info_t a3()
    {
        UF_DRAW_info_t info{};
        info.size_state = UF_DRAW_METRIC_SIZE;
        info.size.metric_size_code = UF_DRAW_A3;
        info.drawing_scale = 1.0;
        info.units = UF_PART_METRIC;
        info.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
        return info;
    }

    static tag_t addSheet(const std::string &name)
    {
        UF_DRAW_info_t info = a3();
        tag_t sheet = NULL_TAG;
        EXPECT_EQ(UF_DRAW_create_drawing(name.c_str(), &info, &sheet), 0);
        return sheet;
    }

    static tag_t openNewSheet(const std::string &name)
    {
        const tag_t sheet = addSheet(name);
        EXPECT_EQ(UF_DRAW_open_drawing(sheet), 0);
        return sheet;
    }

    // Of a class that is registered once in the process.
    static tag_t addRecord()
    {
        static const UF_UDOBJ_class_t id = [] {
            UF_UDOBJ_class_t made = 0;
            EXPECT_EQ(UF_UDOBJ_create_class("DRAWING_HOST_RECORD", "record", &made), 0);
            return made;
        }();
        tag_t udo = NULL_TAG;
        EXPECT_EQ(UF_UDOBJ_create_udo(id, &udo), 0);
        return udo;
    }

    static tag_t viewOf(tag_t sheet)
    {
        tag_t view = NULL_TAG;
        EXPECT_EQ(UF_DRAW_ask_view_of_drawing(sheet, &view), 0);
        return view;
    }

    static int createNote(std::vector<std::string> lines, tag_t *note, double x = 10, double y = 20)
    {
        std::vector<char *> pointers;
        for (std::string &line : lines) pointers.push_back(line.data());
        double origin[3] = {x, y, 0};
        return UF_DRF_create_note(static_cast<int>(pointers.size()), pointers.data(), origin, 0,
                                  note);
    }

    static tag_t addNote(std::vector<std::string> lines, double x = 10, double y = 20)
    {
        tag_t note = NULL_TAG;
        EXPECT_EQ(createNote(std::move(lines), &note, x, y), 0);
        return note;
    }

    // What one reading of a note's or symbol's text said.
    struct TextInfo {
        int records = 0;
        UF_DRF_draft_aid_text_info_t values{}; // its text is freed: see lines
        std::vector<std::string> lines;
        std::vector<std::string> cutLines;
    };
    static TextInfo textOf(tag_t annotation)
    {
        TextInfo read;
        UF_DRF_draft_aid_text_info_t *info = nullptr;
        EXPECT_EQ(UF_DRF_ask_draft_aid_text_info(annotation, &read.records, &info), 0);
        if (!info) return read;
        for (int i = 0; i < info->num_lines; ++i) {
            read.lines.emplace_back(info->text[i].full_string);
            read.cutLines.emplace_back(info->text[i].string);
            EXPECT_EQ(static_cast<std::size_t>(info->text[i].full_num_chars),
                      read.lines.back().size());
            EXPECT_EQ(static_cast<std::size_t>(info->text[i].num_chars),
                      read.cutLines.back().size());
        }
        read.values = *info;
        read.values.text = nullptr;
        EXPECT_EQ(UF_DRF_free_text(read.records, &info), 0);
        EXPECT_EQ(info, nullptr);
        return read;
    }

    struct Preferences {
        int mpi[100];
        double mpr[70];
        char radius[27];
        char diameter[27];
    };
    static Preferences preferencesOf(tag_t annotation)
    {
        Preferences all{};
        EXPECT_EQ(
            UF_DRF_ask_object_preferences(annotation, all.mpi, all.mpr, all.radius, all.diameter),
            0);
        return all;
    }
    static int setPreferences(tag_t annotation, Preferences all)
    {
        return UF_DRF_set_object_preferences(annotation, all.mpi, all.mpr, all.radius,
                                             all.diameter);
    }

    static std::array<double, 3> originOf(tag_t annotation)
    {
        std::array<double, 3> origin{};
        EXPECT_EQ(UF_DRF_ask_origin(annotation, origin.data()), 0);
        return origin;
    }

    static UF_OBJ_disp_props_t displayOf(tag_t object)
    {
        UF_OBJ_disp_props_t properties{};
        EXPECT_EQ(UF_OBJ_ask_display_properties(object, &properties), 0);
        return properties;
    }

    template <class Action> static std::vector<std::string> changesDuring(Action &&action)
    {
        nxhost::recordChanges(true);
        action();
        std::vector<std::string> changes = nxhost::recordedChanges();
        nxhost::recordChanges(false);
        return changes;
    }

private:
    std::filesystem::path m_folder;
    tag_t m_part = NULL_TAG;
    std::size_t m_allocations = 0;
};

using Coordinates = std::array<double, 3>;
