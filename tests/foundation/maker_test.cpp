// The helper libraries: the application pointer and the callback holder.
#include "foundation/application.h"

#include "base/functor.h"
#include "lum/app.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

int addOne(const char *, const char *) { return 1; }
int addTwo(const char *, const char *) { return 2; }

using AddBlock = Base::Functor<int(const char *, const char *)>;

// Usable before any dynamic initialisation has run.
constinit AddBlock installed_early;
const bool filled_early = (installed_early = addTwo, true);

} // namespace

TEST(LumApp, PointsAtTheNewestUntilThatOneGoes)
{
    ASSERT_EQ(Lum::App::app(), nullptr);
    auto older = std::make_unique<Lum::App>("older");
    EXPECT_EQ(Lum::App::app(), older.get());
    auto newer = std::make_unique<Lum::App>("newer");
    EXPECT_EQ(Lum::App::app(), newer.get());
    EXPECT_EQ(Lum::App::app()->name(), "newer");
    newer.reset();
    EXPECT_EQ(Lum::App::app(), nullptr); // the older one is out of reach
    older.reset();
    EXPECT_EQ(Lum::App::app(), nullptr);
}

TEST(LumApp, DestroyingAnOlderOneLeavesThePointer)
{
    auto older = std::make_unique<Lum::App>("older");
    const Lum::App newer("newer");
    older.reset();
    EXPECT_EQ(Lum::App::app(), &newer);
}

TEST(LumApp, CopiesTakeTheNameOnly)
{
    const Lum::App original("original");
    Lum::App copy(original);
    EXPECT_EQ(copy.name(), "original");
    EXPECT_EQ(Lum::App::app(), &original);
    Lum::App other("other");
    copy = other;
    EXPECT_EQ(copy.name(), "other");
    EXPECT_EQ(Lum::App::app(), &other);
}

TEST(LumApp, TellsTheLibrarysApplicationFromOthers)
{
    {
        const Lum::App foreign("foreign");
        EXPECT_EQ(dynamic_cast<QelFmt::Application *>(Lum::App::app()), nullptr);
    }
    new QelFmt::Application("tr_format_test");
    auto *application = dynamic_cast<QelFmt::Application *>(Lum::App::app());
    ASSERT_NE(application, nullptr);
    EXPECT_EQ(application->name(), "tr_format_test");
    delete Lum::App::app(); // through the base
    EXPECT_EQ(Lum::App::app(), nullptr);
}

TEST(Functor, IsEmptyAtFirst)
{
    const AddBlock functor;
    EXPECT_TRUE(functor.empty());
    EXPECT_FALSE(functor);
    EXPECT_THROW(functor("a", "b"), std::exception);
}

TEST(Functor, HoldsTheLastFunctionGiven)
{
    AddBlock functor(addOne);
    EXPECT_FALSE(functor.empty());
    EXPECT_EQ(functor("a", "b"), 1);
    functor = addTwo;
    EXPECT_EQ(functor("a", "b"), 2);
    const AddBlock copy = functor;
    functor = addOne;
    EXPECT_EQ(copy("a", "b"), 2);
}

TEST(Functor, IsEmptiedByNull)
{
    AddBlock functor(addOne);
    AddBlock::Pointer none = nullptr;
    functor = none;
    EXPECT_TRUE(functor.empty());
    functor = addOne;
    functor = nullptr;
    EXPECT_TRUE(functor.empty());
    functor = std::function<int(const char *, const char *)>();
    EXPECT_TRUE(functor.empty());
}

TEST(Functor, TakesAnyCallable)
{
    std::string seen;
    Base::Functor<void(const char *, const char *, const char *)> functor(
        [&](const char *format, const char *block, const char *table) {
            seen = std::string(format) + block + table;
        });
    functor("f", "b", "t");
    EXPECT_EQ(seen, "fbt");
    AddBlock plain([](const char *, const char *) { return 7; });
    EXPECT_EQ(plain("", ""), 7);
    plain = std::function<int(const char *, const char *)>(addTwo);
    EXPECT_EQ(plain("", ""), 2);
}

TEST(Functor, CanBeFilledWhileTheProgramIsBeingLoaded)
{
    EXPECT_TRUE(filled_early);
    EXPECT_EQ(installed_early("", ""), 2);
}
