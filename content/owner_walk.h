// The way up from a field or a row to what holds it.
#pragma once

#include "udo/udo.h"

#include <boost/shared_ptr.hpp>

class TrBlockBase;

namespace QelFmt {

// The record that links to an object first: a child hangs on its parent's link before anything else
// links to it. NULL_TAG when there is none.
tag_t firstLinking(tag_t object);

// Takes a record off every parent that holds it as a child; it lives on.
void detachFromParents(const LumUg::UDO &child);

// The block that a record stands in, however deep; empty when it stands in none.
boost::shared_ptr<TrBlockBase> blockAbove(const LumUg::UDO &udo);

// The record right above, when it is of this kind.
template <class Owner> boost::shared_ptr<Owner> ownerOf(const LumUg::UDO &udo)
{
    if (udo.IsNull()) return {};
    return boost::dynamic_pointer_cast<Owner>(LumUg::UDO::Create(firstLinking(udo.tag())));
}

} // namespace QelFmt
