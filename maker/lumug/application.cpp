#include "lumug/application.h"

namespace LumUg {

Application::Application(const std::string &name) : Lum::App(name) {}

Application::~Application() = default;

} // namespace LumUg
