// The base of applications that run inside the platform.
#pragma once

#include "lum/app.h"

namespace LumUg {

// Neither opens nor closes a session: that is left to the entry points.
class DllExport Application : public Lum::App {
public:
    explicit Application(const std::string &name);
    Application(const Application &) = default;
    Application &operator=(const Application &) = default;
    ~Application() override;
};

} // namespace LumUg
