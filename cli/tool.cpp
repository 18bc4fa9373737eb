#include "cli/tool.h"

#include <cstdio>

#include "core/nearest.h"

namespace qvcli {

namespace {

int fail(const std::string& message, int code) {
  std::fflush(stdout);
  std::fprintf(stderr, "qv: %s\n", message.c_str());
  return code;
}

std::string nameOf(const CLI::App& app) {
  return app.get_parent() ? "qv " + app.get_name() : "qv";
}

// CLI11 may use several lines.
std::string firstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

}  // namespace

Tool::Tool() : app_("Technical analysis on the command line", "qv") {
  app_.allow_extras();
  app_.set_version_flag("--version", std::string("qv ") + qvVersion(), "Print the version and exit");
  app_.get_formatter()->column_width(32);
}

CLI::App& Tool::add(const std::string& name, const std::string& summary,
                    const std::vector<std::string>& examples, std::function<int()> run, int dataError) {
  CLI::App* command = app_.add_subcommand(name, summary);
  std::string footer = examples.size() > 1 ? "Examples:" : "Example:";
  for (const std::string& example : examples) footer += "\n  " + example;
  command->footer(footer);
  command->allow_extras();
  commands_.push_back({command, std::move(run), dataError});
  return *command;
}

const CLI::App& Tool::chosen() const {
  for (const Command& c : commands_)
    if (c.app->parsed()) return *c.app;
  return app_;
}

int Tool::usageError(const CLI::App& app, const std::string& message) const {
  return fail(message + " (" + nameOf(app) + " --help tells more)", kUsageError);
}

int Tool::unknown(const CLI::App& app, const std::string& word) const {
  qv::NearestWord nearest(word);
  std::vector<std::string> offered;
  const bool isOption = word.starts_with("-");
  if (isOption) {
    for (const CLI::Option* o : app.get_options())
      for (const std::string& name : o->get_lnames()) offered.push_back("--" + name);
  } else if (&app == &app_) {
    for (const Command& c : commands_) offered.push_back(c.app->get_name());
  } else {
    return usageError(app, word + ": one argument too many");
  }
  for (const std::string& name : offered) nearest.offer(name.c_str());
  const std::string question = nearest.word() ? ", did you mean " + std::string(nearest.word()) + "?" : "";
  return usageError(app, word + ": no such " + (isOption ? "option" : "command") + question);
}

int Tool::run(int argc, char** argv) {
  std::string wrong;
  try {
    app_.parse(argc, argv);
  } catch (const CLI::Success& e) {  // --help, --version
    return app_.exit(e);
  } catch (const CLI::ParseError& e) {
    wrong = firstLine(e.what());
  }
  // An unknown word explains what else is wrong.
  const CLI::App& app = chosen();
  for (const std::string& word : app.remaining())
    if (word != "--") return unknown(app, word);
  if (!wrong.empty()) return usageError(app, wrong);
  if (&app == &app_) return usageError(app, "a command is missing");

  for (const Command& c : commands_) {
    if (c.app != &app) continue;
    try {
      return c.run();
    } catch (const UsageError& e) {
      return fail(e.what(), kUsageError);
    } catch (const std::exception& e) {
      return fail(e.what(), c.dataError);
    }
  }
  return kUsageError;
}

}  // namespace qvcli
