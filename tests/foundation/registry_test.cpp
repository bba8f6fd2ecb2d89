// The settings: reading values, and the files they come from.
#include "foundation/registry.h"

#include "foundation/log.h"

#include "tests/support/story.h"

#include <climits>

using QelFmt::Registry;
using QelFmt::RegString;
using Texts = std::vector<std::string>;

namespace {

const Registry &settings(const Story &story, std::string_view text)
{
    story.useSettings(text);
    return *QelFmt::Application::getRegistry();
}

} // namespace

TEST(RegString, ComparesBytesWithTheShorterTextFirst)
{
    EXPECT_LT(RegString("A"), RegString("AB"));
    EXPECT_LT(RegString("AB"), RegString("B"));
    EXPECT_LT(RegString("Z"), RegString("a"));
    EXPECT_LT(RegString("z"), RegString("\xE4")); // bytes are unsigned
    EXPECT_LT(RegString(""), RegString(std::string(1, '\0')));
    EXPECT_EQ(RegString("x"), RegString(std::string("x")));
}

TEST(Registry, MissingSettingsReadAsTheDefault)
{
    Story story;
    const Registry &registry = settings(story, "[S]\nK = 1\n");
    for (const auto &[section, key] : {std::pair{"S", "none"}, std::pair{"none", "K"}}) {
        EXPECT_FALSE(registry.keyExists(section, key));
        EXPECT_EQ(registry.readIntEntry(section, key, -9), -9);
        EXPECT_EQ(registry.readUnsignedEntry(section, key, 9u), 9u);
        EXPECT_EQ(registry.readRealEntry(section, key, 0.25), 0.25);
        EXPECT_EQ(registry.readStringEntry(section, key, "none"), "none");
    }
    EXPECT_TRUE(registry.getKeys("none").empty());
}

TEST(Registry, IntegersAreDecimalOrPrefixedHexadecimal)
{
    Story story;
    struct Row {
        const char *text;
        int value;
    };
    for (const Row &row : {Row{"0x1F", 31}, Row{"0X1f", 31}, Row{"017", 17}, Row{"-5", -5},
                           Row{"+5", 5}, Row{"0", 0}, Row{"2147483647", INT_MAX},
                           Row{"-2147483648", INT_MIN}, Row{"\" 12 \"", 12}, Row{"0x0", 0}}) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(
            settings(story, std::string("[S]\nK = ") + row.text + "\n").readIntEntry("S", "K", 99),
            row.value);
    }
}

TEST(Registry, WhatIsNoNumberReadsAsTheDefault)
{
    Story story;
    for (const char *text : {"abc", "", "12abc", "0x", "0xG", "0x-1", "-", "+", "+-5", "1.5", "--1",
                             "2147483648", "-2147483649", "0x100000000", "\"1 2\""}) {
        SCOPED_TRACE(text);
        const Registry &registry = settings(story, std::string("[S]\nK = ") + text + "\n");
        EXPECT_TRUE(registry.keyExists("S", "K"));
        EXPECT_EQ(registry.readIntEntry("S", "K", 9), 9);
    }
    for (const char *text : {"-1", "4294967296", "0x1FFFFFFFF", "x", ""})
        EXPECT_EQ(
            settings(story, std::string("[S]\nK = ") + text + "\n").readUnsignedEntry("S", "K", 9u),
            9u)
            << text;
    for (const char *text : {"1,5", "x", "", "1e999", "0x1F", "nan", "inf", "1.5mm"})
        EXPECT_EQ(
            settings(story, std::string("[S]\nK = ") + text + "\n").readRealEntry("S", "K", 9.0),
            9.0)
            << text;
}

TEST(Registry, UnsignedsAndRealsAreRead)
{
    Story story;
    const Registry &registry = settings(story, "[S]\n"
                                               "u = 4294967295\n"
                                               "h = 0xffffffff\n"
                                               "r = -2.5e-3\n"
                                               "i = 7\n"
                                               "p = +.5\n");
    EXPECT_EQ(registry.readUnsignedEntry("S", "u", 0), 4294967295u);
    EXPECT_EQ(registry.readUnsignedEntry("S", "h", 0), 4294967295u);
    EXPECT_EQ(registry.readRealEntry("S", "r", 0), -2.5e-3);
    EXPECT_EQ(registry.readRealEntry("S", "i", 0), 7.0);
    EXPECT_EQ(registry.readRealEntry("S", "p", 0), 0.5);
}

TEST(Registry, StringsAreReadAsStored)
{
    Story story;
    const Registry &registry = settings(story, "[S]\na = 0x1F\nb = \" two words \"\nc =\n");
    EXPECT_EQ(registry.readStringEntry("S", "a", "d"), "0x1F");
    EXPECT_EQ(registry.readStringEntry("S", "b", "d"), " two words ");
    EXPECT_EQ(registry.readStringEntry("S", "c", "d"), "");
}

TEST(Registry, NamesAreCaseSensitive)
{
    Story story;
    const Registry &registry = settings(story, "[settings]\nField Selection = 1\n");
    EXPECT_TRUE(registry.keyExists("settings", "Field Selection"));
    EXPECT_FALSE(registry.keyExists("Settings", "Field Selection"));
    EXPECT_FALSE(registry.keyExists("settings", "field selection"));
}

TEST(Registry, KeysComeInByteOrder)
{
    Story story;
    EXPECT_EQ(settings(story, "[S]\nb = 1\na = 1\nAB = 1\nA = 1\n").getKeys("S"),
              (Texts{"A", "AB", "a", "b"}));
}

TEST(Registry, TheLastValueOfAKeyHolds)
{
    Story story;
    EXPECT_EQ(settings(story, "[S]\nK = 1\n[T]\nK = 3\n[S]\nK = 2\n").readIntEntry("S", "K", 0), 2);
}

TEST(Registry, LaterFilesOverrideEarlierOnesAndAddToThem)
{
    Story story;
    const ScopedVariable user("UGII_USER_DIR", story.file("user"));
    story.writeFile("user/config/tr_format", "[S]\nK = user\nuser only = 1\n");
    const Registry &registry = settings(story, "[S]\nK = site\nsite only = 1\n");
    EXPECT_EQ(registry.readStringEntry("S", "K", ""), "user");
    EXPECT_EQ(registry.getKeys("S"), (Texts{"K", "site only", "user only"}));
}

TEST(Registry, ASectionDoesNotReachIntoTheNextFile)
{
    Story story;
    const ScopedVariable user("UGII_USER_DIR", story.file("user"));
    story.writeFile("user/config/tr_format", "K = 1\n");
    ::testing::internal::CaptureStdout();
    const Registry &registry = settings(story, "[S]\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              story.file("user/config/tr_format") +
                  ":1: registry entry should follow a section.\n");
    EXPECT_TRUE(registry.getKeys("S").empty());
}

TEST(Registry, OnlyFilesOfExactlyItsNameAreRead)
{
    Story story;
    for (const char *name : {"tr_format.bak", "TR_FORMAT", "tr_format2"})
        story.writeFile(std::string("site/config/") + name, "[S]\nK = 1\n");
    const Base::log::Recording recording{&QelFmt::info_log()};
    story.readSettings();
    EXPECT_TRUE(QelFmt::Application::getRegistry()->getKeys("S").empty());
    EXPECT_TRUE(recording.texts().empty());
}

TEST(Registry, AFileThatCannotBeOpenedIsSkippedInSilence)
{
    Story story;
    struct Opened : Registry {
        Opened() : Registry("") {}
        using Registry::parseFile;
        using Registry::parsePath;
    } registry;
    const Base::log::Recording recording{&QelFmt::info_log()};
    ::testing::internal::CaptureStdout();
    registry.parseFile(story.file("no-such-file"));
    registry.parsePath(story.file("no-such-file"));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(recording.texts().empty());
    EXPECT_NO_THROW(registry.parseFile(story.siteFolder())); // a folder holds no lines
}

TEST(Registry, AMissingFolderIsNoError)
{
    Story story;
    const ScopedVariable site("UGII_SITE_DIR", story.file("nowhere"));
    ::testing::internal::CaptureStdout();
    EXPECT_NO_THROW(story.readSettings());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST(Registry, TellsEachFileAsItIsRead)
{
    Story story;
    const ScopedVariable user("UGII_USER_DIR", story.file("user"));
    story.writeFile("user/config/tr_format", "");
    story.writeSettings("");
    const Base::log::Recording recording{&QelFmt::info_log()};
    story.readSettings();
    EXPECT_EQ(recording.texts(),
              (Texts{"Reading registry file: " + story.file("site/config/tr_format"),
                     "Reading registry file: " + story.file("user/config/tr_format")}));
}

TEST(Registry, ResettingEmptiesAndReadsAnew)
{
    Story story;
    story.writeSettings("[A]\nold = 1\n");
    Registry registry("tr_format"); // reads
    EXPECT_TRUE(registry.keyExists("A", "old"));
    EXPECT_FALSE(registry.isModified());
    registry.setModified(true);
    EXPECT_TRUE(registry.isModified());
    story.writeSettings("[B]\nnew = 1\n");
    registry.resetTo("tr_format");
    EXPECT_FALSE(registry.isModified());
    EXPECT_FALSE(registry.keyExists("A", "old"));
    EXPECT_TRUE(registry.keyExists("B", "new"));
    registry.resetTo("");
    EXPECT_FALSE(registry.keyExists("B", "new"));
}

TEST(Registry, ReadingAgainAddsToWhatIsThere)
{
    Story story;
    story.writeSettings("[A]\none = 1\n");
    Registry registry("tr_format");
    story.writeSettings("[A]\ntwo = 2\n");
    registry.read();
    EXPECT_EQ(registry.getKeys("A"), (Texts{"one", "two"}));
}

TEST(Registry, EveryReaderTellsWhatItLooksFor)
{
    Story story;
    const Registry &registry = settings(story, "[S]\nK = 1\n");
    const Base::log::Recording recording{&QelFmt::verbose_log(), &QelFmt::info_log()};
    registry.keyExists("S", "K");
    registry.readIntEntry("S", "i", 0);
    registry.readUnsignedEntry("S", "u", 0);
    registry.readRealEntry("none", "r", 0);
    registry.readStringEntry("S", "K", "");
    registry.getKeys("S");
    EXPECT_EQ(recording.records(), (std::vector<Base::log::Record>{
                                       {"legqelfmt.verbose", "Looking for key K in section S"},
                                       {"legqelfmt.verbose", "Looking for key i in section S"},
                                       {"legqelfmt.verbose", "Looking for key u in section S"},
                                       {"legqelfmt.verbose", "Looking for key r in section none"},
                                       {"legqelfmt.verbose", "Looking for key K in section S"},
                                   }));
}
