// Control of the embedded host for tests and embedders. The library never includes it.
#pragma once

#include "../uf_defs.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

class UgTypedObject;

namespace nxhost {

// Closes all parts without saving, forgets captured text, faults, counters and preferences. The
// registered classes, their callbacks and the open session stay: they belong to the process.
DllExport void reset();

// --- what was written ---------------------------------------------------------------------
DllExport std::string takeInfoWindow(); // and clears it
DllExport bool infoWindowOpened();
DllExport std::string takeSyslog(); // and clears it
// Why the last part could not be opened, made or saved: names the file, what is wrong and what to
// do. Empty after a success.
DllExport std::string lastPartMessage();

// --- faults and calls ---------------------------------------------------------------------
// The nth call from now of the named function ("UF_DRF_create_note", "UgLine::create") does
// nothing and fails with the code: as a result, or as UgException from a C++ member.
DllExport void failCall(const std::string &function, int code, unsigned nth = 1);
// The nth call from now runs `action` (which may throw) before it does anything.
DllExport void onCall(const std::string &function, std::function<void()> action, unsigned nth = 1);
DllExport void clearFaults();
DllExport bool faultsPending();

// Calls are counted at all times and recorded by name when asked to.
DllExport std::size_t callCount(const std::string &function);
DllExport std::size_t totalCalls();
DllExport void clearCallCounts();
DllExport void recordCalls(bool on); // off also forgets the record
DllExport const std::vector<std::string> &recordedCalls();
// Changes of any stored state: objects made, deleted, edited, linked. "Nothing happened" is a
// claim about this record: one line a change, readable.
DllExport void recordChanges(bool on);
DllExport const std::vector<std::string> &recordedChanges();

// --- memory handed out ----------------------------------------------------------------------
DllExport std::size_t outstandingAllocations(); // single blocks and strings not yet freed
DllExport std::size_t outstandingDataBlocks();  // UF_UDOBJ_ask_udo_data without its free
DllExport std::size_t badFrees();               // double frees and frees of foreign memory

// --- switches --------------------------------------------------------------------------------
// Drawing information may be written to a sheet that is not current (default) or not.
DllExport void setStrictDrawingInfo(bool strict);
// Unknown fonts are refused or accepted (default).
DllExport void setRejectUnknownFonts(bool reject);
// Attribute titles over 50 and values over 132 characters are refused or accepted (default).
DllExport void setStrictLimits(bool strict);
// Off: UF_initialize fails with UF_err_program_not_initialized.
DllExport void setInterfaceAvailable(bool available);
// Seconds; replaces the clock of the timers. An empty function restores the real one.
DllExport void setClock(std::function<double()> elapsed_seconds);

// --- looking in ------------------------------------------------------------------------------
// A sheet or a part as text, one object a line, in order of creation: kind, layer, view, place,
// text, display, attributes, links and owned objects by their place in the listing. Two parts with
// the same content list the same; tags do not appear.
DllExport std::string listSheet(tag_t sheet);
DllExport std::string listPart(tag_t part);
// Lines of `after` that `before` lacks with "+ ", the reverse with "- "; empty when equal.
DllExport std::string difference(const std::string &before, const std::string &after);
DllExport std::size_t countObjects(tag_t part); // alive, without part, font table and views
DllExport int ownedObjectSelection(const std::string &class_name); // 1 until it was set; 0 unknown
DllExport bool usesCustomerSymbolFile();
DllExport std::size_t zeroLengthRefusals(); // lines refused since the last reset

// --- driving ---------------------------------------------------------------------------------
DllExport void runInfoCallback(tag_t udo);
DllExport void touch(tag_t object);    // marks links to it out of date
DllExport void updatePart(tag_t part); // runs the update callbacks of out-of-date links
DllExport UgTypedObject *createDerived(const std::string &class_name); // null when unknown

} // namespace nxhost
