#include "host/Application.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "SatCommonUtils/Module.h"
#include "host/CommandLine.h"
#include "host/HostError.h"
#include "host/Interrupt.h"
#include "host/UsageError.h"
#include "host/io/TextOutput.h"

namespace ravelin {
namespace {

class ModuleScope {
 public:
  ModuleScope() { Init_Ravelin(); }
  ModuleScope(const ModuleScope&) = delete;
  ModuleScope& operator=(const ModuleScope&) = delete;
  ~ModuleScope() { Deinit_Ravelin(); }
};

int Report(const std::string& message, ExitCode code) {
  std::cerr << "ravelin: " << Printable(message) << '\n';
  return code;
}

/// The subcommand that was asked for; the program itself when none was.
const CLI::App& AskedFor(const CLI::App& app) {
  const CLI::App* command = &app;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
  return *command;
}

int ReportWrongUse(const CLI::App& app, const std::string& message) {
  std::string path;
  for (const CLI::App* command = &AskedFor(app); command != &app; command = command->get_parent()) {
    path.insert(0, command->get_name() + " ");
  }
  return Report(message + "; see ravelin " + path + "--help", kExitWrongUse);
}

/// CLI11 puts the text together in streams, which leave out what they have no memory for.
std::string HelpText(const CLI::App& app) {
  std::string text = app.help();
  if (app.help() != text) throw std::bad_alloc();
  return text;
}

int ReportParse(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    const bool isHelp = error.get_name() == "CallForHelp";
    PrintText(isHelp ? HelpText(app) : error.what() + std::string("\n"));
    return kExitDone;
  }
  const CLI::App& command = AskedFor(app);
  const std::vector<std::string> unknown = command.remaining();
  if (command.get_require_subcommand_min() > 0 && !unknown.empty()) {
    return ReportWrongUse(app, "'" + unknown.front() + "' is not known");
  }
  return ReportWrongUse(app, error.what());
}

constexpr const char* kMemoryRemedy = "close other programs or raise the limit on memory";

/// What to do when memory is short, by the subcommand that was asked for.
const char* MemoryRemedy(const CLI::App& app) {
  // Asking for an option by its name needs memory, and ends the program without.
  for (const CLI::Option* option : AskedFor(app).get_options()) {
    const std::vector<std::string>& names = option->get_lnames();
    if (!names.empty() && names.front() == "rect") return "ask for a smaller --rect";
  }
  return kMemoryRemedy;
}

/// A report that needs no memory itself.
int ReportNoMemory(const char* remedy) {
  std::cerr << "ravelin: memory: there is not enough; " << remedy << '\n';
  return kExitFailed;
}

/// Where memory fails inside a function that must not throw, the program ends: the library of JSON
/// has such functions. That end is a failure like others.
[[noreturn]] void EndForWantOfMemory() {
  try {
    if (const std::exception_ptr failure = std::current_exception()) {
      std::rethrow_exception(failure);
    }
  } catch (const std::bad_alloc&) {
    RemoveTemporaryFiles();
    _exit(ReportNoMemory(kMemoryRemedy));
  } catch (...) {
  }
  std::abort();
}

/// Lets std::bad_alloc out, also that of a report.
int RunAndReport(int argc, const char* const* argv) {
  try {
    const std::shared_ptr<CLI::App> app = DescribeCommandLine();
    InstallInterruptHandlers();
    std::set_terminate(EndForWantOfMemory);
    try {
      const ModuleScope module;
      app->parse(argc, argv);
      return kExitDone;
    } catch (const CLI::ParseError& error) {
      return ReportParse(*app, error);
    } catch (const UsageError& error) {
      return ReportWrongUse(*app, error.what());
    } catch (const std::bad_alloc&) {
      return ReportNoMemory(MemoryRemedy(*app));
    } catch (const std::system_error& error) {
      if (error.code() != std::errc::not_enough_memory) throw;
      return ReportNoMemory(MemoryRemedy(*app));
    }
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return Report(error.what(), kExitFailed);
  }
}

}  // namespace

int RunApplication(int argc, const char* const* argv) {
  try {
    return RunAndReport(argc, argv);
  } catch (const std::bad_alloc&) {
    return ReportNoMemory(kMemoryRemedy);
  }
}

}  // namespace ravelin
