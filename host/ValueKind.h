// What the value of an option may be, said in the table of options.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace ravelin {

/// The kind of a value, for those who help to type it.
struct ValueKind {
  enum Type {
    kText,       ///< anything
    kFile,       ///< a file
    kFolder,     ///< a folder
    kChoice,     ///< one of `words`
    kKeyedFile,  ///< KEY=FILE[:ENDING]; `words` are keys followed by '=', and endings after ':'
  };
  Type type = kText;
  std::vector<std::string> words;
};

/// Say the kind of an option's value; they check nothing and do not show in the help.
///
///     command.add_option("INDEX", index, "Text file that lists the tiles")->check(FileValue());
CLI::Validator FileValue();
CLI::Validator FolderValue();
CLI::Validator KeyedFileValue(const std::vector<std::string>& keys,
                              const std::vector<std::string>& endings);

/// Says that the value is one of several words, and refuses all others.
CLI::Validator ChoiceValue(const std::vector<std::string>& words);

/// What was said of an option; text when nothing was.
ValueKind KindOf(CLI::Option& option);

}  // namespace ravelin
