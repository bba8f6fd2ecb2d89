// An object that a process has once: made on first use, destroyed at exit.
#pragma once

#include <stdexcept>

namespace QelFmt {

// A use after the destruction (by another static object's destructor) is an error that can be
// caught, not a read of freed memory. To be reached through one function in one source file.
template <class T> class GuardedSingleton {
public:
    static T &get()
    {
        if (s_destroyed) throw std::runtime_error("Dead Reference Detected");
        static Holder holder;
        return holder.object;
    }

private:
    struct Holder {
        ~Holder() { s_destroyed = true; } // before `object` goes
        T object{};
    };

    static inline bool s_destroyed = false; // never destroyed itself
};

} // namespace QelFmt
