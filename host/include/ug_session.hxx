#ifndef UG_SESSION_HXX_INCLUDED
#define UG_SESSION_HXX_INCLUDED

#include "uf_defs.h"

class UgPart;

// Initialisations are counted: a temporary session never closes one that was open before.
class DllExport UgSession {
public:
    explicit UgSession(bool init = false);
    ~UgSession();
    UgSession(const UgSession &) = delete;
    UgSession &operator=(const UgSession &) = delete;

    static void initialize();
    static void terminate();
    static bool isInitialized();
    static UgPart *getWorkPart();                      // none: UgException
    static void setLayerStatus(int layer, int status); // the work layer keeps its status

private:
    bool m_initialized_here = false;
};

#endif
