#include <string_view>

#include "CommandLine.h"

namespace {

/// Completes from what --help says at that moment: names at the head of an indented line, and the
/// word in capitals behind them, by which it is told what a value is.
constexpr std::string_view kBash = R"(# Completion of @program@, from what its --help says.
_@program@() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  local program=${COMP_WORDS[0]} command= word help commands kind
  # The sign of --name=value may be a word of its own.
  if [[ $cur == = ]]; then
    cur=
  elif [[ $prev == = ]]; then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  COMPREPLY=()
  help=$("$program" --lang en --help 2>/dev/null)
  commands=$(sed -n '/^Commands:/,/^$/s/^  \([a-z][a-z]*\) .*/\1/p' <<<"$help")
  for word in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
    if [[ -n $word && $'\n'$commands$'\n' == *$'\n'$word$'\n'* ]]; then
      command=$word
      help=$help$'\n'$("$program" --lang en "$command" --help 2>/dev/null)
      break
    fi
  done
  if [[ $prev == -* ]]; then
    kind=$(sed -n "s/^  \(-[^ ]*,\)*$prev\(,[^ ]*\)* \([]A-Za-z|[]*\).*/\3/p" <<<"$help" | head -n 1)
  fi
  if [[ -z $kind && $cur != -* && -n $command ]]; then
    kind=$(sed -n '/^Arguments:/,/^$/s/^  [a-z]* \(DIR\|FILE\|LOG\) .*/\1/p' <<<"$help" | head -n 1)
  fi
  case $kind in
  *\|*) COMPREPLY=($(compgen -W "${kind//|/ }" -- "$cur")) ;;
  DEVICE | FILE | LOG | PATH)
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen -f -- "$cur"))
    ;;
  DIR)
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen -d -- "$cur"))
    ;;
  [A-Z]*) ;;
  *)
    word=$(sed -n 's/^  \(-[^ ]*\).*/\1/p' <<<"$help" | tr ',' '\n' | sort -u)
    [[ -n $command || $cur == -* || -z $commands ]] || word=$commands
    COMPREPLY=($(compgen -W "$word" -- "$cur"))
    ;;
  esac
}
complete -F _@program@ @program@
)";

/// What zsh runs instead is the same: it takes the functions of bash.
constexpr std::string_view kZshHead = R"(#compdef @program@
autoload -U +X bashcompinit && bashcompinit
)";

}  // namespace

std::string completion(const std::string& program, bool forZsh) {
  static constexpr std::string_view kPlace = "@program@";
  std::string script(forZsh ? kZshHead : std::string_view());
  script += kBash;
  for (std::size_t at = 0; (at = script.find(kPlace, at)) != std::string::npos;)
    script.replace(at, kPlace.size(), program);
  return script;
}
