#include "ug_session.hxx"

#include "opencpp/member.h"
#include "opencpp/wrapper_table.h"

#include "uf_layer.h"
#include "ug_info_window.hxx"

UgSession::UgSession(bool init)
{
    if (!init) return;
    initialize();
    m_initialized_here = true;
}

UgSession::~UgSession()
{
    if (m_initialized_here) UF_terminate(); // a destructor cannot report
}

void UgSession::initialize()
{
    UgException::throwOnFailure(host::enterAnytime("UgSession::initialize"));
    UgException::throwOnFailure(UF_initialize());
}

void UgSession::terminate()
{
    UgException::throwOnFailure(host::enterAnytime("UgSession::terminate"));
    UgException::throwOnFailure(UF_terminate());
}

bool UgSession::isInitialized() { return host::Session::get().initializeCount > 0; }

UgPart *UgSession::getWorkPart()
{
    return host::member("UgSession::getWorkPart", [] {
        const host::Part &part = host::Session::get().workPart();
        return dynamic_cast<UgPart *>(UgWrapperTable::get().find(part.tag));
    });
}

void UgSession::setLayerStatus(int layer, int status)
{
    host::member("UgSession::setLayerStatus", [&] {
        const int code = UF_LAYER_set_status(layer, status);
        host::require(code == 0, code);
    });
}

void UgInfoWindow::open()
{
    host::member("UgInfoWindow::open", [] { host::Session::get().infoWindowOpen = true; });
}

void UgInfoWindow::write(const std::string &text)
{
    host::member("UgInfoWindow::write", [&] { host::Session::get().infoWindow += text; });
}
