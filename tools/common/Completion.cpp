#include <algorithm>
#include <functional>
#include <utility>

#include "SelfDescription.h"

namespace {

std::string joined(const std::vector<std::string>& words, const std::string& separator) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
  return text;
}

void forEachOption(const CommandEntry& command,
                   const std::function<void(const OptionEntry&)>& take) {
  for (const OptionGroup& group : command.groups) {
    for (const OptionEntry& option : group.options) take(option);
  }
}

std::vector<std::string> namesOf(const CommandEntry& command) {
  std::vector<std::string> names;
  forEachOption(command, [&](const OptionEntry& option) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  });
  return names;
}

std::vector<std::string> commandNames(const CommandEntry& program) {
  std::vector<std::string> names;
  for (const CommandEntry& command : program.commands) names.push_back(command.name);
  return names;
}

/// The command with what else may stand behind its name: the program's options, but for those that
/// it has itself.
CommandEntry withOptionsOf(const CommandEntry& program, CommandEntry command) {
  const std::vector<std::string> own = namesOf(command);
  for (OptionGroup group : program.groups) {
    std::erase_if(group.options, [&](const OptionEntry& option) {
      return std::find_first_of(own.begin(), own.end(), option.names.begin(), option.names.end()) !=
             own.end();
    });
    command.groups.push_back(std::move(group));
  }
  return command;
}

/// In single quotes, as both shells take them.
std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result + "'";
}

// bash

/// The function that completes the word at hand by `compgen`.
std::string replyOf(const CommandEntry& program) { return "__" + program.name + "_reply"; }

/// The arguments of `compgen` that complete the value; empty where nothing can.
std::string compgenFor(const OptionEntry& option) {
  switch (option.kind) {
    case ValueKind::File: return "-f";
    case ValueKind::Folder: return "-d";
    case ValueKind::Choice: return "-W " + quoted(joined(option.choices, " "));
    case ValueKind::None:
    case ValueKind::Text: break;
  }
  return {};
}

/// What follows the options that take a value, as branches of `case $prev`.
std::string bashValues(const CommandEntry& program, const CommandEntry& command) {
  std::string branches;
  forEachOption(command, [&](const OptionEntry& option) {
    const std::string complete = compgenFor(option);
    if (option.names.empty() || option.kind == ValueKind::None) return;
    if (option.valueOptional && complete.empty()) return;
    branches += "    " + joined(option.names, " | ") + ")" +
                (complete.empty() ? "" : " " + replyOf(program) + " " + complete + ";") +
                " return ;;\n";
  });
  return branches.empty() ? branches : "  case $prev in\n" + branches + "  esac\n";
}

std::string bashArguments(const CommandEntry& command) {
  std::string complete;
  forEachOption(command, [&](const OptionEntry& option) {
    if (!option.argument.empty() && complete.empty()) complete = compgenFor(option);
  });
  return complete;
}

std::string bashBranch(const CommandEntry& program, const CommandEntry& command) {
  const std::string arguments = bashArguments(command);
  return "  " + command.name + ")\n" + bashValues(program, command) +
         "  words=" + quoted(joined(namesOf(withOptionsOf(program, command)), " ")) + "\n" +
         (arguments.empty()
              ? ""
              : "  [[ $cur == -* ]] || { " + replyOf(program) + " " + arguments + "; return; }\n") +
         "  ;;\n";
}

// zsh

/// A description within the brackets that zsh's _arguments reads.
std::string bracketed(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

std::string zshAction(const OptionEntry& option) {
  switch (option.kind) {
    case ValueKind::File: return "_files";
    case ValueKind::Folder: return "_files -/";
    case ValueKind::Choice: return "(" + joined(option.choices, " ") + ")";
    case ValueKind::None:
    case ValueKind::Text: break;
  }
  return " ";
}

std::string zshOptions(const CommandEntry& command, const std::string& indent) {
  std::string specs;
  forEachOption(command, [&](const OptionEntry& option) {
    if (option.names.empty()) {
      specs += " \\\n" + indent +
               quoted((option.repeated ? "*:" : ":") + bracketed(option.argument) + ":" +
                      zshAction(option));
      return;
    }
    const std::string names = joined(option.names, " ");
    const std::string head = option.names.size() == 1 ? names
                                                      : quoted("(" + names + ")") + "{" +
                                                            joined(option.names, ",") + "}";
    std::string value;
    if (option.kind != ValueKind::None) {
      value =
          (option.valueOptional ? "::" : ":") + bracketed(option.value) + ":" + zshAction(option);
    }
    specs += " \\\n" + indent + head + quoted("[" + bracketed(option.about) + "]" + value);
  });
  return specs;
}

}  // namespace

std::string bashCompletion(const CommandEntry& program) {
  const std::string function = "_" + program.name;
  std::string script = "# Completion of " + program.name +
                       " for bash, made from the tables that --help is made of.\n" +
                       replyOf(program) +
                       "() {\n"
                       "  [[ $1 == -W ]] || compopt -o filenames 2>/dev/null\n"
                       "  mapfile -t COMPREPLY < <(compgen \"$@\" -- \"$cur\")\n"
                       "}\n" +
                       function +
                       "() {\n"
                       "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}\n"
                       "  local command= words= word\n"
                       "  # bash takes the sign of --name=value for a word of its own.\n"
                       "  if [[ $cur == = ]]; then\n"
                       "    cur=\n"
                       "  elif [[ $prev == = ]]; then\n"
                       "    prev=${COMP_WORDS[COMP_CWORD - 2]}\n"
                       "  fi\n"
                       "  COMPREPLY=()\n";
  script += bashValues(program, program);
  const std::string own = quoted(joined(namesOf(program), " "));
  if (program.commands.empty()) {
    script += "  words=" + own + "\n";
  } else {
    const std::vector<std::string> names = commandNames(program);
    script += "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD - 1}\"; do\n    case $word in " +
              joined(names, " | ") +
              ") command=$word && break ;;\n    esac\n  done\n"
              "  case $command in\n";
    for (const CommandEntry& command : program.commands) script += bashBranch(program, command);
    script += "  *)\n  words=" + quoted(joined(names, " ")) +
              "\n  [[ $cur != -* ]] || words=" + own + "\n  ;;\n  esac\n";
  }
  return script + "  " + replyOf(program) + " -W \"$words\"\n}\ncomplete -F " + function + " " +
         program.name + "\n";
}

std::string zshCompletion(const CommandEntry& program) {
  const std::string function = "_" + program.name;
  std::string script = "#compdef " + program.name +
                       "\n# Made from the tables that --help is made of.\n" + function +
                       "() {\n  local curcontext=$curcontext state line\n"
                       "  typeset -A opt_args\n  _arguments -C" +
                       zshOptions(program, "    ");
  if (!program.commands.empty()) {
    script +=
        " \\\n    '1: :->command' \\\n    '*:: :->rest'\n  case $state in\n  command)\n"
        "    local -a commands=(\n";
    for (const CommandEntry& command : program.commands) {
      script += "      " + quoted(command.name + ":" + bracketed(command.about)) + "\n";
    }
    script += "    )\n    _describe command commands\n    ;;\n  rest)\n    case $words[1] in\n";
    for (const CommandEntry& command : program.commands) {
      script += "    " + command.name + ")\n      _arguments" +
                zshOptions(withOptionsOf(program, command), "        ") + "\n      ;;\n";
    }
    script += "    esac\n    ;;\n  esac";
  }
  return script + "\n}\n" + function + " \"$@\"\n";
}
