// The frame of every C++ member: counts the call by its name, applies injected faults and raises
// what fails as UgException.
#pragma once

#include "model/calls.h"
#include "model/session.h"

#include "uf.h"
#include "ug_exception.hxx"
#include "ug_object.hxx"
#include "ug_part.hxx"

namespace host {

template <class F> auto member(const char *name, F &&body) -> decltype(body())
{
    UgException::throwOnFailure(enterCall(name));
    try {
        return body();
    } catch (const Failure &failure) {
        throw UgException(failure.code);
    }
}

inline Object &objectOf(const UgObject &wrapper)
{
    return Session::get().require(wrapper.getTag());
}

// Of a wrapper whose class was chosen by the body's kind; applications derive from those classes,
// so the kind is looked at again.
template <class T> T &bodyOf(const UgObject &wrapper)
{
    return Session::get().requireBody<T>(wrapper.getTag(), UF_err_wrong_class);
}

// Where a create member puts its object.
inline Part &partOrWorkPart(const UgPart *owner)
{
    Session &session = Session::get();
    return owner ? session.requirePart(owner->getTag()) : session.workPart();
}

} // namespace host
