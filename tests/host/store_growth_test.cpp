// What opening and saving cost must grow with the part, and no faster. Times of this process alone, the best
// of several: what else the machine does plays a small part. bench/host_bench.cpp measures finely.
#include "store_support.h"

#include "nxhost/control.h"

#include <algorithm>
#include <cmath>
#include <ctime>

using namespace store_test;

namespace {

class GrowingPart : public testing::Test {
protected:
    ~GrowingPart() override { nxhost::reset(); }

    template <class Body> static double bestOf(int tries, Body &&body)
    {
        double best = 1e9;
        for (int i = 0; i < tries; ++i) {
            const std::clock_t start = std::clock();
            body();
            best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
        }
        return best;
    }

    static double exponent(double small, double large, double factor)
    {
        return std::log(large / small) / std::log(factor);
    }

    Folder folder;
    std::string path = folder.file("growing.prt");
};

} // namespace

TEST_F(GrowingPart, OpeningAndSavingTakeTimeInProportionToTheObjects)
{
    struct Times {
        double opening, saving;
    };
    const auto timesOf = [&](int objects, int tries) {
        nxhost::reset();
        Part &part = samplePart(path, objects);
        const double saving = bestOf(tries, [&] { store::writeImage(part, path); });
        nxhost::reset();
        const double opening = bestOf(tries, [&] { Session::get().closePart(opened(path)); });
        return Times{opening, saving};
    };
    Times small = timesOf(2000, 7), large = timesOf(32000, 3);
    for (int round = 0; round < 3; ++round) { // in turns: a busy while hits both
        const Times again = timesOf(2000, 7), more = timesOf(32000, 3);
        small = {std::min(small.opening, again.opening), std::min(small.saving, again.saving)};
        large = {std::min(large.opening, more.opening), std::min(large.saving, more.saving)};
    }
    // In proportion is 1; looking at all the others for each object is 2.
    EXPECT_LT(exponent(small.opening, large.opening, 16), 1.3);
    EXPECT_LT(exponent(small.saving, large.saving, 16), 1.3);
}

TEST_F(GrowingPart, SavingOneChangeCostsTheSameInALargePart)
{
    const auto timeOf = [&](int objects) {
        nxhost::reset();
        fs::remove(path);
        Part &part = samplePart(path, objects);
        store::save(part, path);
        Object &note = *part.byKind.at(Body(Note{}).index()).begin()->second;
        int state = 0;
        return bestOf(5, [&] {
            Session::get().changing(note, "text");
            note.as<Note>()->lines = {std::to_string(++state)};
            EXPECT_EQ(store::save(part, path).rows, 2);
        });
    };
    // All pages are looked through before they are written to, which is quick but grows.
    EXPECT_LT(exponent(timeOf(1000), timeOf(16000), 16), 1.1);
}

TEST_F(GrowingPart, ManyAttributesAreFoundAsFastAsFew)
{
    Session &session = Session::get();
    const auto timeOf = [&](int count) {
        nxhost::reset();
        Part &part = session.newPart(path, 1);
        return bestOf(9, [&] {
            for (int i = 0; i < count; ++i)
                session.setAttribute(part.tag, "TITLE " + std::to_string(i), "value");
            std::size_t found = 0;
            for (int i = 0; i < count; ++i)
                found += session.attribute(part.tag, "TITLE " + std::to_string(i)) != nullptr;
            EXPECT_EQ(found, static_cast<std::size_t>(count));
        });
    };
    double few = timeOf(2000), many = timeOf(32000);
    for (int round = 0; round < 3; ++round) {
        few = std::min(few, timeOf(2000));
        many = std::min(many, timeOf(32000));
    }
    EXPECT_LT(exponent(few, many, 16), 1.4);
}
