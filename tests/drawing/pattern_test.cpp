#include "drawing/pattern.h"
#include "tests/drawing/patterns.h"

#include "uf_layer.h"
#include "uf_obj.h"
#include "uf_patt.h"

namespace {

// The constructor is only for pattern wrappers themselves.
class OpenPattern : public ZemPattern {
public:
    explicit OpenPattern(unsigned int tag) : ZemPattern(tag) {}
    ~OpenPattern() override = default;
};

struct Retrieved {
    double placement[13];
    std::string file;
};

Retrieved read(tag_t pattern)
{
    char name[MAX_FSPEC_BUFSIZE], file[MAX_FSPEC_BUFSIZE];
    int viewDependent = 0, layer = 0, status = 0;
    Retrieved result{};
    UgException::throwOnFailure(
        uc5822(pattern, name, file, &viewDependent, &layer, &status, result.placement));
    result.file = name;
    return result;
}

int layerStatus(int layer)
{
    int status = 0;
    UgException::throwOnFailure(UF_LAYER_ask_status(layer, &status));
    return status;
}

class PatternTest : public testing::Test {
protected:
    PatternTest() { story.newSheet(); }
    Story story;
};

} // namespace

TEST_F(PatternTest, StandsUprightAtItsPointAtScaleOneWhateverTheThirdCoordinate)
{
    makePattern(story, "frame");
    const ZemPattern *pattern = ZemPattern::Create("frame", 12, {30.0, 40.0, 99.0});
    const Retrieved at = read(pattern->getTag());
    const double expected[13] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 30, 40, 0, 1};
    for (int i = 0; i < 13; ++i) EXPECT_EQ(at.placement[i], expected[i]) << i;
    EXPECT_EQ(pattern->askType(), 10);
    EXPECT_EQ(pattern->getLayer(), 12);
}

TEST_F(PatternTest, IsNamedAsItWasAskedForWithOrWithoutTheExtension)
{
    makePattern(story, "frame");
    EXPECT_EQ(ZemPattern::Create("frame", 1, {0, 0})->getName(), "frame");
    EXPECT_EQ(ZemPattern::Create("frame.prt", 1, {0, 0})->getName(), "frame.prt");
}

TEST_F(PatternTest, ItsLayerBecomesSelectableAndStaysSo)
{
    makePattern(story, "frame");
    UgException::throwOnFailure(UF_LAYER_set_status(12, UF_LAYER_INACTIVE_LAYER));
    ZemPattern::Create("frame", 12, {0, 0});
    EXPECT_EQ(layerStatus(12), 2);
}

TEST_F(PatternTest, AMissingFileIsNamedWithTheVariableToCheck)
{
    EXPECT_EQ(textThrownBy([] {
                  ZemPattern::Create("nosuch", 1, {0, 0});
              }),
              "Unable to find pattern nosuch.\nCheck UGII_PATDIR environment variable.");
}

TEST_F(PatternTest, AllOtherFailuresOfRetrievalReadAlike)
{
    makePattern(story, "plain", false);
    EXPECT_EQ(textThrownBy([] {
                  ZemPattern::Create("plain", 1, {0, 0});
              }), // no pattern data: 6
              "Error while retrieving pattern");
    makePattern(story, "frame");
    nxhost::failCall("uc5823", 5);
    EXPECT_EQ(textThrownBy([] {
                  ZemPattern::Create("frame", 1, {0, 0});
              }),
              "Error while retrieving pattern");
}

TEST_F(PatternTest, AFailureAfterRetrievalIsThePlatformsOwn)
{
    makePattern(story, "frame");
    nxhost::failCall("UF_PATT_set_params", 1105050);
    EXPECT_EQ(codeThrownBy([] { ZemPattern::Create("frame", 1, {0, 0}); }), 1105050);
}

TEST_F(PatternTest, AFailureThatIsNotThePlatformsPassesUnchanged)
{
    makePattern(story, "frame");
    nxhost::onCall("uc5823", [] { throw std::out_of_range("from below"); });
    EXPECT_THROW(ZemPattern::Create("frame", 1, {0, 0}), std::out_of_range);
}

TEST_F(PatternTest, NothingButAPatternCanBeWrapped)
{
    UF_CURVE_line_t line{{0, 0, 0}, {10, 0, 0}};
    tag_t tag = NULL_TAG;
    UgException::throwOnFailure(UF_CURVE_create_line(&line, &tag));
    EXPECT_EQ(textThrownBy([&] { OpenPattern wrapper(tag); }), "Passed tag was not a pattern.\n");
}

TEST_F(PatternTest, TagZeroMakesAnUnboundWrapperAndAPatternsTagABoundOne)
{
    EXPECT_EQ(OpenPattern(NULL_TAG).getTag(), NULL_TAG);
    makePattern(story, "frame");
    const tag_t tag = ZemPattern::Create("frame", 1, {0, 0})->getTag();
    EXPECT_EQ(OpenPattern(tag).getTag(), tag);
    EXPECT_EQ(UF_OBJ_ask_status(tag), UF_OBJ_ALIVE); // the wrapper's end is not the pattern's
}
