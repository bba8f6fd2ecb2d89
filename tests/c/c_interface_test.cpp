// Runs the tests that are written in C99, and compares the functions that they call with the header.
#include "tests/c/claims.h"
#include "tests/c/runner.h"

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

} // namespace
