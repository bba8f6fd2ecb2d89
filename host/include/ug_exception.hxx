// The exception that every failing platform call is raised as.
#ifndef UG_EXCEPTION_HXX_INCLUDED
#define UG_EXCEPTION_HXX_INCLUDED

#include "uf_defs.h"

#include <string>

// Not derived from the standard exceptions: callers catch the two kinds apart.
class DllExport UgException {
public:
    UgException(int error_code);
    UgException(const UgException &);
    UgException &operator=(const UgException &);
    virtual ~UgException();

    int askErrorCode() const { return m_code; }
    std::string askErrorText() const { return m_text; }
    void processError() const; // writes the text to the information window

    // Returns on 0, throws on any other code.
    static void throwOnFailure(int status);

private:
    int m_code;
    std::string m_text; // fixed at construction
};

#endif
