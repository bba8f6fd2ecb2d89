#include "ug_exception.hxx"

#include "model/calls.h"

#include "ug_info_window.hxx"

namespace {

// Callers hold the text in a buffer of 133 bytes.
constexpr std::size_t kLongestText = 132;

std::string textOf(int code)
{
    const std::string_view known = host::messageOf(code);
    std::string text =
        known.empty() ? "Platform error " + std::to_string(code) : std::string(known);
    if (text.size() > kLongestText) text.resize(kLongestText);
    return text;
}

} // namespace

UgException::UgException(int error_code) : m_code(error_code), m_text(textOf(error_code)) {}
UgException::UgException(const UgException &) = default;
UgException &UgException::operator=(const UgException &) = default;
UgException::~UgException() = default;

void UgException::processError() const
{
    UgInfoWindow::open();
    UgInfoWindow::write(m_text + "\n");
}

void UgException::throwOnFailure(int status)
{
    if (status != 0) throw UgException(status);
}
