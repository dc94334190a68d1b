// What the value of an option may be, said in the table of options.
#pragma once

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

ValueKind FileValue();
ValueKind FolderValue();
ValueKind ChoiceValue(const std::vector<std::string>& words);
ValueKind KeyedFileValue(const std::vector<std::string>& keys,
                         const std::vector<std::string>& endings);

/// What is wrong with a text as a value of the kind; empty when nothing is. Only the words of a
/// choice are looked at: whether a file is there shows when it is opened.
std::string RefusalOf(const std::string& text, const ValueKind& kind);

/// The kind as one text, and back; what is no such text is the kind `kText`. Words hold no spaces.
std::string ToText(const ValueKind& kind);
ValueKind ParseValueKind(const std::string& text);

}  // namespace ravelin
