#include "tests/drawing/stage.h"

namespace {

using Names = std::vector<std::string>;

class BlockPatternTest : public Stage {
protected:
    BlockPatternTest() { addFormat("A3"); }
    void changePatternOnDisk(const std::string &name)
    {
        catalog.block("TITLE").pattern = name;
        reload();
        format()->updateDefinition();
    }
};

} // namespace

TEST_F(BlockPatternTest, APatternOfTheSameNameIsKept)
{
    const tag_t before = patterns(*block("TITLE"))[0];
    catalog.field("TITLE", "NAME").x = 6;
    reload();
    format()->updateDefinition();
    EXPECT_EQ(patterns(*block("TITLE")), std::vector<tag_t>{before});
}

TEST_F(BlockPatternTest, AnotherNameDrawsAnotherPatternAtTheBlocksPoint)
{
    const tag_t before = patterns(*block("TITLE"))[0];
    changePatternOnDisk("rev");
    EXPECT_FALSE(UgObject::find(before));
    EXPECT_EQ(patternNames(*block("TITLE")), Names{"rev"});
    EXPECT_EQ(patternAt(patterns(*block("TITLE"))[0]), (At{230, 10}));
}

TEST_F(BlockPatternTest, AnEmptyNameRemovesThePattern)
{
    const tag_t before = patterns(*block("TITLE"))[0];
    changePatternOnDisk("");
    EXPECT_TRUE(patterns(*block("TITLE")).empty());
    EXPECT_FALSE(UgObject::find(before));
}

TEST_F(BlockPatternTest, AMissingPatternIsToldByName)
{
    catalog.block("TITLE").pattern = "nosuch";
    reload();
    EXPECT_EQ(textThrownBy([&] { format()->updateDefinition(); }),
              "Unable to find pattern nosuch.\nCheck UGII_PATDIR environment variable.");
}

TEST_F(BlockPatternTest, APatternNamedWithItsExtensionIsKeptToo)
{
    changePatternOnDisk("title.prt");
    const tag_t before = patterns(*block("TITLE"))[0];
    block("TITLE")->updatePattern();
    EXPECT_EQ(patterns(*block("TITLE")), std::vector<tag_t>{before});
}

TEST_F(BlockPatternTest, RemovingAPatternReleasesItFirst)
{
    const tag_t before = patterns(*block("TITLE"))[0];
    block("TITLE")->removePattern();
    EXPECT_FALSE(UgObject::find(before));
    block("TITLE")->removePattern(); // none: nothing
    EXPECT_TRUE(patterns(*block("TITLE")).empty());
}
