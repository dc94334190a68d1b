#include "host/CommandEntry.h"

#include <CLI/CLI.hpp>

namespace ravelin {

OptionEntry& OptionEntry::TypeName(const std::string& name) {
  option_->type_name(name);
  return *this;
}

OptionEntry& OptionEntry::Kind(const ValueKind& kind) {
  const auto check = [kind](const std::string& text) { return RefusalOf(text, kind); };
  // The name has room for the kind, which the table is asked for later.
  option_->check(CLI::Validator(check, "", ToText(kind)));
  return *this;
}

OptionEntry& OptionEntry::Required() {
  option_->required();
  return *this;
}

OptionEntry& OptionEntry::ShowDefault() {
  option_->capture_default_str();
  return *this;
}

bool OptionEntry::IsGiven() const {
  return !option_->empty();
}

CommandEntry CommandEntry::AddCommand(const std::string& name, const std::string& description) {
  return CommandEntry(*app_->add_subcommand(name, description));
}

OptionEntry CommandEntry::AddOption(const std::string& names, std::string& value,
                                    const std::string& description) {
  return OptionEntry(*app_->add_option(names, value, description));
}

OptionEntry CommandEntry::AddOption(const std::string& names, std::vector<std::string>& values,
                                    const std::string& description) {
  return OptionEntry(*app_->add_option(names, values, description));
}

OptionEntry CommandEntry::AddFlag(const std::string& names, bool& isGiven,
                                  const std::string& description) {
  return OptionEntry(*app_->add_flag(names, isGiven, description));
}

void CommandEntry::RequireCommand() {
  app_->require_subcommand(1);
}

void CommandEntry::Exclude(const OptionEntry& option) {
  app_->excludes(option.option_);
}

void CommandEntry::Footer(const std::string& text) {
  app_->footer(text);
}

void CommandEntry::OnRun(const std::function<void()>& work) {
  app_->callback(work);
}

bool CommandEntry::IsGiven() const {
  return app_->parsed();
}

std::shared_ptr<CLI::App> MakeTable(const std::string& name, const std::string& description,
                                    const std::string& version) {
  auto app = std::make_shared<CLI::App>(description, name);
  app->set_version_flag("--version", name + " " + version, "Print the version and exit");
  app->set_help_flag("-h,--help", "Print this help and exit");
  app->get_formatter()->column_width(26);
  return app;
}

}  // namespace ravelin
