// The table of options as the documents that are made of it need it.
#pragma once

#include <string>
#include <vector>

#include "host/ValueKind.h"

namespace CLI {
class App;
}  // namespace CLI

namespace ravelin {

/// An option, a flag or a value without a name. Texts are one line.
struct DocumentedOption {
  std::vector<std::string> names;  ///< "-o", "--output"; empty for a value without a name
  std::string value;               ///< what its value is called; empty for a flag
  std::string description;
  std::string defaultValue;  ///< empty when it has none
  ValueKind kind;
  bool required = false;
  bool many = false;  ///< takes several values one behind the other

  bool IsFlag() const { return value.empty(); }
};

struct DocumentedCommand {
  std::string path;  ///< "ravelin tree show"
  std::string description;
  std::vector<std::string> remarks;   ///< paragraphs, a line each
  std::vector<std::string> examples;  ///< lines to type
  std::vector<DocumentedOption> options;
  std::vector<DocumentedOption> values;  ///< in their order, without a name
  std::vector<DocumentedCommand> commands;
};

/// Reads the table of a program and all its subcommands, in the order of the table.
DocumentedCommand ReadOptionTable(CLI::App& app);

/// The last word of the path.
std::string NameOf(const DocumentedCommand& command);

/// The command and all below it, each before those below it.
std::vector<const DocumentedCommand*> AllCommands(const DocumentedCommand& command);

}  // namespace ravelin
