// The application object, the process-wide settings, the common object class.
#include "foundation/application.h"

#include "foundation/guarded_singleton.h"
#include "foundation/log.h"
#include "foundation/qel_object.h"
#include "foundation/registry.h"

#include "tests/support/story.h"

#include <type_traits>

using QelFmt::Application;
using QelFmt::Registry;

namespace {

// Built while the program is loaded, before anything is used, hence destroyed after everything that
// is made on first use: what it uses then is gone.
struct ExitProbe {
    ~ExitProbe()
    {
        if (!use) return;
        try {
            use();
            std::fprintf(stderr, "still alive\n");
        } catch (const std::exception &failure) {
            std::fprintf(stderr, "at exit: %s\n", failure.what());
        }
    }
    void (*use)() = nullptr;
} exit_probe;

struct Cache {
    int value = 3;
};

// Destroyed by a static object of its own: uses it while it goes.
struct UsedWhileItGoes {
    ~UsedWhileItGoes()
    {
        try {
            QelFmt::GuardedSingleton<UsedWhileItGoes>::get();
            std::fprintf(stderr, "still alive\n");
        } catch (const std::exception &failure) {
            std::fprintf(stderr, "while going: %s\n", failure.what());
        }
    }
};

class OpenObject : public QelObject {
public:
    using QelObject::askClassManager;
};

} // namespace

TEST(Application, IsTheNamedApplicationOfTheFramework)
{
    Story story;
    const Application application("tr_format");
    EXPECT_EQ(application.name(), "tr_format");
    EXPECT_EQ(Lum::App::app(), &application);
    static_assert(std::has_virtual_destructor_v<Application>);
    static_assert(std::is_base_of_v<LumUg::Application, Application>);
    Application copy(application);
    EXPECT_EQ(copy.name(), "tr_format");
    copy = application;
    EXPECT_EQ(Lum::App::app(), &application);
}

TEST(Application, ReadsTheSettingsOfItsName)
{
    Story story;
    story.writeSettings("[Settings]\nField Selection = 1\n");
    story.writeFile("site/config/other", "[Settings]\nField Selection = 2\n");
    const Application application("tr_format");
    EXPECT_EQ(Application::getRegistry()->readIntEntry("Settings", "Field Selection", 0), 1);
    const Application other("other");
    EXPECT_EQ(Application::getRegistry()->readIntEntry("Settings", "Field Selection", 0), 2);
}

TEST(Application, TellsThatItReadsBeforeItReads)
{
    Story story;
    story.writeSettings("[Settings]\n");
    const Base::log::Recording recording{&QelFmt::info_log()};
    const Application application("tr_format");
    EXPECT_EQ(recording.texts(),
              (std::vector<std::string>{"reading in application registry files",
                                        "Reading registry file: " +
                                            story.file("site/config/tr_format")}));
}

TEST(Application, ASecondOneReplacesWhatTheFirstRead)
{
    Story story;
    story.writeSettings("[A]\ngone = 1\nkept = 1\n");
    const Application first("tr_format");
    EXPECT_TRUE(Application::getRegistry()->keyExists("A", "gone"));
    Application::getRegistry()->setModified(true);
    story.writeSettings("[A]\nkept = 2\n");
    const Application second("tr_format");
    EXPECT_FALSE(Application::getRegistry()->keyExists("A", "gone"));
    EXPECT_EQ(Application::getRegistry()->readIntEntry("A", "kept", 0), 2);
    EXPECT_FALSE(Application::getRegistry()->isModified());
}

TEST(Application, BadSettingsDoNotStopIt)
{
    Story story;
    story.writeSettings("nonsense\n[S]\nK = 1\n");
    ::testing::internal::CaptureStdout();
    EXPECT_NO_THROW(Application("tr_format"));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              story.file("site/config/tr_format") +
                  ":1: registry entry should follow a section.\n");
    EXPECT_TRUE(Application::getRegistry()->keyExists("S", "K"));
}

TEST(Application, CopyingReadsNothing)
{
    Story story;
    const Application application("tr_format");
    Registry *registry = Application::getRegistry();
    registry->setModified(true);
    const Application copy(application);
    EXPECT_TRUE(registry->isModified());
    EXPECT_EQ(registry, Application::getRegistry());
}

// In a process of its own, which has used no settings so far: no story here, it would.
TEST(ApplicationDeathTest, SettingsUsedBeforeAnyApplicationAreEmptyAndReadNothing)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    namespace fs = boost::filesystem;
    const fs::path site = fs::temp_directory_path() / fs::unique_path("site-%%%%-%%%%");
    fs::create_directories(site / "config");
    for (const char *name : {"tr_format", ""}) {
        std::ofstream((site / "config" / name).string()) << "[Settings]\nK = 1\n";
    }
    const ScopedVariable variable("UGII_SITE_DIR", site.string());
    const auto in_child = [] {
        const Base::log::Recording recording{&QelFmt::info_log()};
        const bool empty = Application::getRegistry()->getKeys("Settings").empty();
        if (!empty || !recording.texts().empty()) std::exit(1);
        const Application application("tr_format"); // the file is found once there is a name
        std::exit(Application::getRegistry()->keyExists("Settings", "K") ? 0 : 2);
    };
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "");
    fs::remove_all(site);
}

TEST(GuardedSingleton, IsMadeOnceOnFirstUse)
{
    Cache &cache = QelFmt::GuardedSingleton<Cache>::get();
    EXPECT_EQ(cache.value, 3);
    EXPECT_EQ(&cache, &QelFmt::GuardedSingleton<Cache>::get());
}

TEST(GuardedSingletonDeathTest, AUseAfterItsEndRaisesDeadReferenceDetected)
{
    const auto in_child = [] {
        QelFmt::GuardedSingleton<Cache>::get();
        exit_probe.use = [] { QelFmt::GuardedSingleton<Cache>::get(); };
        std::exit(0);
    };
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "at exit: Dead Reference Detected\n");
}

TEST(GuardedSingletonDeathTest, AUseWhileItGoesRaisesDeadReferenceDetected)
{
    const auto in_child = [] {
        QelFmt::GuardedSingleton<UsedWhileItGoes>::get();
        std::exit(0);
    };
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "while going: Dead Reference Detected\n");
}

TEST(ApplicationDeathTest, SettingsUsedAfterTheEndRaiseDeadReferenceDetected)
{
    const auto in_child = [] {
        Application::getRegistry();
        exit_probe.use = [] { Application::getRegistry(); };
        std::exit(0);
    };
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "at exit: Dead Reference Detected\n");
}

TEST(ApplicationDeathTest, LoggersCanBeUsedUntilTheVeryEnd)
{
    const auto in_child = [] {
        QelFmt::info_log().setOn(true);
        Base::log::setSink({});
        exit_probe.use = [] {
            QELFMT_INFO << "last words";
            if (Base::log::records().back().text != "last words")
                throw std::runtime_error("nothing was logged");
            throw std::runtime_error("logged");
        };
        std::exit(0);
    };
    EXPECT_EXIT(in_child(), ::testing::ExitedWithCode(0), "at exit: logged\n");
}

TEST(QelObject, IsMadeByThePlatformUnderItsName)
{
    UgTypedObject *made = nxhost::createDerived("QelObject");
    auto *object = dynamic_cast<QelObject *>(made);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->getTag(), NULL_TAG);
    EXPECT_NE(dynamic_cast<UgPoint *>(made), nullptr);
    delete object;
    EXPECT_EQ(nxhost::createDerived("qelobject"), nullptr);
}

TEST(QelObject, AnswersItsClassManager)
{
    const OpenObject object;
    EXPECT_EQ(object.askClassManager().askClassName(), "QelObject");
    const auto fresh = [] {
        return std::unique_ptr<QelObject>(
            dynamic_cast<QelObject *>(QelObject::createDerivedInstance()));
    };
    const auto one = fresh(), another = fresh();
    ASSERT_TRUE(one && another);
    EXPECT_NE(one, another);
    static_assert(std::is_base_of_v<UgAttributableObject, QelObject>);
    static_assert(std::is_base_of_v<UgExtensionObject, QelObject>);
    static_assert(std::is_base_of_v<UgInPartObject, QelObject>);
    static_assert(std::is_convertible_v<QelObject *, UgTypedObject *>);
}
