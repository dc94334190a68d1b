#include "host/documents/BashCompletion.h"

#include "host/documents/ShellText.h"

namespace ravelin {
namespace {

constexpr const char* kHead =
    R"(# Completion of ravelin for bash, made of the option table of the command.

)";

// Bash gives 'red=file' as three words, so words are put together again before they are looked at,
// and what is offered replaces only what follows the last '=' or ':'.
constexpr const char* kTail = R"(
# _ravelin_offer VALUE: offers what VALUE may become, by $kind.
_ravelin_offer() {
  local typed=${1##*[=:]} pattern=${kind#* }
  case $kind in
    file) mapfile -t COMPREPLY < <(compgen -f -- "$typed") ;;
    folder) mapfile -t COMPREPLY < <(compgen -d -- "$typed") ;;
    choice*) mapfile -t COMPREPLY < <(compgen -W "$pattern" -- "$typed") ;;
    keyed*)
      case $1 in
        *=*:*) mapfile -t COMPREPLY < <(compgen -W "${pattern#*|}" -- "$typed") ;;
        *=*) mapfile -t COMPREPLY < <(compgen -f -- "$typed") ;;
        *)
          mapfile -t COMPREPLY < <(compgen -W "${pattern%|*}" -- "$typed")
          compopt -o nospace 2>/dev/null
          ;;
      esac
      ;;
  esac
  case $kind in
    file | folder | keyed*) compopt -o filenames 2>/dev/null ;;
  esac
}

# The words up to the cursor, as they were typed.
_ravelin_words() {
  local i piece joins=''
  words=()
  for ((i = 1; i <= COMP_CWORD; i++)); do
    piece=${COMP_WORDS[i]}
    if [[ $piece == [=:]* && $piece != *[!=:]* && ${#words[@]} -gt 0 ]]; then
      words[-1]+=$piece
      joins=yes
    elif [[ $joins && -n $piece ]]; then
      words[-1]+=$piece
      joins=''
    else
      words+=("$piece")
      joins=''
    fi
  done
}

_ravelin() {
  local command=ravelin option='' place=0 word current words
  local subcommands options places many_places kind many
  COMPREPLY=()
  _ravelin_words
  _ravelin_command "$command"
  for word in "${words[@]:0:${#words[@]}-1}"; do
    if [[ $word == -?* ]]; then
      _ravelin_option "$command ${word%%=*}"
      option=''
      [[ $kind && ($many || $word != *=*) ]] && option=${word%%=*}
    elif [[ $option ]]; then
      _ravelin_option "$command $option"
      [[ $many ]] || option=''
    elif [[ " $subcommands " == *" $word "* && $place == 0 ]]; then
      command+=" $word"
      _ravelin_command "$command"
    else
      place=$((place + 1))
    fi
  done

  current=${words[-1]}
  if [[ $current == --*=* ]]; then
    _ravelin_option "$command ${current%%=*}"
    _ravelin_offer "${current#*=}"
  elif [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  elif [[ $option ]]; then
    _ravelin_option "$command $option"
    _ravelin_offer "$current"
  else
    [[ $many_places && $place -ge ${#places[@]} ]] && place=$((${#places[@]} - 1))
    kind=${places[place]-}
    _ravelin_offer "$current"
    if [[ $place == 0 ]]; then
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$subcommands" -- "$current")
    fi
    if [[ ${#COMPREPLY[@]} == 0 && -z $kind ]]; then
      mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    fi
  fi
}

complete -F _ravelin ravelin
)";

std::string KindText(const ValueKind& kind) {
  switch (kind.type) {
    case ValueKind::kText:
      return "text";
    case ValueKind::kFile:
      return "file";
    case ValueKind::kFolder:
      return "folder";
    case ValueKind::kChoice:
      return "choice " + Joined(kind.words, " ");
    case ValueKind::kKeyedFile:
      return "keyed " + Joined(Keys(kind), " ") + "|" + Joined(Endings(kind), " ");
  }
  return "";
}

std::string CommandCase(const DocumentedCommand& command) {
  std::vector<std::string> names;
  std::vector<std::string> options;
  std::string places;
  for (const DocumentedCommand& below : command.commands) names.push_back(NameOf(below));
  for (const DocumentedOption& option : command.options) {
    options.insert(options.end(), option.names.begin(), option.names.end());
  }
  for (const DocumentedOption& value : command.values) {
    places += (places.empty() ? "" : " ") + ShellQuoted(KindText(value.kind));
  }
  const bool many = !command.values.empty() && command.values.back().many;
  return "    " + ShellQuoted(command.path) +
         ")\n      subcommands=" + ShellQuoted(Joined(names, " ")) +
         "\n      options=" + ShellQuoted(Joined(options, " ")) + "\n      places=(" + places +
         ")\n      many_places=" + (many ? "yes" : "''") + "\n      ;;\n";
}

std::string OptionCase(const DocumentedCommand& command, const DocumentedOption& option) {
  std::vector<std::string> patterns;
  for (const std::string& name : option.names) {
    patterns.push_back(ShellQuoted(command.path + " " + name));
  }
  return "    " + Joined(patterns, " | ") + ") kind=" + ShellQuoted(KindText(option.kind)) +
         (option.many ? " many=yes" : "") + " ;;\n";
}

}  // namespace

std::string BashCompletion(const DocumentedCommand& program) {
  std::string commands;
  std::string options;
  for (const DocumentedCommand* command : AllCommands(program)) {
    commands += CommandCase(*command);
    for (const DocumentedOption& option : command->options) {
      if (!option.IsFlag()) options += OptionCase(*command, option);
    }
  }
  return std::string(kHead) +
         "# _ravelin_command PATH: what the command has.\n"
         "_ravelin_command() {\n  case $1 in\n" +
         commands +
         "  esac\n}\n\n"
         "# _ravelin_option 'PATH OPTION': the kind of the option's value, empty for a flag.\n"
         "_ravelin_option() {\n  kind='' many=''\n  case $1 in\n" +
         options + "  esac\n}\n" + kTail;
}

}  // namespace ravelin
