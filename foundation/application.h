// The application object: names the library to the framework and reads its settings.
#pragma once

#include "lumug/application.h"
#include "udo/export.h"

#include <string>

namespace QelFmt {

class Registry;

class QELFMT_API Application : public LumUg::Application {
public:
    // Points the registry at the name, which reads every settings file of that name anew.
    explicit Application(const std::string &name);
    Application(const Application &) = default;
    Application &operator=(const Application &) = default;
    ~Application() override;

    // The settings of the process: made empty on first use, gone at its exit. A use after that
    // raises "Dead Reference Detected".
    static Registry *getRegistry();
};

} // namespace QelFmt
