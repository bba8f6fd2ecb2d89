#include "foundation/exception_report.h"

#include "foundation/log.h"

#include "ug_exception.hxx"

namespace QelFmt {

std::string currentExceptionText()
{
    try {
        throw;
    } catch (const UgException &failure) {
        return failure.askErrorText();
    } catch (const std::exception &failure) {
        return failure.what();
    }
}

std::string textOf(const std::exception_ptr &exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (...) { // any kind it does not know passes through
        return currentExceptionText();
    }
}

void reportCurrentException()
{
    const std::string text = currentExceptionText();
    QELFMT_INFO << text;
}

} // namespace QelFmt
