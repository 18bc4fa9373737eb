// The tool's frame: its subcommands, what they share, and how they end.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "qvlib60.hpp"

namespace qvcli {

// How a run ends. Screens and checks, which answer a question with 0 or 1, end with 2 on any error.
enum ExitCode { kDone = 0, kDataError = 1, kUsageError = 2 };

// An argument that means nothing: one line on standard error, exit 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Tool {
 public:
  Tool();

  // A subcommand. `summary` is its line in the list of commands, `examples` are its last lines of help, one
  // command a line. `run` answers the exit code, or throws: UsageError ends with 2, anything else with
  // `dataError`.
  CLI::App& add(const std::string& name, const std::string& summary, const std::vector<std::string>& examples,
                std::function<int()> run, int dataError = kDataError);

  int run(int argc, char** argv);

  // The whole description, for what is made from it: completion, the manual page.
  const CLI::App& app() const { return app_; }

 private:
  struct Command {
    CLI::App* app;
    std::function<int()> run;
    int dataError;
  };

  int usageError(const CLI::App& app, const std::string& message) const;
  int unknown(const CLI::App& app, const std::string& word) const;
  const CLI::App& chosen() const;

  CLI::App app_;
  std::vector<Command> commands_;
};

// The subcommands, in the order in which they are listed.
void addFunctions(Tool& tool);
void addNeed(Tool& tool);
void addList(Tool& tool);
void addInfo(Tool& tool);
void addRead(Tool& tool);
void addCheck(Tool& tool);
void addCalc(Tool& tool);
void addPatterns(Tool& tool);
void addScreen(Tool& tool);
void addBacktest(Tool& tool);
void addSweep(Tool& tool);
void addPointAndFigure(Tool& tool);
void addOption(Tool& tool);
void addBond(Tool& tool);
void addDemo(Tool& tool);
void addCompletion(Tool& tool);  // and the manual page

}  // namespace qvcli
