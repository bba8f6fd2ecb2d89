// What happens to files when all is well and when it is not.
#include "paper.h"
#include "picture.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>

using namespace host::display;

namespace {

class Files : public Paper {
protected:
    void SetUp() override
    {
        Paper::SetUp();
        newPart("part");
        m_sheet = newSheet("A", 100, 100);
        line(0, 0, 100, 100);
    }
    static std::string messageOf(const std::function<void()> &action)
    {
        try {
            action();
        } catch (const RenderError &error) {
            return error.what();
        }
        return {};
    }

    tag_t m_sheet = NULL_TAG;
};

} // namespace

TEST_F(Files, AFolderThatIsMissingIsNamedWithTheRemedy)
{
    const std::string path = file("no/such/a.pdf");
    const std::string message = messageOf([&] { writePdf({m_sheet}, path); });
    EXPECT_EQ(message,
              "Cannot write " + path + ": No such file or directory; make the folder first.");
}

TEST_F(Files, AFailureLeavesTheOldFileAndNothingElse)
{
    std::ofstream(file("a.svg")) << "old";
    EXPECT_THROW(writeSvg(NULL_TAG, file("a.svg")), RenderError);
    EXPECT_EQ(contentOf(file("a.svg")), "old");
    std::filesystem::create_directory(file("taken"));
    const std::string message = messageOf([&] { writePng(m_sheet, file("taken")); });
    EXPECT_NE(message.find("Is a directory; name a file, not a folder."), std::string::npos)
        << message;
    for (const auto &entry :
         std::filesystem::directory_iterator(std::filesystem::path(file("x")).parent_path()))
        EXPECT_EQ(entry.path().string().find(".tmp-"), std::string::npos) << entry.path();
}

TEST_F(Files, AFullDiskIsToldAndLeavesNothingBehind)
{
    const std::string message = messageOf([&] { writePdf({m_sheet}, "/dev/full/a.pdf"); });
    EXPECT_NE(message.find("Cannot write /dev/full/a.pdf"), std::string::npos) << message;
}

TEST_F(Files, AnExistingFileIsReplacedWhole)
{
    writePdf({m_sheet}, file("a.pdf"));
    const std::string first = contentOf(file("a.pdf"));
    std::ofstream(file("a.pdf")) << std::string(1000000, 'x');
    writePdf({m_sheet}, file("a.pdf"));
    EXPECT_EQ(contentOf(file("a.pdf")), first);
}

TEST_F(Files, APictureGoesThroughALinkAndIntoADevice)
{
    std::ofstream(file("real.pdf")) << "old";
    std::filesystem::create_symlink("real.pdf", file("link.pdf"));
    writePdf({m_sheet}, file("link.pdf"));
    EXPECT_TRUE(std::filesystem::is_symlink(file("link.pdf")));
    EXPECT_EQ(contentOf(file("real.pdf")).substr(0, 5), "%PDF-");
    std::filesystem::create_symlink("/dev/null", file("null.pdf"));
    writePdf({m_sheet}, file("null.pdf"));
    EXPECT_TRUE(std::filesystem::is_symlink(file("null.pdf")));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    std::filesystem::create_symlink("/dev/full", file("full.pdf"));
    const std::string message = messageOf([&] { writePdf({m_sheet}, file("full.pdf")); });
    EXPECT_NE(message.find("full.pdf: No space left on device"), std::string::npos) << message;
}

TEST_F(Files, ResolutionsOutOfRangeAreRefusedWithARange)
{
    RenderOptions options;
    for (const double dpi : {0.0, -5.0, 9.9, 2401.0, std::nan("")}) {
        options.pngDpi = dpi;
        EXPECT_NE(
            messageOf([&] { writePng(m_sheet, file("a.png"), options); }).find("choose 10 to 2400"),
            std::string::npos)
            << dpi;
    }
    const tag_t big = newSheet("B", 1189, 841);
    options.pngDpi = 2400;
    // 32767 pixels x 25.4 / 1189 mm = 699.98
    EXPECT_NE(
        messageOf([&] { writePng(big, file("a.png"), options); }).find("choose at most 699 dpi"),
        std::string::npos);
}

TEST_F(Files, APictureSaysItsResolution)
{
    RenderOptions options;
    options.pngDpi = 254;
    options.monochrome = true;
    writePng(m_sheet, file("a.png"), options);
    const std::string bytes = contentOf(file("a.png"));
    // 254 dots an inch are 10000 a metre: 00 00 27 10, both ways, and the unit.
    const std::string wanted("pHYs\x00\x00\x27\x10\x00\x00\x27\x10\x01", 13);
    EXPECT_NE(bytes.find(wanted), std::string::npos);
    const Picture picture = Picture::ofPng(file("a.png"), 100);
    EXPECT_EQ(picture.width(), 1000);
    EXPECT_EQ(picture.height(), 1000);
}
