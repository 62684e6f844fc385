// World: a scratch folder with a packed launcher and all that it needs, for one scenario. A run in
// it ends as an Outcome: everything that can be seen afterwards.
#ifndef CORVANE_TESTS_TORTURE_WORLD_H
#define CORVANE_TESTS_TORTURE_WORLD_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/LauncherFiles.h"
#include "support/TestFiles.h"
#include "torture/Watch.h"

namespace torture {

// What a run promises, which decides what is true of its status.
enum class Kind {
  Launch,   // a wizard runs, or the launcher that the run is handed over to
  Search,   // a calling program is told of a JVM
  Verify,   // a calling program is told "1" or "0"
  Extract,  // the embedded files lie in the current folder
  Install,  // a calling program is told of an installed JVM
  Version,
};

struct Scenario {
  const char* name;
  Kind kind;
  std::vector<std::string> instructions;
  std::string inputFile;               // tags for "-cv:in"; "@" stands for the world's folder
  std::vector<std::string> arguments;  // behind "-cv:tempdir" and "-cv:log"
  bool execs = false;                  // the command begins with "exec"
  bool scans = false;                  // on a disk of its own
};

const std::vector<Scenario>& scenarios();
const Scenario* findScenario(const std::string& name);

struct Outcome {
  Ending ending;
  std::string out, err, log;
  std::vector<std::string> record;              // what the stand-ins did
  std::map<std::string, std::string> products;  // files of the current folder and of "dest"
  std::vector<std::string> left;                // what is in the temporary folder
  std::optional<std::string> handedOut;         // the jvm file that a calling program was told of

  bool did(const std::string& line) const;
  // All of it, for people.
  std::string text() const;
};

class World {
 public:
  // `stub`: the bare launcher's path.
  World(const Scenario& scenario, const std::string& stub);

  const Scenario& scenario() const { return m_scenario; }
  std::string outside(const std::string& name) const { return m_dir / name; }
  // The name by which the launcher knows it.
  std::string inside(const std::string& name) const;

  // How the next runs are to be started; the harness may change it.
  Command command;

  // Empties the folders, as before the first run.
  void reset();
  // Everything that a run has left to be seen; `ending` is kept in it.
  Outcome collect(Ending ending) const;
  // reset, start, finish, collect. A run that takes longer hangs.
  Outcome run(Watch& watch, std::chrono::seconds limit = std::chrono::seconds(40));
  // Names of this run in `text` replaced by ones that are always the same.
  std::string normalised(const std::string& text) const;

 private:
  void pack(const std::string& stub);
  void addStandIns();
  void addShell();
  void prepareCommand();
  std::vector<test::StoredFile> embeddedFiles() const;

  test::TempDir m_dir;
  const Scenario& m_scenario;
};

std::string readIfThere(const std::string& path);

}  // namespace torture

#endif
