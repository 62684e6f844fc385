// torture: fails, ends and starves whole runs of the launcher, and looks at what each leaves.
// scripts/torture.sh runs it; "--help" tells the options.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "torture/Harness.h"

namespace {

struct Row {
  const char* name;
  bool (*run)(const torture::Options& options);
};

constexpr Row kHarnesses[] = {
    {"fault", torture::tortureWithFaults},
    {"kill", torture::tortureWithSignals},
    {"disk", torture::tortureWithDisks},
};

bool runHarnesses(const torture::Options& options) {
  bool good = true;
  for (const Row& row : kHarnesses) {
    if (options.only.empty() || options.only == row.name) {
      good = row.run(options) && good;
    }
  }
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  torture::Options options;
  options.stub = CORVANE_STUB;
  options.expected = CORVANE_EXPECTED;
  options.jobs = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
  CLI::App app("Tortures whole runs of the launcher.");
  app.add_option("--only", options.only, "one harness alone")
      ->check(CLI::IsMember({"fault", "kill", "disk"}));
  app.add_option("--case", options.oneCase, "one case alone, by its name; needs --only")
      ->needs("--only");
  app.add_option("--seed", options.seed, "what chance begins with");
  app.add_option("--signals", options.signals, "how many signals at random");
  app.add_option("--jobs", options.jobs, "how many runs at a time")->check(CLI::PositiveNumber);
  app.add_option("--stub", options.stub, "the bare launcher to be tried");
  app.add_option("--expected", options.expected, "the list of known failures; empty: none");
  app.add_flag("--short", options.isShort, "a choice of the cases");
  app.add_flag("--verbose", options.isVerbose, "tell of known failures, too");
  CLI11_PARSE(app, argc, argv);
  try {
    torture::Watch::prepareProcess();
    return runHarnesses(options) ? 0 : 1;
  } catch (const std::exception& e) {
    std::cerr << "torture: " << e.what() << "\n";
    return 2;
  }
}
