#include "host/documents/OptionTable.h"

#include <CLI/CLI.hpp>
#include <sstream>

namespace ravelin {
namespace {

std::string OneLine(std::string text) {
  for (char& c : text) c = c == '\n' ? ' ' : c;
  return text;
}

/// The name of the option's first validator, which is where the table keeps the kind.
ValueKind KindOf(CLI::Option& option) {
  try {
    return ParseValueKind(option.get_validator(0)->get_name());
  } catch (const CLI::OptionNotFound&) {
    return {};
  }
}

DocumentedOption Document(CLI::Option& option) {
  DocumentedOption documented;
  for (const std::string& name : option.get_snames()) documented.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) documented.names.push_back("--" + name);
  if (option.get_positional()) {
    documented.value = option.get_name(true);
  } else if (option.get_items_expected_max() > 0) {
    documented.value = option.get_type_name();
  }
  documented.description = OneLine(option.get_description());
  documented.defaultValue = option.get_default_str();
  documented.kind = KindOf(option);
  documented.required = option.get_required();
  documented.many = option.get_items_expected_max() > 1;
  return documented;
}

/// A footer is paragraphs between empty lines; the last begins with "Example:", with a command a
/// line below it.
void ReadFooter(const std::string& footer, DocumentedCommand& command) {
  std::istringstream lines(footer);
  std::string paragraph;
  bool examples = false;
  const auto endParagraph = [&] {
    if (!paragraph.empty()) command.remarks.push_back(paragraph);
    paragraph.clear();
  };
  for (std::string line; std::getline(lines, line);) {
    if (line == "Example:") {
      examples = true;
    } else if (examples) {
      command.examples.push_back(line.substr(line.find_first_not_of(' ')));
    } else if (line.empty()) {
      endParagraph();
    } else {
      paragraph += (paragraph.empty() ? "" : " ") + line;
    }
  }
  endParagraph();
}

DocumentedCommand Document(CLI::App& app, const std::string& path) {
  DocumentedCommand command;
  command.path = path;
  command.description = OneLine(app.get_description());
  ReadFooter(app.get_footer(), command);
  for (CLI::Option* option : app.get_options([](CLI::Option*) { return true; })) {
    (option->get_positional() ? command.values : command.options).push_back(Document(*option));
  }
  for (CLI::App* below : app.get_subcommands([](CLI::App*) { return true; })) {
    command.commands.push_back(Document(*below, path + " " + below->get_name()));
  }
  return command;
}

}  // namespace

DocumentedCommand ReadOptionTable(CLI::App& app) {
  return Document(app, app.get_name());
}

std::string NameOf(const DocumentedCommand& command) {
  return command.path.substr(command.path.rfind(' ') + 1);
}

std::vector<const DocumentedCommand*> AllCommands(const DocumentedCommand& command) {
  std::vector<const DocumentedCommand*> all = {&command};
  for (const DocumentedCommand& below : command.commands) {
    for (const DocumentedCommand* one : AllCommands(below)) all.push_back(one);
  }
  return all;
}

}  // namespace ravelin
