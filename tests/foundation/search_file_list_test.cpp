// Where files are looked for, and in which order they come.
#include "tests/support/story.h"

#include "lumug/nx_search_file_list.h"

using LumUg::NxSearchFileList;
namespace fs = boost::filesystem;
using Texts = std::vector<std::string>;

namespace {

// Paths below the story's folder.
Texts found(const Story &story, const std::string &folder, const std::string &name)
{
    Texts texts;
    for (const fs::path &path : NxSearchFileList(folder).filePaths(name))
        texts.push_back(path.lexically_relative(story.folder()).string());
    return texts;
}

} // namespace

TEST(NxSearchFileList, GoesFromVendorToUserInAFixedOrder)
{
    Story story;
    for (const char *root : {"v", "s", "g", "c1", "c2", "u"})
        story.writeFile(std::string(root) + "/config/tr_format", "");
    story.writeFile("dirs", "# custom directories\n\n  " + story.file("c2") +
                                "  # the second first\r\n" + story.file("c1") + "\n");
    const ScopedVariable user("UGII_USER_DIR", story.file("u"));
    const ScopedVariable custom("UGII_CUSTOM_DIRECTORY_FILE", story.file("dirs"));
    const ScopedVariable group("UGII_GROUP_DIR", story.file("g"));
    const ScopedVariable site("UGII_SITE_DIR", story.file("s"));
    const ScopedVariable vendor("UGII_VENDOR_DIR", story.file("v"));
    EXPECT_EQ(found(story, "config", "tr_format"),
              (Texts{"v/config/tr_format", "s/config/tr_format", "g/config/tr_format",
                     "c2/config/tr_format", "c1/config/tr_format", "u/config/tr_format"}));
}

TEST(NxSearchFileList, TellsEveryPlaceItLooksAt)
{
    Story story;
    const ScopedVariable user("UGII_USER_DIR", story.file("missing"));
    const NxSearchFileList list("config");
    ASSERT_EQ(list.places().size(), 2u);
    EXPECT_EQ(list.places()[0].origin, "UGII_SITE_DIR");
    EXPECT_EQ(list.places()[0].folder, fs::path(story.file("site/config")));
    EXPECT_EQ(list.places()[1].origin, "UGII_USER_DIR");
    EXPECT_EQ(list.places()[1].folder, fs::path(story.file("missing/config")));
}

TEST(NxSearchFileList, MatchesNamesExactly)
{
    Story story;
    for (const char *name : {"tr_format", "tr_format.bak", "TR_FORMAT", "tr_forma", "xtr_format"})
        story.writeFile(std::string("site/config/") + name, "");
    EXPECT_EQ(found(story, "config", "tr_format"), Texts{"site/config/tr_format"});
    EXPECT_EQ(found(story, "config", ""), Texts{});
    EXPECT_EQ(found(story, "other", "tr_format"), Texts{});
}

TEST(NxSearchFileList, MatchesPatternsByStarsAloneAndSortsByName)
{
    Story story;
    for (const char *name : {"b.prt", "a.prt", "B.prt", "aprt", "a.PRT", "a.prt.bak", "a+b(1).prt"})
        story.writeFile(std::string("site/format_defs/") + name, "");
    const auto names = [&](const char *pattern) {
        Texts texts;
        for (const std::string &path : found(story, "format_defs", pattern))
            texts.push_back(fs::path(path).filename().string());
        return texts;
    };
    EXPECT_EQ(names("*.prt"), (Texts{"B.prt", "a+b(1).prt", "a.prt", "b.prt"}));
    EXPECT_EQ(names("a+b(1)*"), Texts{"a+b(1).prt"});
    EXPECT_EQ(names("a*"), (Texts{"a+b(1).prt", "a.PRT", "a.prt", "a.prt.bak", "aprt"}));
    EXPECT_EQ(names("?.prt"), Texts{});
    EXPECT_EQ(names("[ab].prt"), Texts{});
    EXPECT_EQ(names("*").size(), 7u);
}

TEST(NxSearchFileList, FindsRegularFilesOfTheFolderItselfOnly)
{
    Story story;
    story.writeFile("site/config/deep/tr_format", "");
    fs::create_directories(story.file("site/config/folder.prt"));
    story.writeFile("site/config/real.prt", "");
    fs::create_symlink(story.file("site/config/real.prt"), story.file("user.prt"));
    EXPECT_EQ(found(story, "config", "tr_format"), Texts{});
    EXPECT_EQ(found(story, "config", "*.prt"), Texts{"site/config/real.prt"});
}

TEST(NxSearchFileList, AFileReachedTwiceComesOnce)
{
    Story story;
    story.writeFile("site/config/tr_format", "");
    fs::create_symlink(story.file("site"), story.file("linked"));
    const ScopedVariable group("UGII_GROUP_DIR", story.file("linked"));
    const ScopedVariable user("UGII_USER_DIR", story.file("site"));
    EXPECT_EQ(found(story, "config", "tr_format"), Texts{"site/config/tr_format"});
}

TEST(NxSearchFileList, WhatIsMissingIsNoError)
{
    Story story;
    story.writeFile("site/config/a.prt", "");
    const ScopedVariable vendor("UGII_VENDOR_DIR", "/nowhere/at/all");
    const ScopedVariable custom("UGII_CUSTOM_DIRECTORY_FILE", story.file("no-such-list"));
    EXPECT_EQ(found(story, "config", "*.prt"), Texts{"site/config/a.prt"});
    fs::create_symlink(story.file("gone"), story.file("site/config/dangling.prt"));
    EXPECT_EQ(found(story, "config", "*.prt"), Texts{"site/config/a.prt"});
    EXPECT_EQ(found(story, "nothing", "*.prt"), Texts{});
}

TEST(NxSearchFileList, CustomDirectoriesMayNameVariables)
{
    Story story;
    story.writeFile("x/one/config/tr_format", "");
    const ScopedVariable base("QELFMT_TEST_BASE", story.file("x"));
    story.writeFile("dirs", "${QELFMT_TEST_BASE}/one\n${QELFMT_TEST_NOT_SET}\n${open\n");
    const ScopedVariable custom("UGII_CUSTOM_DIRECTORY_FILE", story.file("dirs"));
    EXPECT_EQ(found(story, "config", "tr_format"), Texts{"x/one/config/tr_format"});
}

TEST(NxSearchFileList, ReadsTheVariablesAtEachConstruction)
{
    Story story;
    story.writeFile("site/config/tr_format", "");
    const NxSearchFileList before("config");
    const ScopedVariable site("UGII_SITE_DIR", story.file("elsewhere"));
    EXPECT_EQ(before.filePaths("tr_format").size(), 1u);
    EXPECT_TRUE(NxSearchFileList("config").filePaths("tr_format").empty());
}

TEST(NxSearchFileList, DirectoriesThatWereSetReplaceTheVariables)
{
    Story story;
    story.writeFile("site/config/tr_format", "");
    story.writeFile("mine/config/tr_format", "");
    NxSearchFileList::setSearchDirectories({story.file("mine")});
    EXPECT_EQ(found(story, "config", "tr_format"), Texts{"mine/config/tr_format"});
    EXPECT_EQ(NxSearchFileList("config").places()[0].origin, "set");
    NxSearchFileList::setSearchDirectories({});
    EXPECT_EQ(found(story, "config", "tr_format"), Texts{"site/config/tr_format"});
}

TEST(NxSearchFileList, WithoutVariablesTheInstallationIsLookedAt)
{
    Story story;
    const ScopedVariable site("UGII_SITE_DIR", "");
    const NxSearchFileList list("format_defs");
    ASSERT_EQ(list.places().size(), 1u);
    EXPECT_EQ(list.places()[0].origin, "installation");
    EXPECT_TRUE(list.places()[0].folder.string().ends_with("/share/qelfmt/format_defs"));
}
