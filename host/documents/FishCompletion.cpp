#include "host/documents/FishCompletion.h"

#include "host/documents/ShellText.h"

namespace ravelin {
namespace {

constexpr const char* kHead =
    R"(# Completion of ravelin for fish, made of the option table of the command.

)";

// Where the cursor is: the path of the command, the number of values before it, and the option
// whose value comes next.
constexpr const char* kFunctions = R"(
function __ravelin_scan
    set -l path ravelin
    set -l place 0
    set -l option none
    set -l tokens (commandline -opc)
    for token in $tokens[2..-1]
        if string match -q -- '-?*' $token
            set option none
            set -l name (string split -m 1 = -- $token)
            if contains -- "$path $name[1]" $__ravelin_many_values
                set option $name[1]
            else if contains -- "$path $token" $__ravelin_values
                set option $token
            end
        else if test $option != none
            contains -- "$path $option" $__ravelin_many_values; or set option none
        else if test $place = 0; and contains -- "$path $token" $__ravelin_commands
            set path "$path $token"
        else
            set place (math $place + 1)
        end
    end
    printf '%s\n' $path $place $option
end

# __ravelin_in PATH: whether this is the command.
function __ravelin_in
    set -l scan (__ravelin_scan)
    test "$scan[1]" = "$argv[1]"
end

# __ravelin_at PATH PLACE MANY: whether a value without a name comes here.
function __ravelin_at
    set -l scan (__ravelin_scan)
    test "$scan[1]" = "$argv[1]"; and test "$scan[3]" = none; or return 1
    test "$scan[2]" = "$argv[2]"; and return 0
    test "$argv[3]" = many; and test "$scan[2]" -gt "$argv[2]"
end

# __ravelin_more PATH OPTION...: whether another value of one of the options comes here.
function __ravelin_more
    set -l scan (__ravelin_scan)
    test "$scan[1]" = "$argv[1]"; and contains -- "$scan[3]" $argv[2..-1]
end

# __ravelin_keyed KEYS ENDINGS: KEY=FILE[:ENDING].
function __ravelin_keyed
    set -l token (string replace -r '^--[^=]*=' '' -- (commandline -ct))
    if not string match -q -- '*=*' $token
        string split ' ' -- $argv[1]
    else if string match -q -- '*=*:*' $token
        set -l file (string replace -r ':[^:]*$' '' -- $token)
        for ending in (string split ' ' -- $argv[2])
            echo $file:$ending
        end
    else
        set -l parts (string split -m 1 = -- $token)
        for file in (__fish_complete_path $parts[2])
            echo $parts[1]=$file
        end
    end
end

complete -c ravelin -f
)";

std::string FishQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "'";
}

/// A condition of a completion: a call of one of the functions above.
std::string When(const std::string& call) {
  return " -n " + FishQuoted(call);
}

std::string Offer(const ValueKind& kind) {
  switch (kind.type) {
    case ValueKind::kText:
      return "";
    case ValueKind::kFile:
      return " -F";
    case ValueKind::kFolder:
      return " -a '(__fish_complete_directories)'";
    case ValueKind::kChoice:
      return " -a " + FishQuoted(Joined(kind.words, " "));
    case ValueKind::kKeyedFile:
      return " -a " + FishQuoted("(__ravelin_keyed " + FishQuoted(Joined(Keys(kind), " ")) + " " +
                                 FishQuoted(Joined(Endings(kind), " ")) + ")");
  }
  return "";
}

std::string NameOption(const std::string& name) {
  return name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
}

std::string OptionLines(const DocumentedCommand& command, const DocumentedOption& option) {
  const std::string path = FishQuoted(command.path);
  std::string line = "complete -c ravelin" + When("__ravelin_in " + path);
  for (const std::string& name : option.names) line += NameOption(name);
  const bool file = option.kind.type == ValueKind::kFile;
  if (!option.IsFlag()) line += (file ? " -r" : " -x") + Offer(option.kind);
  line += " -d " + FishQuoted(option.description) + "\n";
  if (!option.many || option.kind.type == ValueKind::kText) return line;
  return line + "complete -c ravelin" +
         When("__ravelin_more " + path + " " + Joined(option.names, " ")) + Offer(option.kind) +
         "\n";
}

std::string ValueLine(const DocumentedCommand& command, std::size_t place) {
  const DocumentedOption& value = command.values[place];
  if (value.kind.type == ValueKind::kText) return "";
  return "complete -c ravelin" +
         When("__ravelin_at " + FishQuoted(command.path) + " " + std::to_string(place) +
              (value.many ? " many" : "")) +
         Offer(value.kind) + "\n";
}

std::string Lines(const DocumentedCommand& command) {
  std::string lines = "\n# " + command.path + "\n";
  for (const DocumentedCommand& below : command.commands) {
    lines += "complete -c ravelin" + When("__ravelin_at " + FishQuoted(command.path) + " 0") +
             " -a " + NameOf(below) + " -d " + FishQuoted(below.description) + "\n";
  }
  for (std::size_t i = 0; i < command.values.size(); ++i) lines += ValueLine(command, i);
  for (const DocumentedOption& option : command.options) lines += OptionLines(command, option);
  return lines;
}

std::string List(const std::string& name, const std::vector<std::string>& words) {
  std::string list = "set -g " + name;
  for (const std::string& word : words) list += " \\\n    " + FishQuoted(word);
  return list + "\n";
}

std::string Lists(const std::vector<const DocumentedCommand*>& commands) {
  std::vector<std::string> paths;
  std::vector<std::string> values;
  std::vector<std::string> manyValues;
  for (const DocumentedCommand* command : commands) {
    if (command != commands.front()) paths.push_back(command->path);
    for (const DocumentedOption& option : command->options) {
      for (const std::string& name : option.names) {
        if (!option.IsFlag()) values.push_back(command->path + " " + name);
        if (option.many) manyValues.push_back(command->path + " " + name);
      }
    }
  }
  return List("__ravelin_commands", paths) + List("__ravelin_values", values) +
         List("__ravelin_many_values", manyValues);
}

}  // namespace

std::string FishCompletion(const DocumentedCommand& program) {
  const std::vector<const DocumentedCommand*> commands = AllCommands(program);
  std::string script = kHead + Lists(commands) + kFunctions;
  for (const DocumentedCommand* command : commands) script += Lines(*command);
  return script;
}

}  // namespace ravelin
