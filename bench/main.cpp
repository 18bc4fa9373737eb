// Runs the benchmarks, on prices of the shape that --shape=walk|rising|falling|flat names.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>

#include "support.h"

int main(int argc, char** argv) {
  const std::string names[] = {"walk", "rising", "falling", "flat"};
  std::string name = names[0];
  benchmark::Initialize(&argc, argv);
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.rfind("--shape=", 0) != 0) {
      std::fprintf(stderr, "unknown argument %s\n", argv[i]);
      return 2;
    }
    name = argument.substr(8);
  }
  const auto* known = std::find(std::begin(names), std::end(names), name);
  if (known == std::end(names)) {
    std::fprintf(stderr, "no such shape: %s\n", name.c_str());
    return 2;
  }
  qvbench::shape = static_cast<qvbench::Shape>(known - std::begin(names));
  benchmark::AddCustomContext("shape", name);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
