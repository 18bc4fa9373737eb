// qv: the command-line tool over the library.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "cli/demo.h"

namespace {

int run(int argc, char** argv) {
  CLI::App app{"qv: technical analysis on the command line"};
  app.require_subcommand(1);

  qvcli::DemoOptions demoOptions;
  CLI::App* demo = app.add_subcommand("demo", "Show what the library does, on the bundled prices");
  demo->add_option("--data", demoOptions.data, "Directory of the bundled data")->capture_default_str();
  demo->add_option("--file", demoOptions.file, "Price file in the data directory's folder text")
      ->capture_default_str();
  demo->add_option("--chapter", demoOptions.chapter, "Only this chapter: " + qvcli::demoChapters());

  CLI11_PARSE(app, argc, argv);
  return qvcli::runDemo(demoOptions);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "qv: %s\n", e.what());
    return 1;
  }
}
