#include "CommandLine.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "Text.h"

namespace {

std::size_t helpWidth() {
  return std::clamp<std::size_t>(screenSize(STDOUT_FILENO).columns, 40, 100);
}

/// CLI11's own help, in lines that fit.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() {
    label("Usage", say("Usage"));
    label("OPTIONS", say("OPTIONS"));
    label("SUBCOMMAND", say("COMMAND"));
    label("Positionals", say("Arguments"));
    label("REQUIRED", say("REQUIRED"));
    label("Excludes", say("without"));
  }

  std::string make_description(const CLI::App* app) const override {
    return lines(app->get_description() + "\n");
  }
  std::string make_footer(const CLI::App* app) const override {
    return lines(app->get_footer() + "\n");
  }
  std::string make_option(const CLI::Option* option, bool positional) const override {
    return row(make_option_name(option, positional) + make_option_opts(option),
               make_option_desc(option));
  }
  std::string make_subcommand(const CLI::App* command) const override {
    return row(command->get_name(), command->get_description());
  }

 private:
  static std::string lines(const std::string& text) {
    return joined(wrapped(text, helpWidth()), "\n");
  }

  static std::string row(const std::string& name, const std::string& about) {
    static constexpr std::size_t kColumn = 30;
    std::string text = "  " + name;
    const bool fits = displayWidth(text) < kColumn - 1;
    text +=
        fits ? std::string(kColumn - displayWidth(text), ' ') : "\n" + std::string(kColumn, ' ');
    return text + joined(wrapped(about, helpWidth() - kColumn), "\n" + std::string(kColumn, ' ')) +
           "\n";
  }
};

/// What CLI11 found wrong, in the tool's words. It says so in English sentences alone; the names
/// in them are ours.
std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
  const std::string what = error.what();
  const auto before = [&](std::string_view words) { return what.substr(0, what.find(words)); };
  const auto behind = [&](std::string_view words) {
    const std::size_t at = what.find(words);
    return at == std::string::npos ? what : what.substr(at + words.size());
  };
  const std::string& kind = error.get_name();
  if (kind == "ValidationError") return what;
  // Its name is the program's.
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr)
    return say("not understood: {0}", behind(": "));
  if (kind == "RequiresError")
    return say("{0} goes with {1} alone", before(" requires "), behind(" requires "));
  if (kind == "ExcludesError")
    return say("{0} and {1} exclude each other", before(" excludes "), behind(" excludes "));
  if (kind == "RequiredError" && app.get_subcommands().empty() &&
      app.get_require_subcommand_min() > 0) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    return say("which command? One of: {0}", joined(names));
  }
  if (kind == "RequiredError") return say("{0} is missing", before(" is required"));
  if (kind == "ArgumentMismatch" && what.find("flag") != std::string::npos)
    return say("{0} takes no value", before(" was "));
  if (kind == "ArgumentMismatch") return say("{0} needs a value", before(":"));
  return say("the command line isn't understood: {0}", what);
}

/// The whole of the text.
template <typename Number>
std::optional<Number> numberOf(std::string_view text) {
  Number value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

std::optional<std::int64_t> wholeNumber(std::string_view text, std::int64_t lowest,
                                        std::int64_t highest) {
  const auto value = numberOf<std::int64_t>(text);
  return value && *value >= lowest && *value <= highest ? value : std::nullopt;
}

std::optional<double> realNumber(std::string_view text) { return numberOf<double>(text); }

void refuse(const std::string& names, const std::string& why) {
  throw CLI::ValidationError(names.substr(0, names.find(',')), why);
}

std::int64_t requireWhole(const std::string& names, const std::string& text, std::int64_t lowest,
                          std::int64_t highest) {
  if (const auto value = wholeNumber(text, lowest, highest)) return *value;
  refuse(names, say("'{0}' is no whole number from {1} to {2}", text, lowest, highest));
}

CLI::Option* addSeconds(CLI::App& app, const std::string& names, std::chrono::milliseconds& target,
                        double lowest, double highest, const std::string& about) {
  using Seconds = std::chrono::duration<double>;
  const auto take = [names, &target, lowest, highest](const std::string& given) {
    const auto value = realNumber(given);
    if (!value || !(*value >= lowest && *value <= highest))
      refuse(names, say("'{0}' is no number of seconds from {1} to {2}", given, lowest, highest));
    target = std::chrono::round<std::chrono::milliseconds>(Seconds(*value));
  };
  return app.add_option_function<std::string>(names, take, about)
      ->type_name("SECONDS")
      ->default_str(fmt::format("{}", Seconds(target).count()));
}

CLI::Option* addText(CLI::App& app, const std::string& names, std::string& target,
                     const std::string& about) {
  const auto take = [names, &target](const std::string& given) {
    if (given.empty()) refuse(names, say("may not be empty"));
    target = given;
  };
  return app.add_option_function<std::string>(names, take, about)->default_str(target);
}

void addCommonOptions(CLI::App& app) {
  app.formatter(std::make_shared<HelpFormatter>());
  app.option_defaults()->group(say("Options"))->disable_flag_override();
  app.set_help_flag("-h,--help", say("Print this help and end"))->group(say("Options"));
  app.set_version_flag("--version", versionLine(app.get_name()), say("Print the version and end"));
  // It was taken before: the texts above are in its language already.
  app.add_option_function<std::string>(
         "--lang",
         [](const std::string& name) {
           Language language{};
           if (!languageByName(name, language))
             refuse("--lang", say("'{0}' is none of en, ru, uk", name));
         },
         say("Language of the messages (default: by the locale)"))
      ->type_name("en|ru|uk")
      // A wrapper may have said its own before.
      ->take_last();
  // For the build.
  const auto describe = [&app](const std::string& form) {
    print(form == "man" ? manualPage(app) : completion(app.get_name(), form == "zsh"));
    throw CLI::Success();
  };
  app.add_option_function<std::string>("--self-describe", describe)
      ->check(CLI::IsMember({"man", "bash", "zsh"}))
      // A command need not follow.
      ->trigger_on_parse()
      ->group("");
}

std::optional<ExitCode> parse(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    print(app.help());
    return kGood;
  } catch (const CLI::CallForVersion& version) {
    print(std::string(version.what()) + "\n");
    return kGood;
  } catch (const CLI::Success&) {
    return kGood;
  } catch (const CLI::ParseError& error) {
    const auto chosen = app.get_subcommands();
    const std::string name =
        app.get_name() + (chosen.empty() ? "" : " " + chosen.front()->get_name());
    throw Failure(kWrongUsage, usageMessage(app, error),
                  say("`{0} --help` shows how it is used.", name));
  }
  return std::nullopt;
}

std::string versionLine(const std::string& program) { return program + " " + ORBELO_VERSION; }
