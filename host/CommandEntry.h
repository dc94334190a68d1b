// The entries of the table of options: commands, their options and what runs them. CLI11 keeps the
// table and reads command lines with it; its header takes long to compile, so that the subcommands
// write the table through these classes and do not include it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/ValueKind.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace ravelin {

/// An option, a flag or a value without a name. Entries are handles: copies mean the same entry,
/// and they hold as long as the table.
class OptionEntry {
 public:
  explicit OptionEntry(CLI::Option& option) : option_(&option) {}

  /// What the help calls the value.
  OptionEntry& TypeName(const std::string& name);
  /// What the value may be. Words of a choice are checked; the help does not show the kind.
  OptionEntry& Kind(const ValueKind& kind);
  OptionEntry& Required();
  /// Shows in the help what the variable holds now.
  OptionEntry& ShowDefault();

  /// Whether the command line has it, once that has been read.
  bool IsGiven() const;

 private:
  friend class CommandEntry;
  CLI::Option* option_;
};

/// The program or one of its subcommands; a handle, too. Names of options are as "-o,--output"; a
/// word without a dash is a value without a name. Variables must outlive the table.
///
///     CommandEntry command = program.AddCommand("info", "Say what an image is");
///     command.AddOption("FILE", arguments->file, "Any file").Kind(FileValue()).Required();
///     command.OnRun([arguments] { Inform(*arguments); });
class CommandEntry {
 public:
  explicit CommandEntry(CLI::App& app) : app_(&app) {}

  CommandEntry AddCommand(const std::string& name, const std::string& description);
  OptionEntry AddOption(const std::string& names, std::string& value,
                        const std::string& description);
  /// Takes several values one behind the other.
  OptionEntry AddOption(const std::string& names, std::vector<std::string>& values,
                        const std::string& description);
  OptionEntry AddFlag(const std::string& names, bool& isGiven, const std::string& description);

  /// Wants one of its subcommands.
  void RequireCommand();
  /// Refuses to stand with an option of the command above.
  void Exclude(const OptionEntry& option);
  /// What the help ends with: paragraphs, the last of them examples.
  void Footer(const std::string& text);
  /// What the command does; it may throw HostError and UsageError.
  void OnRun(const std::function<void()>& work);

  /// Whether the command line has it, once that has been read.
  bool IsGiven() const;

 private:
  CLI::App* app_;
};

/// The table of a program with nothing but --help and --version, which prints the name and
/// `version`.
std::shared_ptr<CLI::App> MakeTable(const std::string& name, const std::string& description,
                                    const std::string& version);

}  // namespace ravelin
