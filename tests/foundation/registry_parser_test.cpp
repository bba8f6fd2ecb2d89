// The grammar of the settings files, message by message.
#include "foundation/registry.h"

#include "tests/support/story.h"

#include <random>

using Texts = std::vector<std::string>;

namespace {

// One file's content read by a registry of its own, with what it printed.
class Parsed : public QelFmt::Registry {
public:
    explicit Parsed(std::string_view text) : Registry("")
    {
        const std::string file = m_story.writeFile("F", text);
        ::testing::internal::CaptureStdout();
        parseFile(file);
        printed = ::testing::internal::GetCapturedStdout();
        for (std::size_t at; (at = printed.find(file)) != std::string::npos;)
            printed.replace(at, file.size(), "F");
    }
    std::string value(const std::string &key) const { return readStringEntry("S", key, "(none)"); }
    bool hasSection(const std::string &name) const { return !getKeys(name).empty(); }

    std::string printed;

private:
    Story m_story;
};

// The value of "K = <text>" in section S.
std::string valueOf(const std::string &text)
{
    return Parsed("[S]\nK = " + text + "\n").value("K");
}

} // namespace

TEST(RegistryParser, ReadsSectionsAndEntries)
{
    const Parsed file("[Settings]\nField Selection = 1\n[Other]\nA=b\n");
    EXPECT_EQ(file.readIntEntry("Settings", "Field Selection", 0), 1);
    EXPECT_EQ(file.readStringEntry("Other", "A", ""), "b");
    EXPECT_EQ(file.printed, "");
}

TEST(RegistryParser, SkipsCommentsAndEmptyLines)
{
    const Parsed file("# comment\n; other\n\n   \t \n  # indented\n[S]\n\t; more\nK = v\n");
    EXPECT_EQ(file.printed, "");
    EXPECT_EQ(file.getKeys("S"), Texts{"K"});
}

TEST(RegistryParser, IgnoresLeadingWhiteSpace)
{
    const Parsed file(" \t[S]\n \v\f\t K = v\n");
    EXPECT_EQ(file.value("K"), "v");
}

TEST(RegistryParser, IgnoresWhatFollowsTheClosingBracket)
{
    const Parsed file("[S] junk = 1\nK = v\n");
    EXPECT_EQ(file.getKeys("S"), Texts{"K"});
    EXPECT_EQ(file.printed, "");
}

TEST(RegistryParser, SectionNamesTakeTheirSixKindsOfCharacters)
{
    const Parsed file("[Az 0-9._]\nK = v\n");
    EXPECT_EQ(file.readStringEntry("Az 0-9._", "K", ""), "v");
    EXPECT_EQ(file.printed, "");
}

TEST(RegistryParser, ABadSectionLeavesThePreviousOneCurrent)
{
    const Parsed file("[S]\nx=1\n[Bad/Name]\ny=2\n");
    EXPECT_EQ(file.printed, "F:3: illegal section name.\n");
    EXPECT_EQ(file.getKeys("S"), (Texts{"x", "y"}));
}

TEST(RegistryParser, ABadFirstSectionLeavesNone)
{
    const Parsed file("[Bad/Name]\nx=1\ny=2\n");
    EXPECT_EQ(file.printed, "F:1: illegal section name.\n"
                            "F:2: registry entry should follow a section.\n"
                            "F:3: registry entry should follow a section.\n");
}

TEST(RegistryParser, AMissingBracketIsAnIllegalLineEnd)
{
    const Parsed file("[S\nx=1\n");
    EXPECT_EQ(file.printed, "F:1: illegal section name.\n"
                            "F:2: registry entry should follow a section.\n");
}

TEST(RegistryParser, AMissingBracketAtTheVeryEndIsForgiven)
{
    EXPECT_EQ(Parsed("[S]\nx=1\n[T").printed, "");
    EXPECT_EQ(Parsed("[T").printed, "");
}

TEST(RegistryParser, SectionNamesOf199CharactersAreTheLongest)
{
    const auto with = [](std::size_t length) {
        return Parsed("[" + std::string(length, 'n') + "]\nK = v\n");
    };
    const Parsed longest = with(199);
    EXPECT_EQ(longest.printed, "");
    EXPECT_TRUE(longest.hasSection(std::string(199, 'n')));
    for (const std::size_t length : {200u, 201u, 300u}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(with(length).printed, "F:1: section name to long.\n"
                                        "F:2: registry entry should follow a section.\n");
    }
}

TEST(RegistryParser, AnEntryBeforeAnySectionIsIgnored)
{
    const Parsed file("K = 1\n[S]\n");
    EXPECT_EQ(file.printed, "F:1: registry entry should follow a section.\n");
}

TEST(RegistryParser, IllegalKeyCharactersWarnOneByOneAndAreKept)
{
    const Parsed one("[S]\nOdd!Key = 5\n");
    EXPECT_EQ(one.printed, "F:2: illegal key name.\n");
    EXPECT_EQ(one.value("Odd!Key"), "5");
    const Parsed two("[S]\na!b!c=1\n");
    EXPECT_EQ(two.printed, "F:2: illegal key name.\nF:2: illegal key name.\n");
    EXPECT_EQ(two.value("a!b!c"), "1");
}

TEST(RegistryParser, WarningsAreNoErrors)
{
    std::string text = "[S]\n";
    for (int i = 0; i < 15; ++i) text += "k!" + std::to_string(i) + " = 1\n";
    EXPECT_EQ(Parsed(text).getKeys("S").size(), 15u);
}

TEST(RegistryParser, TrailingBlanksOfAKeyGoAndInnerOnesStay)
{
    const Parsed file("[S]\nField Selection   = 1\nTab\t= 2\n= 3\n");
    EXPECT_EQ(file.value("Field Selection"), "1");
    EXPECT_EQ(file.value("Tab\t"), "2"); // a tab is no blank, but an illegal character
    EXPECT_EQ(file.value(""), "3");
    EXPECT_EQ(file.printed, "F:3: illegal key name.\n");
}

TEST(RegistryParser, KeysOf199CharactersAreTheLongest)
{
    const auto with = [](std::size_t length) {
        return Parsed("[S]\n" + std::string(length, 'k') + "=1\n");
    };
    EXPECT_EQ(with(199).printed, "");
    EXPECT_EQ(with(199).value(std::string(199, 'k')), "1");
    for (const std::size_t length : {200u, 201u, 300u}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(with(length).printed, "F:2: key name to long.\n");
        EXPECT_FALSE(with(length).hasSection("S"));
    }
}

TEST(RegistryParser, AKeyWithoutEqualsSign)
{
    EXPECT_EQ(Parsed("[S]\nKey\n").printed, "F:2: illegal key name.\n"
                                            "F:2: expected '=' to follow key.\n");
    EXPECT_EQ(Parsed("[S]\nKey").printed, "F:2: expected '=' to follow key.\n");
}

TEST(RegistryParser, UnquotedValuesEndAtTheFirstBlankOrUnprintable)
{
    EXPECT_EQ(valueOf("two words"), "two");
    EXPECT_EQ(valueOf("   \t v"), "v");
    EXPECT_EQ(valueOf("v\r"), "v");
    EXPECT_EQ(valueOf("a\x01g"), "a");
    EXPECT_EQ(valueOf("caf\xE9"), "caf");
    EXPECT_EQ(valueOf("a\"b"), "a\"b");
    EXPECT_EQ(valueOf("C:\\dir\\n"), "C:\\dir\\n"); // no escapes here
    EXPECT_EQ(valueOf("a=b#c;d"), "a=b#c;d");
    EXPECT_EQ(Parsed(std::string_view("[S]\nK = a\0b\n", 12)).value("K"), "a");
}

TEST(RegistryParser, NothingAfterTheEqualsSignIsAnEmptyValue)
{
    for (const char *text : {"[S]\nK =\n", "[S]\nK =", "[S]\nK = \t \n", "[S]\nK = \"\"\n"}) {
        const Parsed file(text);
        EXPECT_TRUE(file.keyExists("S", "K")) << text;
        EXPECT_EQ(file.value("K"), "") << text;
        EXPECT_EQ(file.printed, "") << text;
    }
}

TEST(RegistryParser, QuotedValuesKeepBlanksAndEndAtTheQuote)
{
    EXPECT_EQ(valueOf("\"a b\" z"), "a b");
    EXPECT_EQ(valueOf("\" a \""), " a ");
    EXPECT_EQ(valueOf("\"caf\xE9\t\x01\""), "caf\xE9\t\x01");
}

TEST(RegistryParser, EscapesStandForTheirCharacters)
{
    EXPECT_EQ(valueOf(R"("\a\b\f\n\r\t\v")"), "\x07\x08\x0C\x0A\x0D\x09\x0B");
    EXPECT_EQ(valueOf(R"("\"\\")"), "\"\\");
    EXPECT_EQ(valueOf(R"("\q\\\A")"), "q\\A");
    EXPECT_EQ(valueOf(R"("x\x41y")"), "xAy");
    EXPECT_EQ(valueOf(R"("\x4a\x4A\xfF")"), "JJ\xFF");
    EXPECT_EQ(valueOf(R"("\x414")"), "A4"); // exactly two digits
    EXPECT_EQ(valueOf(R"("\x00")"), std::string(1, '\0'));
}

TEST(RegistryParser, AnXWithoutTwoDigitsIsAnX)
{
    EXPECT_EQ(valueOf(R"("\x4")"), "x4");
    EXPECT_EQ(valueOf(R"("\xG1")"), "xG1");
    EXPECT_EQ(valueOf(R"("\x1G")"), "x1G");
    EXPECT_EQ(valueOf(R"("\x")"), "x");
    EXPECT_EQ(valueOf(R"("\X41")"), "X41");
}

TEST(RegistryParser, AnOpenQuoteStoresNothing)
{
    for (const char *text : {"[S]\nK = \"abc\n", "[S]\nK = \"abc", "[S]\nK = \"abc\\\"\n",
                             "[S]\nK = \"abc\\\n", "[S]\nK = \"\\", "[S]\nK = \"\n"}) {
        SCOPED_TRACE(text);
        const Parsed file(text);
        EXPECT_EQ(file.printed, "F:2: unterminated string constant.\n");
        EXPECT_FALSE(file.keyExists("S", "K"));
    }
}

TEST(RegistryParser, AFailedLineKeepsTheValueBefore)
{
    EXPECT_EQ(Parsed("[S]\nK = 1\nK = \"open\n").value("K"), "1");
}

TEST(RegistryParser, TheEleventhBadLineEndsTheFile)
{
    std::string text = "[S]\nbefore = 1\n";       // lines 1 and 2
    for (int i = 0; i < 11; ++i) text += "[/]\n"; // lines 3 to 13
    const Parsed file(text + "after = 1\n[/]\n");
    std::string expected;
    for (int line = 3; line <= 13; ++line)
        expected += "F:" + std::to_string(line) + ": illegal section name.\n";
    EXPECT_EQ(file.printed, expected + "F:13: too many errors; parsing terminated.\n");
    EXPECT_EQ(file.getKeys("S"), Texts{"before"});
}

TEST(RegistryParser, TenBadLinesAreBorne)
{
    std::string text = "[S]\n";
    for (int i = 0; i < 10; ++i) text += "[/]\n";
    const Parsed file(text + "after = 1\n");
    EXPECT_EQ(file.printed.find("too many"), std::string::npos);
    EXPECT_EQ(file.getKeys("S"), Texts{"after"});
}

TEST(RegistryParser, ErrorsAreCountedForEachFile)
{
    Story story;
    std::string text = "[S]\n";
    for (int i = 0; i < 6; ++i) text += "[/]\n";
    const ScopedVariable user("UGII_USER_DIR", story.file("user"));
    story.writeFile("user/config/tr_format", text + "user = 1\n");
    story.writeSettings(text + "site = 1\n");
    ::testing::internal::CaptureStdout();
    story.readSettings();
    EXPECT_EQ(::testing::internal::GetCapturedStdout().find("too many"), std::string::npos);
    EXPECT_EQ(QelFmt::Application::getRegistry()->getKeys("S"), (Texts{"site", "user"}));
}

TEST(RegistryParser, MessagesGoToTheStandardOutputAlone)
{
    Story story;
    nxhost::takeSyslog();
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    story.useSettings("K\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              story.file("site/config/tr_format") +
                  ":1: registry entry should follow a section.\n");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(nxhost::takeSyslog(), "");
}

TEST(RegistryParser, PiecesOf1999CharactersCountAsLines)
{
    const auto errorLineAfter = [](std::size_t length) {
        return Parsed("#" + std::string(length - 1, ' ') + "\n[/]\n").printed;
    };
    EXPECT_EQ(errorLineAfter(1999), "F:2: illegal section name.\n");
    EXPECT_EQ(errorLineAfter(2000), "F:3: illegal section name.\n");
    EXPECT_EQ(errorLineAfter(3998), "F:3: illegal section name.\n");
    EXPECT_EQ(errorLineAfter(3999), "F:4: illegal section name.\n");
}

TEST(RegistryParser, ThePieceAfterALongLineIsReadOnItsOwn)
{
    // 1999 characters of comment, then what the rest of the line says.
    const Parsed file("[S]\n#" + std::string(1998, '-') + "K = v\n");
    EXPECT_EQ(file.value("K"), "v");
    // A value that does not fit is cut, a quote that does not close in its piece is an error.
    const Parsed cut("[S]\nK=" + std::string(2500, 'v') + "\n");
    EXPECT_EQ(cut.value("K"), std::string(1997, 'v'));
    const Parsed open("[S]\nK=\"" + std::string(1998, 'v') + "\"\n");
    EXPECT_NE(open.printed.find("F:2: unterminated string constant.\n"), std::string::npos);
    // A name whose piece ends before its bracket meets a line end.
    const Parsed name(std::string(1996, ' ') + "[S]x]\nK=1\n");
    EXPECT_EQ(name.printed, "F:2: illegal key name.\nF:2: illegal key name.\n"
                            "F:2: expected '=' to follow key.\n");
    const Parsed split(std::string(1997, ' ') + "[S]\n");
    EXPECT_EQ(split.printed.substr(0, 27), "F:1: illegal section name.\n");
}

TEST(RegistryParser, LineEndsOfOtherSystemsAreWhiteSpace)
{
    const Parsed file("[S]\r\n\r\nK = v\r\nQ = \"a b\"\r\n# c\r\n");
    EXPECT_EQ(file.value("K"), "v");
    EXPECT_EQ(file.value("Q"), "a b");
    EXPECT_EQ(file.printed, "");
}

TEST(RegistryParser, AnEmptyFileHoldsNothing)
{
    EXPECT_EQ(Parsed("").printed, "");
    EXPECT_EQ(Parsed("\n\n\n").printed, "");
}

namespace {

// A file that uses the whole grammar.
const std::string kSample = "# settings\n[Settings]\nField Selection = 1\nName = \"a \\x41\\n\"\n"
                            "Empty =\n[Block.Additions-2]\nISO = \"TITLE,REV\" ; two\nhex=0x1F\n"
                            "Odd!Key = 5\n[Bad/Name]\nwithout\n \t; end\nlast = \"q\\\"\"";

std::string mutated(std::string text, std::mt19937 &random)
{
    const std::string marks = "[]=\"\\#;\n\r\t x4!/";
    for (unsigned n = random() % 8 + 1; n > 0 && !text.empty(); --n) {
        const std::size_t at = random() % text.size();
        switch (random() % 6) {
        case 0:
            text[at] = static_cast<char>(random());
            break;
        case 1:
            text[at] = marks[random() % marks.size()];
            break;
        case 2:
            text.erase(at, random() % 5 + 1);
            break;
        case 3:
            text.insert(at, random() % 2500, static_cast<char>(random()));
            break;
        case 4:
            text.insert(at, text.substr(random() % text.size(), 40));
            break;
        default:
            text.resize(at);
            break;
        }
    }
    return text;
}

} // namespace

TEST(RegistryParser, BearsAThousandMutatedFiles)
{
    std::mt19937 random(20240229);
    class Bearing : public QelFmt::Registry {
    public:
        Bearing() : Registry("") {}
        using Registry::parseFile;
    };
    Story story;
    ::testing::internal::CaptureStdout();
    for (int i = 0; i < 1000; ++i) {
        const std::string file = story.writeFile("F", mutated(kSample, random));
        Bearing registry;
        registry.parseFile(file);
        for (const std::string &key : registry.getKeys("Settings")) {
            EXPECT_LT(key.size(), 200u);
            EXPECT_FALSE(key.ends_with(' '));
            registry.readIntEntry("Settings", key, 0);
            registry.readUnsignedEntry("Settings", key, 0);
            registry.readRealEntry("Settings", key, 0);
        }
    }
    // Every line printed is one of the grammar's messages.
    std::istringstream printed(::testing::internal::GetCapturedStdout());
    const std::string prefix = story.file("F") + ":";
    for (std::string line; std::getline(printed, line);) {
        ASSERT_TRUE(line.starts_with(prefix)) << line;
        const std::string message = line.substr(line.find(": ", prefix.size()) + 2);
        const Texts known{"illegal section name.",
                          "section name to long.",
                          "registry entry should follow a section.",
                          "illegal key name.",
                          "key name to long.",
                          "expected '=' to follow key.",
                          "unterminated string constant.",
                          "too many errors; parsing terminated."};
        EXPECT_NE(std::find(known.begin(), known.end(), message), known.end()) << line;
    }
}
