// What a text that is no YAML is told: the line, and what to do.
#include "app/authoring/library_reader.h"

#include <gtest/gtest.h>

using namespace app::authoring;

namespace {

// Without the parser's own words in brackets.
std::string complaintAbout(const std::string &text)
{
    try {
        parseLibrary(text, "d.yaml");
    } catch (const Complaints &complaints) {
        std::string what = toText(complaints.all().at(0));
        const auto open = what.find(" ("), close = what.find("): ");
        if (open != std::string::npos && close != std::string::npos)
            what.erase(open, close + 1 - open);
        return what;
    }
    return "nothing";
}

TEST(BrokenText, ATabInTheIndentationIsNamed)
{
    EXPECT_EQ(complaintAbout("formats:\n\tF: {sheets: iso}\n"),
              "d.yaml:2:3: is no YAML: a tab stands in the indentation: write blanks");
}

TEST(BrokenText, ALineThatIsNotIndentedLikeThoseAboveIsNamed)
{
    const std::string complaint =
        complaintAbout("formats:\n  F:\n    sheets: iso\n   sizes: [A3]\n");
    EXPECT_TRUE(complaint.starts_with("d.yaml:4:")) << complaint;
    EXPECT_NE(complaint.find("is not indented like the lines above: it begins with 3 blanks, the "
                             "line above with 4"),
              std::string::npos)
        << complaint;
}

TEST(BrokenText, ABracketThatIsNotClosedIsNamedWhereItIsOpened)
{
    EXPECT_EQ(complaintAbout("formats:\n  F: {sheets: iso, sizes: [A3]\n  G: {sheets: iso}\n"),
              "d.yaml:2:1: is no YAML: a '}' or a ',' is missing behind the '{' here");
    EXPECT_EQ(complaintAbout("blocks: [\n"),
              "d.yaml:1:1: is no YAML: a ']' or a ',' is missing behind the '[' here");
}

TEST(BrokenText, ACommentThatHidesABracketIsNamed)
{
    EXPECT_EQ(complaintAbout("blocks:\n  B: {description: item #4}\n  C: {}\n"),
              "d.yaml:2:1: is no YAML: a '#' behind a blank begins a comment: a text with it needs "
              "quotes");
}

TEST(BrokenText, AColonInATextNeedsQuotes)
{
    const std::string complaint =
        complaintAbout("formats:\n  F:\n    description: Sheets: large\n");
    EXPECT_NE(complaint.find("d.yaml:3:"), std::string::npos) << complaint;
    EXPECT_NE(complaint.find("a text with \": \" needs quotes: description: \"Sheets: large\""),
              std::string::npos)
        << complaint;
}

TEST(BrokenText, AQuoteThatIsNotClosedIsNamed)
{
    const std::string complaint = complaintAbout("formats:\n  F: {description: \"Sheets}\n");
    EXPECT_EQ(complaint, "d.yaml:2:1: is no YAML: a quote is opened here and not closed: add it");
}

} // namespace
