#include "nxhost/start.h"

#include "tests/host/drawing_host.h"

#include "ug_session.hxx"

#include <dlfcn.h>

#include <cstdlib>
#include <fstream>

namespace {

// Libraries are built here: what start() looks for is what the loader knows.
class Start : public DrawingHost {
protected:
    void *load(const std::string &name, const std::string &source, const std::string &flags = "")
    {
        const auto file = folder() / (name + ".c");
        std::ofstream(file) << source;
        const auto library = folder() / ("lib" + name + ".so");
        const std::string command =
            "cc -shared -fPIC -o " + library.string() + " " + file.string() + " " + flags;
        EXPECT_EQ(std::system(command.c_str()), 0);
        void *handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
        EXPECT_NE(handle, nullptr) << dlerror();
        return handle;
    }

    static int calls(void *library)
    {
        auto *counter = static_cast<int *>(dlsym(library, "calls"));
        return counter ? *counter : -1;
    }
};

TEST_F(Start, CallsTheStartFunctionOfEveryLoadedLibraryOnce)
{
    void *first = load("start_first", "int calls; void ufsta(void) { ++calls; }");
    void *without = load("start_without", "int calls;");
    nxhost::start();
    EXPECT_EQ(calls(first), 1);
    EXPECT_EQ(calls(without), 0);
    void *second = load("start_second", "int calls; void ufsta(void) { ++calls; }");
    nxhost::start();
    EXPECT_EQ(calls(first), 1);
    EXPECT_EQ(calls(second), 1);
    UgSession::terminate();
    UgSession::terminate();
    EXPECT_TRUE(UgSession::isInitialized());
}

TEST_F(Start, ALibraryIsNotCalledForWhatItsDependencyExports)
{
    void *base = load("start_base", "int calls; void ufsta(void) { ++calls; }");
    load("start_user", "extern int calls; int *seen(void) { return &calls; }",
         "-L" + folder().string() + " -lstart_base -Wl,-rpath," + folder().string());
    nxhost::start();
    EXPECT_EQ(calls(base), 1);
    UgSession::terminate();
}

TEST_F(Start, WithoutTheInterfaceNothingIsCalled)
{
    void *library = load("start_refused", "int calls; void ufsta(void) { ++calls; }");
    nxhost::setInterfaceAvailable(false);
    EXPECT_THROW(nxhost::start(), UgException);
    EXPECT_EQ(calls(library), 0);
    nxhost::setInterfaceAvailable(true);
}

} // namespace
