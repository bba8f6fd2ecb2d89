// Runs the tests that are written in C99, and compares the functions that they call with the header.
#include "tests/c/claims.h"
#include "tests/c/functions.h"
#include "tests/c/runner.h"

#include <map>
#include <regex>
#include <set>

namespace {

#define RUN(name)                                                                                  \
    TEST_F(CInterface, name) { c_##name(); }
C_TESTS(RUN)
#undef RUN

std::string textOf(const boost::filesystem::path &path)
{
    std::ifstream in(path.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

std::set<std::string> namesIn(const std::string &text, const std::string &expression)
{
    const std::regex name(expression);
    std::set<std::string> names;
    for (std::sregex_iterator it(text.begin(), text.end(), name), end; it != end; ++it)
        names.insert((*it)[1]);
    return names;
}

const boost::filesystem::path kSource = QELFMT_SOURCE_DIR;

std::set<std::string> declared()
{
    const std::string header = textOf(kSource / "api/trv_fmt.h");
    return namesIn(header, "TRV_FMT_EXPORT (?:[a-z]+ )+\\*?(\\w+)\\(");
}

TEST(CHeader, EveryFunctionIsCalledByTheTestsInC)
{
    std::set<std::string> called;
    for (boost::filesystem::directory_iterator it(kSource / "tests/c"), end; it != end; ++it)
        if (it->path().extension() == ".c")
            called.merge(namesIn(textOf(it->path()), "\\b((?:(?:TRV|QEL)_FMT_[a-z_]+)|ufsta)\\("));
    EXPECT_EQ(declared().size(), 30u);
    EXPECT_EQ(called, declared());
}

TEST(CHeader, ItsFunctionsAreTheOnesThatAreExported)
{
    const std::string exports = textOf(kSource / "scripts/exports.txt");
    EXPECT_EQ(namesIn(exports, "(?:^|\n)(\\w+)(?=\n)"), declared());
}

// The comment above each function of the header, in one line.
std::map<std::string, std::string> comments()
{
    const std::string header = textOf(kSource / "api/trv_fmt.h");
    std::map<std::string, std::string> comments;
    for (std::size_t at = 0; (at = header.find("\nTRV_FMT_EXPORT ", at)) != std::string::npos;
         ++at) {
        const std::size_t begin = header.rfind("/**", at);
        const std::string comment = header.substr(begin, header.rfind("*/", at) - begin);
        const std::string declaration = header.substr(at, header.find(';', at) - at);
        const std::string name = *namesIn(declaration, "(\\w+)\\(").begin();
        comments[name] = std::regex_replace(comment, std::regex("\n *\\* +"), " ");
    }
    return comments;
}

// The errors that a comment lists: texts between semicolons, with the names of arguments between them. An
// identifier becomes an asterisk.
std::set<std::string> errorsOf(const std::string &comment)
{
    std::string list = comment.substr(comment.find("Errors:"));
    list = list.substr(0, list.find("@code"));
    list = std::regex_replace(list, std::regex("\" and a second line, \""), "\n");
    list = std::regex_replace(list, std::regex("\" \\+ \\w+ \\+ \""), "*");
    list = std::regex_replace(list, std::regex("\" \\+ \\w+"), "*\"");
    return namesIn(list, "\"([^\"]*)\"");
}

TEST(CHeader, EveryCommentNamesTheErrorsAndCallsTheFunction)
{
    const auto all = comments();
    EXPECT_EQ(all.size(), declared().size());
    for (const auto &[name, comment] : all) {
        EXPECT_NE(comment.find("Errors:"), std::string::npos) << name;
        const std::size_t example = comment.find("@code");
        ASSERT_NE(example, std::string::npos) << name;
        EXPECT_NE(comment.find(name + "(", example), std::string::npos) << name;
    }
}

TEST(CHeader, TheErrorsOfItsCommentsAreThoseThatAreProvoked)
{
    const auto all = comments();
    std::set<std::string> with_tag;
    for (const function &row : functions) {
        std::set<std::string> provoked;
        for (int error = 0; error < ERRORS; ++error)
            if (row.errors & BIT(error)) provoked.insert(error_texts[error]);
        ASSERT_TRUE(all.contains(row.name));
        EXPECT_EQ(errorsOf(all.at(row.name)), provoked) << row.name;
        with_tag.insert(row.name);
    }
    // The rows are all that take a tag; the others have no texts of their own.
    for (const auto &[name, comment] : all) {
        const bool takes_tag = comment.find("@param drawing") != std::string::npos;
        EXPECT_EQ(takes_tag, with_tag.contains(name)) << name;
        EXPECT_EQ(errorsOf(comment).empty(), !takes_tag) << name;
    }
}

} // namespace
