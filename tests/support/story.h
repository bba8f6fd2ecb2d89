// The world of one test: a fresh host, a temporary folder, and in it the settings, definitions and
// parts that the test makes. At its end the platform's memory must have been given back.
//
//     Story story;
//     story.writeSettings("[Settings]\nField Selection = 1\n");
//     story.newPart("drawing");
//     const tag_t sheet = story.addSheet("A3", 420, 297);
//     EXPECT_EQ(story.changesOn(sheet, [&] { ... }), "");
//     story.saveAndReopen();                    // tags are new: ask story.sheet(0)
#pragma once

#include "foundation/application.h"
#include "foundation/registry.h"

#include "lumug/nx_search_file_list.h"
#include "nxhost/control.h"
#include "tests/support/soak.h"
#include "uf.h"
#include "uf_draw.h"
#include "uf_part.h"
#include "ug_exception.hxx"
#include "ug_object.hxx"
#include "ug_part.hxx"

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// An environment variable for the length of a block; an empty value removes it.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::string &value) : m_name(std::move(name))
    {
        if (const char *old = std::getenv(m_name.c_str())) m_old = old;
        set(value);
    }
    ~ScopedVariable() { set(m_old.value_or("")); }
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

private:
    void set(const std::string &value)
    {
        if (value.empty())
            unsetenv(m_name.c_str());
        else
            setenv(m_name.c_str(), value.c_str(), 1);
    }
    std::string m_name;
    std::optional<std::string> m_old;
};

class Story {
public:
    Story() : m_folder(freshFolder())
    {
        nxhost::reset();
        LumUg::NxSearchFileList::setSearchDirectories({});
        QelFmt::Application::getRegistry()->resetTo("");
        m_allocations = nxhost::outstandingAllocations();
        m_bad_frees = nxhost::badFrees();
    }

    ~Story()
    {
        EXPECT_EQ(nxhost::outstandingDataBlocks(), 0u) << "a reading of a UDO was not given back";
        EXPECT_EQ(nxhost::outstandingAllocations(), m_allocations)
            << "something the platform handed out was not given back";
        EXPECT_EQ(nxhost::badFrees(), m_bad_frees);
        nxhost::reset();
        QelFmt::Application::getRegistry()->resetTo("");
        boost::system::error_code ignored;
        boost::filesystem::remove_all(m_folder, ignored);
    }
    Story(const Story &) = delete;
    Story &operator=(const Story &) = delete;

    // --- files ------------------------------------------------------------------------------
    const boost::filesystem::path &folder() const { return m_folder; }
    std::string file(const std::string &name) const { return (m_folder / name).string(); }
    std::string siteFolder() const { return file("site"); }                    // UGII_SITE_DIR
    std::string definitionsFolder() const { return file("site/format_defs"); } // made with it
    std::string patternsFolder() const { return file("patterns"); }            // UGII_PATDIR

    std::string writeFile(const std::string &name, std::string_view bytes) const
    {
        const boost::filesystem::path path = m_folder / name;
        boost::filesystem::create_directories(path.parent_path());
        std::ofstream(path.string(), std::ios::binary) << bytes;
        return path.string();
    }
    std::string readFile(const std::string &name) const
    {
        std::ifstream in(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    // The settings file of the site; read when an application object is made next, or at once
    // with readSettings().
    void writeSettings(std::string_view text) const { writeFile("site/config/tr_format", text); }
    void readSettings() const { QelFmt::Application::getRegistry()->resetTo("tr_format"); }
    void useSettings(std::string_view text) const
    {
        writeSettings(text);
        readSettings();
    }

    // --- parts and sheets -------------------------------------------------------------------
    // A new part, which becomes the work part. Units: 1 millimetres, 2 inches.
    tag_t newPart(const std::string &name = "drawing.prt", int units = UF_PART_METRIC)
    {
        const boost::filesystem::path path = m_folder / name;
        boost::filesystem::create_directories(path.parent_path());
        UgException::throwOnFailure(UF_PART_new(path.c_str(), units, &m_part));
        return m_part;
    }
    tag_t part() const { return m_part; }
    UgPart *partObject() const { return dynamic_cast<UgPart *>(UgObject::find(m_part)); }

    // A sheet of the work part, in its units; it becomes the current one.
    tag_t addSheet(const std::string &name, double width, double height)
    {
        UF_DRAW_info_t info{};
        info.size_state = UF_DRAW_CUSTOM_SIZE;
        info.size.custom_size[0] = height;
        info.size.custom_size[1] = width;
        info.drawing_scale = 1.0;
        UgException::throwOnFailure(UF_PART_ask_units(UF_ASSEM_ask_work_part(), &info.units));
        info.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
        tag_t sheet = NULL_TAG;
        UgException::throwOnFailure(UF_DRAW_create_drawing(name.c_str(), &info, &sheet));
        open(sheet);
        return sheet;
    }
    // A new metric part with one sheet, A3 unless said otherwise.
    tag_t newSheet(double width = 420, double height = 297)
    {
        newPart();
        return addSheet("SHEET1", width, height);
    }
    std::vector<tag_t> sheets() const // of the work part, in order of creation
    {
        int count = 0;
        tag_t *list = nullptr;
        UgException::throwOnFailure(UF_DRAW_ask_drawings(&count, &list));
        std::vector<tag_t> all(list, list + count);
        UF_free(list);
        return all;
    }
    tag_t sheet(std::size_t i) const { return sheets().at(i); }
    void open(tag_t sheet) const { UgException::throwOnFailure(UF_DRAW_open_drawing(sheet)); }
    tag_t currentSheet() const
    {
        tag_t sheet = NULL_TAG;
        UgException::throwOnFailure(UF_DRAW_ask_current_drawing(&sheet));
        return sheet;
    }

    void save() const { UgException::throwOnFailure(UF_PART_save()); }
    // Saves the work part, closes it and opens it again. Every tag is new; the sheet that was
    // current is current again.
    void saveAndReopen()
    {
        const std::optional<std::size_t> current = indexOf(currentSheet());
        char name[MAX_FSPEC_BUFSIZE];
        UgException::throwOnFailure(UF_PART_ask_part_name(m_part, name));
        save();
        UgException::throwOnFailure(UF_PART_close(m_part, 0, 1));
        openPart(name);
        if (current) open(sheet(*current));
    }
    tag_t openPart(const std::string &path)
    {
        UF_PART_load_status_t status{};
        const int code = UF_PART_open(path.c_str(), &m_part, &status);
        UF_PART_free_load_status(&status);
        UgException::throwOnFailure(code);
        return m_part;
    }

    // --- what happened ------------------------------------------------------------------------
    // What `body` changed on the sheet or in the part: lines gone with "- ", new ones with "+ ".
    template <class Body> std::string changesOn(tag_t sheet, Body &&body) const
    {
        const std::string before = nxhost::listSheet(sheet);
        body();
        return nxhost::difference(before, nxhost::listSheet(sheet));
    }
    template <class Body> std::string changesIn(tag_t part, Body &&body) const
    {
        const std::string before = nxhost::listPart(part);
        body();
        return nxhost::difference(before, nxhost::listPart(part));
    }
    // Every change of stored state while `body` runs, one line each; "nothing happened" is empty.
    template <class Body> std::vector<std::string> changesDuring(Body &&body) const
    {
        nxhost::recordChanges(true);
        body();
        std::vector<std::string> changes = nxhost::recordedChanges();
        nxhost::recordChanges(false);
        return changes;
    }

private:
    static boost::filesystem::path freshFolder()
    {
        namespace fs = boost::filesystem;
        const fs::path folder =
            fs::canonical(fs::temp_directory_path()) / fs::unique_path("story-%%%%-%%%%-%%%%");
        for (const char *name : {"site/config", "site/format_defs", "patterns"})
            fs::create_directories(folder / name);
        return folder;
    }
    std::optional<std::size_t> indexOf(tag_t sheet) const
    {
        const std::vector<tag_t> all = sheets();
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i] == sheet) return i;
        }
        return {};
    }

    boost::filesystem::path m_folder;
    ScopedVariable m_vendor{"UGII_VENDOR_DIR", ""};
    ScopedVariable m_site{"UGII_SITE_DIR", file("site")};
    ScopedVariable m_group{"UGII_GROUP_DIR", ""};
    ScopedVariable m_custom{"UGII_CUSTOM_DIRECTORY_FILE", ""};
    ScopedVariable m_user{"UGII_USER_DIR", ""};
    ScopedVariable m_patterns{"UGII_PATDIR", patternsFolder()};
    tag_t m_part = NULL_TAG;
    std::size_t m_allocations = 0;
    std::size_t m_bad_frees = 0;
};

// Runs `body` and answers the text of the standard exception it throws; anything else fails the
// test. For EXPECT_EQ(textThrownBy([&] { ... }), "Bad drawing object").
template <class Body> std::string textThrownBy(Body &&body)
{
    try {
        body();
    } catch (const std::exception &failure) {
        return failure.what();
    } catch (const UgException &failure) {
        ADD_FAILURE() << "a UgException instead of a standard one: " << failure.askErrorText();
        return {};
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

// The code of the UgException that `body` throws; 0 and a failed test otherwise.
template <class Body> int codeThrownBy(Body &&body)
{
    try {
        body();
    } catch (const UgException &failure) {
        return failure.askErrorCode();
    }
    ADD_FAILURE() << "no UgException was thrown";
    return 0;
}
