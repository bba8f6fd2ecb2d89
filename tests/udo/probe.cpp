#include "probe.h"

LumUg::UDOClass Probe::mUDOClass(Probe::kClassName, "Probe", Probe::CreateInstance);
LumUg::UDOClass OtherProbe::mUDOClass("TEST_OTHER_PROBE_V1", "Probe", OtherProbe::CreateInstance);
