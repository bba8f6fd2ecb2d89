// What to tell about a failure that is caught.
#pragma once

#include <exception>
#include <string>

namespace QelFmt {

// To be called in a handler. The text of the exception in hand: askErrorText() of a UgException,
// what() of a standard exception. Any other kind is thrown on.
std::string currentExceptionText();
// The same for an exception that was kept.
std::string textOf(const std::exception_ptr &exception);

// To be called in a handler: writes that text to the info log. Other kinds are thrown on.
void reportCurrentException();

} // namespace QelFmt
