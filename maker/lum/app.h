// The named base of every application of the family.
#pragma once

#include "uf_defs.h"

#include <string>

namespace Lum {

// The framework reaches the newest application through one static pointer. Nothing guards against
// several lasting ones: the pointer follows the newest, and an older one is then out of reach.
class DllExport App {
public:
    explicit App(const std::string &name); // app() is this object from now on
    App(const App &other);                 // the name; app() stays
    App &operator=(const App &other);
    virtual ~App(); // app() is null afterwards if it was this object

    const std::string &name() const { return m_name; }
    static App *app(); // null when there is none

private:
    std::string m_name;
};

} // namespace Lum
