#include "tools/manual/manual.h"

namespace host::manual {
namespace {

// What completes a value, as a command of the script.
std::string completion(const Values& values) {
  if (!values.endings.empty()) {
    return values.endings.front().empty() ? "_hedro34_files" : "_hedro34_files " + joined(values.endings, " ");
  }
  if (values.names.empty()) return ":";
  return (values.is_list ? "_hedro34_list " : "_hedro34_words ") + joined(values.names, " ");
}

template <class Rows>
std::string names_of(const Rows& rows) {
  std::string names;
  for (const auto& row : rows) names.append(names.empty() ? "" : " ").append(row.name);
  return names;
}

constexpr const char* functions =
    R"(# Completions of hedro34 for bash, written by its build from the list that --help prints.

_hedro34_words() { # WORDS that begin as $current does
  mapfile -t COMPREPLY < <(compgen -W "$*" -- "$current")
}

_hedro34_list() { # WORDS, several with commas between them
  local before=
  [[ $current == *,* ]] && before=${current%,*},
  mapfile -t COMPREPLY < <(compgen -P "$before" -W "$*" -- "${current##*,}")
  compopt -o nospace 2>/dev/null
}

_hedro34_files() { # ENDINGS: folders, and files that end so; all files where none does or no ending is given
  local typed=$current plain= name ending folders=() matching=() others=()
  # The name as it is, without the quoting of what was typed.
  [[ $typed == [\'\"]* ]] && typed=${typed:1}
  while [[ $typed == *\\?* ]]; do
    plain+=${typed%%\\*}
    typed=${typed#*\\}
    plain+=${typed:0:1}
    typed=${typed:1}
  done
  while IFS= read -r name; do
    if [[ -d ${name/#\~\//$HOME/} ]]; then
      folders+=("$name")
      continue
    fi
    others+=("$name")
    for ending; do
      if [[ ${name,,} == *"$ending" ]]; then
        matching+=("$name")
        break
      fi
    done
  done < <(compgen -f -- "$plain$typed")
  [[ ${#matching[@]} -gt 0 ]] && others=("${matching[@]}")
  COMPREPLY=("${folders[@]}" "${others[@]}")
  compopt -o filenames 2>/dev/null
}

_hedro34() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= options=yes i
  COMPREPLY=()
  # "--option=value" comes as three words.
  if [[ $current == "=" ]]; then
    current=
  elif [[ $before == "=" && $COMP_CWORD -gt 1 ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      --) options= ;;
      -*) ;;
      *) command=${command:-${COMP_WORDS[i]}} ;;
    esac
  done
  [[ $options ]] || before=
  case $command in
    '')
)";

}  // namespace

void print_bash(std::ostream& out, const Program& program) {
  out << functions << "      if [[ $current == -* ]]; then\n        _hedro34_words " << names_of(program.options)
      << "\n      else\n        _hedro34_words " << names_of(program.commands) << "\n      fi\n      ;;\n";
  for (const Command& command : program.commands) {
    out << "    " << command.name << ")\n      case $before in\n";
    for (const Option& option : command.options) {
      if (!option.value_name.empty()) {
        out << "        " << option.name << ") " << completion(option.values) << " ;;\n";
      }
    }
    out << "        *)\n          if [[ $options && $current == -* ]]; then\n            _hedro34_words "
        << names_of(command.options) << "\n          else\n            "
        << (command.operands.empty() ? ":" : completion(command.operands.back().values))
        << "\n          fi\n          ;;\n"
        << "      esac\n      ;;\n";
  }
  out << "  esac\n}\n\ncomplete -F _hedro34 hedro34\n";
}

}  // namespace host::manual
