// Reading and writing the typed arrays of one record.
#include "probe.h"

#include "tests/support/story.h"

#include <cmath>
#include <limits>

using Doubles = std::vector<double>;
using Ints = std::vector<int>;
using Texts = std::vector<std::string>;

TEST(UdoArrays, IndexPastTheEndFillsIntsWithTheirPlaceInTheRun)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(3, 9);
    EXPECT_EQ(probe.GetInts(), (Ints{0, 1, 2, 9}));
    probe.SetInt(6, 5); // the count starts anew at each appended run: 0, 1
    EXPECT_EQ(probe.GetInts(), (Ints{0, 1, 2, 9, 0, 1, 5}));
}

TEST(UdoArrays, IndexPastTheEndFillsDoublesLengthsAreasAndVolumesAlike)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetDouble(2, 7.5);
    EXPECT_EQ(probe.GetDoubles(), (Doubles{0.0, 1.0, 7.5}));
    probe.SetLength(2, 7.5);
    probe.SetArea(3, 8.5);
    probe.SetVolume(1, 9.5);
    EXPECT_EQ(probe.GetUdoObject()->getLengths(), (Doubles{0.0, 1.0, 7.5}));
    EXPECT_EQ(probe.GetUdoObject()->getAreas(), (Doubles{0.0, 1.0, 2.0, 8.5}));
    EXPECT_EQ(probe.GetUdoObject()->getVolumes(), (Doubles{0.0, 9.5}));
    EXPECT_EQ(probe.GetLength(2), 7.5);
    EXPECT_EQ(probe.GetArea(3), 8.5);
    EXPECT_EQ(probe.GetVolume(1), 9.5);
}

TEST(UdoArrays, IndexPastTheEndFillsStringsWithEmptyTexts)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetString(2, "x");
    EXPECT_EQ(probe.GetStrings(), (Texts{"", "", "x"}));
    EXPECT_EQ(probe.GetNumberOfStrings(), 3u);
}

TEST(UdoArrays, IndexAtTheEndAppendsWithoutFiller)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 5);
    probe.SetInt(1, 9);
    EXPECT_EQ(probe.GetInts(), (Ints{5, 9}));
    probe.SetString(0, "a");
    probe.SetString(1, "b");
    EXPECT_EQ(probe.GetStrings(), (Texts{"a", "b"}));
    probe.SetArea(0, 1.5);
    probe.SetArea(1, 2.5);
    EXPECT_EQ(probe.GetUdoObject()->getAreas(), (Doubles{1.5, 2.5}));
}

TEST(UdoArrays, IndexWithinReplacesThatElementOnly)
{
    Story story;
    story.newPart();
    Probe probe;
    for (unsigned i = 0; i < 3; ++i) {
        probe.SetInt(i, static_cast<int>(i) + 1);
        probe.SetDouble(i, i + 0.5);
        probe.SetString(i, std::string(1, static_cast<char>('a' + i)));
        probe.SetLength(i, i + 10.0);
    }
    probe.SetInt(1, 8);
    probe.SetDouble(1, 8.5);
    probe.SetString(1, "");
    probe.SetLength(1, 88.0);
    EXPECT_EQ(probe.GetInts(), (Ints{1, 8, 3}));
    EXPECT_EQ(probe.GetDoubles(), (Doubles{0.5, 8.5, 2.5}));
    EXPECT_EQ(probe.GetStrings(), (Texts{"a", "", "c"}));
    EXPECT_EQ(probe.GetUdoObject()->getLengths(), (Doubles{10.0, 88.0, 12.0}));
}

TEST(UdoArrays, AWriteIsOneReplacementOfTheWholeArrayOrOneAppendedRun)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(4, 1);
    nxhost::clearCallCounts();
    probe.SetInt(2, 7);
    EXPECT_EQ(nxhost::callCount("UgUDO::setInts"), 1u);
    EXPECT_EQ(nxhost::callCount("UgUDO::addInts"), 0u);
    nxhost::clearCallCounts();
    probe.SetInt(9, 7);
    EXPECT_EQ(nxhost::callCount("UgUDO::setInts"), 0u);
    EXPECT_EQ(nxhost::callCount("UgUDO::addInts"), 1u);
}

TEST(UdoArrays, IntsDoublesAndStringsAreLenientPastTheEnd)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(2, 1);
    probe.SetDouble(0, 1.0);
    probe.SetString(0, "a");
    EXPECT_EQ(probe.GetInt(5, 7), 7);
    EXPECT_EQ(probe.GetInt(3, -7), -7);
    EXPECT_EQ(probe.GetInt(2, 7), 1);
    EXPECT_EQ(probe.GetDouble(5), 0.0);
    EXPECT_EQ(probe.GetDouble(1), 0.0);
    EXPECT_EQ(probe.GetString(5), "");
    EXPECT_EQ(probe.GetString(1), "");
    EXPECT_EQ(probe.GetInt(std::numeric_limits<unsigned>::max(), 7), 7);
}

TEST(UdoArrays, LengthsAreasAndVolumesAreStrictPastTheEnd)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetLength(0, 1.0);
    probe.SetArea(0, 1.0);
    probe.SetVolume(0, 1.0);
    for (const unsigned index : {1u, 5u}) {
        EXPECT_EQ(textThrownBy([&] { probe.GetLength(index); }),
                  "Requested length offset that is greater than UDO has.");
        EXPECT_EQ(textThrownBy([&] { probe.GetArea(index); }),
                  "Requested area offset that is greater than UDO has.");
        EXPECT_EQ(textThrownBy([&] { probe.GetVolume(index); }),
                  "Requested volume offset that is greater than UDO has.");
    }
}

TEST(UdoArrays, ReadingAnEmptyViewRaisesTheTextOfTheReader)
{
    Story story;
    story.newPart();
    const Probe probe;
    EXPECT_EQ(textThrownBy([&] { probe.GetDouble(0); }),
              "UDO::GetDouble: UDO object has a NULL UgUDO");
    EXPECT_EQ(textThrownBy([&] { probe.GetString(0); }),
              "UDO::GetString: UDO object has a NULL UgUDO");
    EXPECT_EQ(textThrownBy([&] { probe.GetNumberOfStrings(); }),
              "UDO::GetString: UDO object has a NULL UgUDO");
    EXPECT_EQ(textThrownBy([&] { probe.GetLength(0); }),
              "UDO::GetLength: UDO object has a NULL UgUDO");
    EXPECT_EQ(textThrownBy([&] { probe.GetArea(0); }), "UDO::GetArea: UDO object has a NULL UgUDO");
    EXPECT_EQ(textThrownBy([&] { probe.GetVolume(0); }),
              "UDO::GetVolume: UDO object has a NULL UgUDO");
    EXPECT_EQ(textThrownBy([&] { probe.GetLink(2, 0); }),
              "UDO::GetLink: UDO object has a NULL UgUDO");
    EXPECT_EQ(textThrownBy([&] { probe.getOwnedObject(0); }),
              "UDO::getOwnedObject: UDO object has a NULL UgUDO");
}

TEST(UdoArrays, IntsAndWholeArraysOfAnEmptyViewAreRefusedByThePlatform)
{
    Story story;
    story.newPart();
    const Probe probe;
    EXPECT_NE(codeThrownBy([&] { probe.GetInt(0, 3); }), 0);
    EXPECT_NE(codeThrownBy([&] { probe.GetInts(); }), 0);
    EXPECT_NE(codeThrownBy([&] { probe.GetDoubles(); }), 0);
    EXPECT_NE(codeThrownBy([&] { probe.GetStrings(); }), 0);
    EXPECT_NE(codeThrownBy([&] { probe.GetLinks(2); }), 0);
    EXPECT_NE(codeThrownBy([&] { probe.GetOwnedObjects(); }), 0);
}

TEST(UdoArrays, ReadingNeverMakesAnObject)
{
    Story story;
    story.newPart();
    const std::size_t before = nxhost::countObjects(story.part());
    const Probe probe;
    EXPECT_TRUE(probe.IsNull());
    EXPECT_THROW(probe.GetString(0), std::exception);
    EXPECT_THROW(probe.GetInts(), UgException);
    EXPECT_TRUE(probe.IsNull());
    EXPECT_EQ(probe.tag(), NULL_TAG);
    EXPECT_EQ(nxhost::countObjects(story.part()), before);
}

TEST(UdoArrays, NothingIsCachedBetweenTwoViews)
{
    Story story;
    story.newPart();
    Probe a;
    a.SetInt(0, 1);
    const Probe b(a.GetUdoObject());
    a.SetInt(0, 4);
    EXPECT_EQ(b.GetInt(0, 0), 4);
    EXPECT_EQ(b.tag(), a.tag());
}

TEST(UdoArrays, AFailingWriteLeavesTheEarlierOnes)
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 1);
    probe.SetInt(1, 2);
    nxhost::failCall("UgUDO::setInts", 1175001, 2);
    probe.SetInt(0, 11);
    EXPECT_EQ(codeThrownBy([&] { probe.SetInt(1, 22); }), 1175001);
    EXPECT_EQ(probe.GetInts(), (Ints{11, 2}));
}

TEST(UdoArrays, AFailingReadGivesItsDataBack) // the story counts the data blocks
{
    Story story;
    story.newPart();
    Probe probe;
    probe.SetInt(0, 1);
    nxhost::failCall("UF_UDOBJ_ask_udo_data", 1105051);
    EXPECT_EQ(codeThrownBy([&] { probe.GetInts(); }), 1105051);
    EXPECT_THROW(probe.GetLength(0), std::runtime_error);
    EXPECT_EQ(nxhost::outstandingDataBlocks(), 0u);
}

TEST(UdoArrays, ValuesSurviveToTheLastBit)
{
    Story story;
    story.newPart();
    Probe probe;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    probe.SetDouble(0, nan);
    probe.SetDouble(1, -0.0);
    probe.SetDouble(2, std::numeric_limits<double>::denorm_min());
    probe.SetInt(0, std::numeric_limits<int>::min());
    probe.SetString(0, "\xE4\xF6 \x80\xFF \"W\"");
    story.saveAndReopen();
    const auto views =
        LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), Probe::mUDOClass.GetClassId());
    ASSERT_EQ(views.size(), 1u);
    const Probe again(views[0]);
    EXPECT_TRUE(std::isnan(again.GetDouble(0)));
    EXPECT_TRUE(std::signbit(again.GetDouble(1)));
    EXPECT_EQ(again.GetDouble(2), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(again.GetInt(0, 0), std::numeric_limits<int>::min());
    EXPECT_EQ(again.GetString(0), "\xE4\xF6 \x80\xFF \"W\"");
}
