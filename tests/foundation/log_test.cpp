// Loggers: names, switches, records, and that nothing is formatted for one that is off.
#include "foundation/log.h"

#include "tests/support/story.h"

#include <algorithm>
#include <sstream>

using namespace Base::log;
using Texts = std::vector<std::string>;

namespace {

struct Counted {
    int *formatted;
};
std::ostream &operator<<(std::ostream &out, const Counted &counted)
{
    ++*counted.formatted;
    return out << "counted";
}

int evaluated(int &count) { return ++count; }

} // namespace

TEST(Log, BothLoggersBearTheirNamesAndExistOnce)
{
    EXPECT_EQ(QelFmt::info_log().name(), "legqelfmt.info");
    EXPECT_EQ(QelFmt::verbose_log().name(), "legqelfmt.verbose");
    EXPECT_EQ(&QelFmt::info_log(), &QelFmt::info_log());
    for (const char *name : {"legqelfmt.info", "legqelfmt.verbose"}) {
        const std::vector<Logger *> all = loggers();
        EXPECT_EQ(std::count_if(all.begin(), all.end(),
                                [&](const Logger *logger) { return logger->name() == name; }),
                  1);
    }
}

TEST(Log, IsOffUnlessSwitchedOn)
{
    const Logger logger("test.fresh");
    EXPECT_FALSE(logger.isOn());
    EXPECT_FALSE(QelFmt::info_log().isOn());
    EXPECT_FALSE(QelFmt::verbose_log().isOn());
}

TEST(Log, NothingIsEvaluatedOrFormattedForALoggerThatIsOff)
{
    int formatted = 0, calls = 0;
    clearRecords();
    QELFMT_INFO << Counted{&formatted} << evaluated(calls);
    QELFMT_VERBOSE << Counted{&formatted} << evaluated(calls);
    EXPECT_EQ(formatted, 0);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(records().empty());

    const Recording recording{&QelFmt::verbose_log()};
    QELFMT_INFO << Counted{&formatted} << evaluated(calls);
    QELFMT_VERBOSE << Counted{&formatted} << evaluated(calls);
    EXPECT_EQ(formatted, 1);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(recording.texts(), Texts{"counted1"});
}

TEST(Log, AStatementIsOneRecordInTheOrderWritten)
{
    const Recording recording{&QelFmt::info_log(), &QelFmt::verbose_log()};
    QELFMT_INFO << "Adding block " << std::string("TITLE") << ' ' << 3 << ' ' << 7u << ' ' << 0.1;
    QELFMT_VERBOSE << "step";
    QELFMT_INFO << "done";
    EXPECT_EQ(recording.records(), (std::vector<Record>{
                                       {"legqelfmt.info", "Adding block TITLE 3 7 0.1"},
                                       {"legqelfmt.verbose", "step"},
                                       {"legqelfmt.info", "done"},
                                   }));
    EXPECT_EQ(recording.texts(QelFmt::info_log()), (Texts{"Adding block TITLE 3 7 0.1", "done"}));
    EXPECT_TRUE(recording.has("step"));
    EXPECT_FALSE(recording.has("ste"));
}

TEST(Log, LineBreaksInsideStayAndTheLastOneBelongsToTheRecord)
{
    const Recording recording{&QelFmt::info_log()};
    QELFMT_INFO << "one\nAttribute title = "
                << "two";
    QELFMT_INFO << "ended" << std::endl;
    QELFMT_INFO << "";
    EXPECT_EQ(recording.texts(), (Texts{"one\nAttribute title = two", "ended", ""}));
}

TEST(Log, TheStatementFormDoesNotStealAnElse)
{
    const Recording recording{&QelFmt::info_log()};
    bool other = false;
    const auto choose = [&](bool first) {
        if (first)
            QELFMT_INFO << "first";
        else
            other = true;
    };
    choose(false);
    EXPECT_TRUE(other);
    EXPECT_TRUE(recording.texts().empty());
    choose(true);
    EXPECT_EQ(recording.texts(), Texts{"first"});
}

TEST(Log, AStreamAsksOnceAndWritesWhenItCloses)
{
    const Recording recording{&QelFmt::info_log()};
    {
        LoggerStream stream(QelFmt::info_log());
        EXPECT_TRUE(stream.isActive());
        stream << "a";
        EXPECT_TRUE(recording.texts().empty());
        stream << "b" << std::endl;
    }
    EXPECT_EQ(recording.texts(), Texts{"ab"});
    LoggerStream silent(QelFmt::verbose_log());
    EXPECT_FALSE(silent.isActive());
    silent << "dropped" << std::endl;
    silent.close();
    EXPECT_EQ(recording.texts(), Texts{"ab"});
}

TEST(Log, AnExceptionInsideAStatementStillClosesTheRecord)
{
    const Recording recording{&QelFmt::info_log()};
    const auto fails = []() -> int { throw std::runtime_error("no value"); };
    EXPECT_THROW(QELFMT_INFO << "before " << fails(), std::runtime_error);
    EXPECT_EQ(recording.texts(), Texts{"before "});
}

TEST(Log, ARecordingPutsSwitchesAndSinkBack)
{
    Texts sunk;
    setSink([&](const Record &record) { sunk.push_back(record.logger + "|" + record.text); });
    {
        const Recording recording{&QelFmt::info_log()};
        QELFMT_INFO << "kept";
        EXPECT_EQ(recording.texts(), Texts{"kept"});
    }
    EXPECT_FALSE(QelFmt::info_log().isOn());
    EXPECT_TRUE(records().empty());
    QelFmt::info_log().setOn(true);
    QELFMT_INFO << "sunk";
    QelFmt::info_log().setOn(false);
    setSink({});
    EXPECT_EQ(sunk, Texts{"legqelfmt.info|sunk"});
    EXPECT_TRUE(records().empty()); // a sink takes what memory would have kept
}

TEST(Log, AFormatFlagOfOneStatementDoesNotReachTheNext)
{
    const Recording recording{&QelFmt::info_log()};
    QELFMT_INFO << std::hex << 255;
    QELFMT_INFO << 255;
    EXPECT_EQ(recording.texts(), (Texts{"ff", "255"}));
}

// The environment is read once a process: in a process of its own.
using LogDeathTest = ::testing::Test;
TEST(LogDeathTest, TheEnvironmentSwitchesLoggersOn)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto in_child = [] {
        Logger chosen("legqelfmt.test"), full("other.full"), left("other.left");
        if (!chosen.isOn() || !full.isOn() || left.isOn()) std::exit(1);
        if (LoggerStream stream(chosen); stream.isActive()) stream << "told";
        std::exit(0);
    };
    const ScopedVariable wanted("QELFMT_LOG", "test,other.full");
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "legqelfmt.test: told\n");
}

TEST(LogDeathTest, TheEnvironmentNamesAFile)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const std::string file = "/tmp/qelfmt-log-test." + std::to_string(geteuid());
    std::remove(file.c_str());
    const auto in_child = [] {
        Logger logger("any.name");
        if (LoggerStream stream(logger); stream.isActive()) stream << "into the file";
        std::exit(0);
    };
    const ScopedVariable wanted("QELFMT_LOG", "all");
    const ScopedVariable to("QELFMT_LOG_FILE", file);
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "");
    std::ifstream in(file);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    EXPECT_NE(text.find("any.name: into the file\n"), std::string::npos);
    std::remove(file.c_str());
}
