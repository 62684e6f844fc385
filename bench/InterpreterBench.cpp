// The instruction script's speed: statements a second (at least two million are wanted), and jumps,
// which are to cost no more in a script of 100,000 lines than in one of 100 (compare the lines of
// one run; the index of labels is built anew in each run of a script and counted in).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "fakes/FakeLauncherOperations.h"
#include "instructions/Instructions.h"
#include "launcher/LauncherFacts.h"
#include "tagfile/TagFile.h"

namespace {

// A script cannot count: it asks INITIALIZE_UI, which sets N1 to 1 at the last round.
void endAfter(int rounds) {
  LauncherFacts::setLongVariable(1, 0);
  FakeLauncherOperations::setRecording(false);
  FakeLauncherOperations::setHook([rounds]() mutable {
    if (--rounds == 0) {
      LauncherFacts::setLongVariable(1, 1);
    }
  });
}

void addLines(TagFile& script, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    script.appendTagValue("INSTRUCTIONS", SString(line));
  }
}

void run(benchmark::State& state, const TagFile& script, int rounds, int itemsPerRound) {
  const Instructions instructions(script);
  for (auto _ : state) {
    endAfter(rounds);
    (void)instructions.execute();
  }
  state.SetItemsProcessed(state.iterations() * rounds * itemsPerRound);
}

// A million statements: a loop of `body`, two lines, five hundred times over.
void BM_statements(benchmark::State& state, const std::vector<std::string>& body) {
  TagFile script;
  addLines(script, {"SET N2 = 5", "SET S1 = /opt/jvm/bin/java", ":loop"});
  for (int i = 0; i < 500; ++i) {
    addLines(script, body);
  }
  addLines(script, {"INITIALIZE_UI", "JMP0 @N1@ loop", ":end"});
  run(state, script, 1000, 1002);
}

// Two jumps a round, between the first and the last line, with labels on all lines between.
void BM_jumps(benchmark::State& state) {
  TagFile script;
  addLines(script, {"// first", ":low", "GOTO high"});
  for (long i = 6; i < state.range(0); ++i) {
    addLines(script, {":label" + std::to_string(i)});
  }
  addLines(script, {":high", "INITIALIZE_UI", "JMP0 @N1@ low"});
  run(state, script, 500'000, 2);
}

using Lines = std::vector<std::string>;
BENCHMARK_CAPTURE(BM_statements, set_and_jmp0, Lines{"SET N3 = 12", "JMP0 @N2@ end"})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_statements, strings, Lines{"SET S2 = \"@S1@ -v\"", "SET S3 = a@@b"})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_statements, comments, Lines{"// one", ":two"})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_jumps)->Arg(100)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
