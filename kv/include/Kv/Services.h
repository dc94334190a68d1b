/// @file
/// The framework's shared services and the debug sink.
#pragma once

#include <functional>
#include <string>

#include "Kv/Export.h"

/// Brings the services up: files opened for reading are served from guarded mappings from now on,
/// and the guard's SIGBUS handler is installed. The handler acts only on addresses of a read in
/// progress on its own thread and passes everything else on to the handler that it found; a host
/// that installs one of its own afterwards passes on what it does not know, too. A thread that
/// blocks SIGBUS is served without mappings; whether it does is looked up at its first read and
/// when a file is first read, so a thread must not block it in between. Calls are not counted; a
/// second one does nothing.
KV_EXPORT void Init_KvServices();

/// Takes the services down and puts back the SIGBUS handler that was there before, unless somebody
/// else has installed one since; then the one here stays below it and passes everything on. No read
/// may be in progress on another thread.
KV_EXPORT void Deinit_KvServices();

/// Whether the services are up.
KV_EXPORT bool KvServicesReady();

/// What gets the lines of debug output, without their line ends.
using TKvDebugSink = std::function<void(const std::string&)>;

/// Prints one line to the debug sink, by default to standard error with a line end. Safe from
/// several threads; the sink is called by one at a time, so lines do not mix. A line that the sink
/// itself prints goes to standard error, and what the sink throws is dropped. A sink must not wait
/// for another thread that prints.
KV_EXPORT void KvPrintDbgMsg(const std::string& line);

/// Installs a sink and returns the former one (empty when it was the default); an empty one
/// restores the default. Waits for a call of the former sink on another thread to end, so that what
/// that one refers to can go afterwards. A sink may replace itself.
KV_EXPORT TKvDebugSink KvSetDebugSink(TKvDebugSink sink);
