#ifndef NXOPEN_NXEXCEPTION_HXX_INCLUDED
#define NXOPEN_NXEXCEPTION_HXX_INCLUDED

#include "../uf_defs.h"

#include <exception>
#include <string>

namespace NXOpen {

class DllExport NXException : public std::exception {
public:
    static NXException Create(int error_code);
    ~NXException() override;
    int ErrorCode() const { return m_code; }
    const char *Message() const { return m_message.c_str(); }
    const char *what() const noexcept override { return Message(); }

private:
    explicit NXException(int error_code);
    int m_code;
    std::string m_message;
};

} // namespace NXOpen

#endif
