// Texts for the information window, and what is told of caught failures.
#include "foundation/exception_report.h"
#include "foundation/info_lines.h"
#include "foundation/log.h"

#include "tests/support/story.h"

#include "uf.h"

using QelFmt::InfoLines;

TEST(InfoLines, LabelsAreTwentyFourCharactersWide)
{
    InfoLines info;
    info.line("ID", std::string("TITLE")).line("Frame Layer", 7).line("X", 0.1);
    EXPECT_EQ(info.str(), "ID                      TITLE\n"
                          "Frame Layer             7\n"
                          "X                       0.1\n");
}

TEST(InfoLines, ALongLabelIsNotCut)
{
    InfoLines info;
    info.line("A label of twenty-seven ch.", 1);
    EXPECT_EQ(info.str(), "A label of twenty-seven ch.1\n");
}

TEST(InfoLines, NumbersAreWrittenAsAStreamWritesThem)
{
    InfoLines info;
    info.line("a", 1e-7).line("b", 123456789.0).line("c", 2.50).line("d", -0.0);
    const std::string pad(23, ' ');
    EXPECT_EQ(info.str(),
              "a" + pad + "1e-07\nb" + pad + "1.23457e+08\nc" + pad + "2.5\nd" + pad + "-0\n");
}

TEST(InfoLines, AreWrittenInOnePiece)
{
    Story story;
    InfoLines info;
    info.line("ID", "A").text("Field Definitions:");
    nxhost::clearCallCounts();
    info.flush();
    EXPECT_EQ(nxhost::callCount("UgInfoWindow::open"), 1u);
    EXPECT_EQ(nxhost::callCount("UgInfoWindow::write"), 1u);
    EXPECT_TRUE(nxhost::infoWindowOpened());
    EXPECT_EQ(nxhost::takeInfoWindow(), "ID                      A\nField Definitions:\n");
    info.text("anew");
    info.flush();
    EXPECT_EQ(nxhost::takeInfoWindow(), "anew\n");
}

TEST(ExceptionReport, TellsTheTextOfBothKinds)
{
    char message[133] = "";
    ASSERT_EQ(UF_get_fail_message(UF_err_unknown_tag, message), 0);
    EXPECT_EQ(QelFmt::textOf(std::make_exception_ptr(UgException(UF_err_unknown_tag))), message);
    EXPECT_EQ(QelFmt::textOf(std::make_exception_ptr(std::runtime_error("Bad drawing object"))),
              "Bad drawing object");
}

TEST(ExceptionReport, GoesToTheInfoLog)
{
    const Base::log::Recording recording{&QelFmt::info_log()};
    try {
        throw std::runtime_error("window gone");
    } catch (...) {
        QelFmt::reportCurrentException();
    }
    EXPECT_EQ(recording.texts(), std::vector<std::string>{"window gone"});
}

TEST(ExceptionReport, OtherKindsPassThrough)
{
    const auto report = [] {
        try {
            throw 7;
        } catch (...) {
            QelFmt::reportCurrentException();
        }
    };
    EXPECT_THROW(report(), int);
    EXPECT_THROW(QelFmt::textOf(std::make_exception_ptr(7)), int);
}
