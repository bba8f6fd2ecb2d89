#include "drawing/transformation.h"
#include "tests/drawing/stage.h"

namespace {

class TransformationTest : public Stage {
protected:
    TransformationTest() { addFormat("A3"); }
    void moveTitle() const
    {
        const double point[] = {50, 60};
        block("TITLE")->move(point);
    }
};

} // namespace

// The routines' own reasons, not those for which the platform refuses a pattern.
TEST_F(TransformationTest, EachReasonToMoveNothingHasItsText)
{
    struct Row {
        int status;
        const char *text;
    };
    for (const Row &row :
         {Row{1, "Objects of the sheet cannot be moved: there are too many or too few of them "
                 "(uf5947, status 1)."},
          {2, "Objects of the sheet cannot be moved: a parameter is out of range (uf5947, status "
              "2)."},
          {3, "Objects of the sheet cannot be moved: one of them is gone, or is of a kind that "
              "cannot be moved (uf5947, status 3)."},
          {12, "Objects of the sheet cannot be moved: the platform's modeller refused (uf5947, "
               "status 12)."}}) {
        SCOPED_TRACE(row.status);
        nxhost::failCall("uf5947", row.status);
        EXPECT_EQ(textThrownBy([&] { moveTitle(); }), row.text);
        nxhost::clearFaults();
    }
    EXPECT_EQ(patternAt(patterns(*block("TITLE"))[0]), (At{230, 10})); // where it stood
    EXPECT_EQ(blockAt("TITLE"), (At{230, 10}));
}

TEST_F(TransformationTest, AnythingElseIsThePlatformsOwnCode)
{
    nxhost::failCall("uf5947", 1105011);
    EXPECT_EQ(codeThrownBy([&] { moveTitle(); }), 1105011);
}

TEST_F(TransformationTest, WhatIsGoneIsNotMoved)
{
    const tag_t gone = patterns(*block("TITLE"))[0];
    block("TITLE")->removePattern();
    EXPECT_EQ(textThrownBy([&] { moveObjects({gone}, 1, 2); }),
              "Objects of the sheet cannot be moved: one of them is gone, or is of a kind that "
              "cannot be moved (uf5947, status 3).");
}

TEST_F(TransformationTest, ARotationThatFailsSaysSoInItsOwnWords)
{
    const tag_t name = note("TITLE", "NAME");
    nxhost::failCall("uf5945", 1);
    EXPECT_EQ(textThrownBy([&] { turnObject(name, 0, 0, 90); }),
              "Objects of the sheet cannot be moved: the axis has no direction (uf5945, status "
              "1).");
}

// Half a turn about a point 5 below and 5 left of the note.
TEST_F(TransformationTest, TurningIsAboutTheGivenPoint)
{
    const At before = noteAt("TITLE", "NAME");
    turnObject(note("TITLE", "NAME"), before.x - 5, before.y - 5, 180);
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{before.x - 10, before.y - 10}));
}
