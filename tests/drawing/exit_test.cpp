// The handles of sheets when the process ends.
#include "drawing/drawing.h"

#include "tests/support/story.h"

#include <cstdio>
#include <cstdlib>

namespace {

// Built while the program is loaded, hence destroyed after what is made on first use.
struct ExitProbe {
    ~ExitProbe()
    {
        if (sheet == NULL_TAG) return;
        try {
            TrDrawing::getDrawing(sheet);
            std::fprintf(stderr, "still alive\n");
        } catch (const std::exception &failure) {
            std::fprintf(stderr, "at exit: %s\n", failure.what());
        }
    }
    tag_t sheet = NULL_TAG;
} exit_probe;

} // namespace

TEST(DrawingDeathTest, AHandleAskedForAfterTheEndRaisesDeadReferenceDetected)
{
    Story story;
    const tag_t sheet = story.newSheet();
    const auto in_child = [&] {
        TrDrawing::getDrawing(sheet);
        exit_probe.sheet = sheet;
        std::exit(0);
    };
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "at exit: Dead Reference Detected\n");
}
