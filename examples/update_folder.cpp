// Checks all drawings of a folder against the definitions and brings them up to date, with the exported classes.
//
//     update_folder FOLDER [--check]
//
// With --check it only says what is out of date. A drawing that fails is left as it was. Exit status: 0 fine, 1 a
// drawing failed or, with --check, is out of date, 2 usage.
#include "drawing/drawing.h"
#include "drawing/format.h"

#include <trv_fmt.h>

#include <uf.h>
#include <uf_draw.h>
#include <uf_part.h>
#include <ug_exception.hxx>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Where the library is alive: from its start to its end.
class Library {
public:
    Library()
    {
        UgException::throwOnFailure(UF_initialize());
        if (TRV_FMT_initialize()) throw std::runtime_error(TRV_FMT_ask_last_error());
    }
    ~Library()
    {
        TRV_FMT_terminate();
        UF_terminate();
    }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
};

// An open part: closed at the end, whatever happened, and only changed on disk if it was saved.
class OpenPart {
public:
    explicit OpenPart(const fs::path &path)
    {
        UF_PART_load_status_t status{};
        const int code = UF_PART_open(path.c_str(), &m_tag, &status);
        UF_PART_free_load_status(&status);
        UgException::throwOnFailure(code);
    }
    ~OpenPart() { UF_PART_close(m_tag, 0, 1); }
    OpenPart(const OpenPart &) = delete;
    OpenPart &operator=(const OpenPart &) = delete;

    std::vector<tag_t> sheets() const
    {
        int number = 0;
        tag_t *tags = nullptr;
        UgException::throwOnFailure(UF_DRAW_ask_drawings(&number, &tags));
        const std::vector<tag_t> sheets(tags, tags + number);
        UF_free(tags);
        return sheets;
    }
    void save() { UgException::throwOnFailure(UF_PART_save()); }

private:
    tag_t m_tag = NULL_TAG;
};

std::string nameOf(const TrDrawing &drawing)
{
    if (!drawing.hasFormat()) return "no format";
    return drawing.format()->GetFormatDefName() + "/" + drawing.format()->GetSizeName();
}

// Says how the drawing stands; true when that is not what it should be.
bool follow(const fs::path &path, bool only_check)
{
    OpenPart part(path);
    std::string formats;
    bool current = true;
    for (const tag_t sheet : part.sheets()) {
        // New notes and lines come into the view of the sheet that is open.
        UgException::throwOnFailure(UF_DRAW_open_drawing(sheet));
        const auto drawing = TrDrawing::getDrawing(sheet);
        formats += (formats.empty() ? "" : ", ") + nameOf(*drawing);
        if (drawing->isFormatUptoDate()) continue;
        current = false;
        if (!only_check) drawing->updateFormat();
    }
    if (!current && !only_check) part.save();
    std::cout << path.filename().string() << ": " << formats << ": "
              << (current      ? "up to date"
                  : only_check ? "out of date"
                               : "updated")
              << "\n";
    return !current && only_check;
}

std::vector<fs::path> drawingsIn(const fs::path &folder)
{
    std::vector<fs::path> drawings;
    for (const auto &entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".qdraw") drawings.push_back(entry.path());
    std::sort(drawings.begin(), drawings.end());
    return drawings;
}

bool followed(const fs::path &path, bool only_check)
{
    const auto failed = [&](const std::string &why) {
        std::cerr << path.filename().string() << ": " << why << "\n";
        return false;
    };
    try {
        return !follow(path, only_check);
    } catch (const UgException &failure) {
        return failed(failure.askErrorText());
    } catch (const std::exception &failure) {
        return failed(failure.what());
    }
}

} // namespace

int main(int argc, char **argv)
{
    const bool only_check = argc == 3 && std::string(argv[2]) == "--check";
    if ((argc != 2 && !only_check) || !fs::is_directory(argv[1])) {
        std::cerr << "usage: update_folder FOLDER [--check]\n";
        return 2;
    }
    try {
        const Library library;
        bool fine = true;
        for (const fs::path &path : drawingsIn(argv[1])) fine &= followed(path, only_check);
        return fine ? 0 : 1;
    } catch (const std::exception &failure) {
        std::cerr << "update_folder: " << failure.what() << "\n";
        return 1;
    }
}
