// The runs that are tortured.
#include <algorithm>

#include "torture/World.h"

namespace torture {

const std::vector<Scenario>& scenarios() {
  static const std::vector<Scenario> rows = {
      {.name = "launch",
       .kind = Kind::Launch,
       .instructions = {"FIND_JVM 0 1", "LAUNCH @S2@ 0"},
       .inputFile = "",
       .arguments = {"one", "two words"}},
      {.name = "launch-exec",
       .kind = Kind::Launch,
       .instructions = {"FIND_JVM 0 1", "LAUNCH @S2@ 0"},
       .inputFile = "",
       .arguments = {},
       .execs = true},
      {.name = "hand-over",
       .kind = Kind::Launch,
       .instructions = {"FIND_JVM 0 1", "EXECUTE_LAUNCHER 0", "LAUNCH @S2@ 0"},
       .inputFile = "",
       .arguments = {}},
      {.name = "install-launch",
       .kind = Kind::Launch,
       .instructions = {"INSTALL_JVM 0", "LAUNCH @S1@ 0"},
       .inputFile = "",
       .arguments = {}},
      {.name = "extract",
       .kind = Kind::Extract,
       .instructions = {"FIND_JVM 0 1"},
       .inputFile = "",
       .arguments = {"-cv:extract"}},
      {.name = "search",
       .kind = Kind::Search,
       .instructions = {},
       .inputFile = "ACTION: SEARCH\n",
       .arguments = {}},
      {.name = "verify",
       .kind = Kind::Verify,
       .instructions = {},
       .inputFile = "ACTION: VERIFY_JVM\nVERIFY_CLASSPATH: \"\"\"v.jar\"\"\"\n"
                    "VERIFY_CLASS_NAME: Verify\nVERIFY_JVM_FILE: @/java.jvm\n"
                    "VERIFY_JVM_HOME: @/jvms/java17\n",
       .arguments = {}},
      {.name = "install",
       .kind = Kind::Install,
       .instructions = {},
       .inputFile = "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: @/bin/install\n"
                    "INSTALL_JVM_DEST: @/dest\n",
       .arguments = {}},
      {.name = "version",
       .kind = Kind::Version,
       .instructions = {},
       .inputFile = "",
       .arguments = {"-cv:version"}},
      {.name = "scan",
       .kind = Kind::Launch,
       .instructions = {"FIND_JVM 0 1", "LAUNCH @S2@ 0"},
       .inputFile = "",
       .arguments = {},
       .scans = true},
  };
  return rows;
}

const Scenario* findScenario(const std::string& name) {
  const auto row = std::find_if(scenarios().begin(), scenarios().end(),
                                [&name](const Scenario& s) { return name == s.name; });
  return row == scenarios().end() ? nullptr : &*row;
}

}  // namespace torture
