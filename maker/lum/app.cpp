#include "lum/app.h"

namespace Lum {

namespace {

App *the_app = nullptr;

} // namespace

App::App(const std::string &name) : m_name(name) { the_app = this; }

App::App(const App &other) : m_name(other.m_name) {}

App &App::operator=(const App &other)
{
    m_name = other.m_name;
    return *this;
}

App::~App()
{
    if (the_app == this) the_app = nullptr;
}

App *App::app() { return the_app; }

} // namespace Lum
