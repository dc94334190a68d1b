#include "host/documents/ZshCompletion.h"

#include "host/documents/ShellText.h"

namespace ravelin {
namespace {

constexpr const char* kHead = R"(#compdef ravelin
# Completion of ravelin for zsh, made of the option table of the command.

# _ravelin_keyed KEYS ENDINGS: KEY=FILE[:ENDING].
_ravelin_keyed() {
  if [[ $PREFIX != *=* ]]; then
    compadd -S '' -- ${(s: :)1}
  elif [[ $PREFIX == *:* ]]; then
    compset -P '*:'
    compadd -- ${(s: :)2}
  else
    compset -P '*='
    _files
  fi
}

# _ravelin_more OPTION COMMAND...: runs the command where another value of the option comes.
_ravelin_more() {
  local last word
  for word in $words[2,CURRENT-1]; do
    [[ $word == -* ]] && last=${word%%=*}
  done
  [[ $last == $1 ]] && "${@[2,-1]}"
}
)";

std::string Escaped(const std::string& text, const std::string& special) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\' || special.find(c) != std::string::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

std::string FunctionName(const DocumentedCommand& command) {
  std::string name = "_" + command.path;
  for (char& c : name) c = c == ' ' || c == '-' ? '_' : c;
  return name;
}

std::string Action(const ValueKind& kind) {
  switch (kind.type) {
    case ValueKind::kText:
      return " ";
    case ValueKind::kFile:
      return "_files";
    case ValueKind::kFolder:
      return "_files -/";
    case ValueKind::kChoice:
      return "(" + Joined(kind.words, " ") + ")";
    case ValueKind::kKeyedFile:
      // With a blank in front _arguments adds no words of its own.
      return " _ravelin_keyed " + ShellQuoted(Joined(Keys(kind), " ")) + " " +
             ShellQuoted(Joined(Endings(kind), " "));
  }
  return "";
}

std::string Message(const DocumentedOption& option) {
  return Escaped(option.value, ":") + ":" + Action(option.kind);
}

/// The arguments of _arguments for an option: each of its names shuts out the others.
std::vector<std::string> OptionWords(const DocumentedOption& option) {
  std::vector<std::string> words;
  for (const std::string& name : option.names) {
    std::string word = option.many ? "*" : "(" + Joined(option.names, " ") + ")";
    word += name;
    if (!option.IsFlag() && name.starts_with("--")) word += "=";
    word += "[" + Escaped(option.description, "[]") + "]";
    if (!option.IsFlag()) word += ":" + Message(option);
    words.push_back(word);
  }
  return words;
}

/// Of several values of an option, all but the first look like values without a name.
std::vector<std::string> MoreValues(const DocumentedCommand& command) {
  if (!command.values.empty()) return {};
  for (const DocumentedOption& option : command.options) {
    if (!option.many || option.kind.type == ValueKind::kText) continue;
    return {"*:" + Escaped(option.value, ":") + ": _ravelin_more " + option.names.back() + " " +
            Action(option.kind)};
  }
  return {};
}

std::vector<std::string> ArgumentWords(const DocumentedCommand& command) {
  std::vector<std::string> words;
  for (const DocumentedOption& option : command.options) {
    for (const std::string& word : OptionWords(option)) words.push_back(word);
  }
  if (!command.commands.empty()) {
    words.insert(words.end(), {"1: :->first", "*:: :->rest"});
    return words;
  }
  for (const std::string& word : MoreValues(command)) words.push_back(word);
  for (std::size_t i = 0; i < command.values.size(); ++i) {
    const DocumentedOption& value = command.values[i];
    words.push_back((value.many ? "*:" : std::to_string(i + 1) + ":") + Message(value));
  }
  return words;
}

std::string ArgumentsCall(const DocumentedCommand& command, const char* options) {
  std::string call = std::string("  _arguments ") + options;
  for (const std::string& word : ArgumentWords(command)) {
    call += " \\\n    " + ShellQuoted(word);
  }
  return call;
}

std::string Group(const DocumentedCommand& command) {
  std::string text =
      "  local curcontext=$curcontext context state state_descr line ret=1\n"
      "  typeset -A opt_args\n";
  text += ArgumentsCall(command, "-C :") + " && ret=0\n  case $state in\n    first)\n";
  text += "      local -a commands=(\n";
  for (const DocumentedCommand& below : command.commands) {
    text += "        " + ShellQuoted(NameOf(below) + ":" + below.description) + "\n";
  }
  text += "      )\n      _describe -t commands command commands && ret=0\n";
  if (!command.values.empty()) {
    text += "      " + Action(command.values.front().kind) + " && ret=0\n";
  }
  text += "      ;;\n    rest)\n      case $words[1] in\n";
  for (const DocumentedCommand& below : command.commands) {
    text += "        " + NameOf(below) + ") " + FunctionName(below) + " && ret=0 ;;\n";
  }
  return text + "      esac\n      ;;\n  esac\n  return ret\n";
}

std::string Function(const DocumentedCommand& command) {
  return "\n" + FunctionName(command) + "() {\n" +
         (command.commands.empty() ? ArgumentsCall(command, ":") + "\n" : Group(command)) + "}\n";
}

}  // namespace

std::string ZshCompletion(const DocumentedCommand& program) {
  std::string script = kHead;
  for (const DocumentedCommand* command : AllCommands(program)) script += Function(*command);
  return script + "\n" + FunctionName(program) + " \"$@\"\n";
}

}  // namespace ravelin
