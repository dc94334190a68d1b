// The framework's shared services and the debug sink.
#pragma once

#include <functional>
#include <string>

#include "Kv/Export.h"

/// Brings the services up: files opened for reading are served from guarded mappings from now on,
/// and the guard's SIGBUS handler is installed. Calls are not counted; a second one does nothing.
KV_EXPORT void Init_KvServices();

/// Takes the services down and puts back the SIGBUS handler that was there before, unless somebody
/// else has installed one since. No read may be in progress on another thread.
KV_EXPORT void Deinit_KvServices();

/// Whether the services are up.
KV_EXPORT bool KvServicesReady();

using TKvDebugSink = std::function<void(const std::string&)>;

/// Prints one line to the debug sink, by default to standard error with a line end. Safe from
/// several threads; lines do not mix.
KV_EXPORT void KvPrintDbgMsg(const std::string& line);

/// Installs a sink and returns the former one (empty when it was the default); an empty one
/// restores the default.
KV_EXPORT TKvDebugSink KvSetDebugSink(TKvDebugSink sink);
