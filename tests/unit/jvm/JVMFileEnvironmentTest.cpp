#include <gtest/gtest.h>

#include "fakes/FakeJVM.h"
#include "jvm/JVMFile.h"
#include "jvm/JVMMatch.h"
#include "jvm/VerifyClass.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;

// --- The environment of the JVM that is verified ---

// This JVM prints the variables WIZARD and MY_CP as its two values.
const char kShowsVariables[] =
    "printf '1739021872\\n%s\\n%s\\n' \"${WIZARD-unset}\" \"${MY_CP-unset}\"";

struct EnvironmentRow {
  const char* name;
  int purpose;
  test::Tags tags;
  std::string classpath;
  std::string wantedCall;
  std::string wantedLog;  // between the opening lines and the match
};

std::string ranWith(const std::string& arguments, const std::string& wizard,
                    const std::string& classpath) {
  return "Executing launch script command: \"DIR/jdk/bin/java\" " + arguments +
         "  \"Verify\" a b in working directory DIR\n"
         "Output from the launch script execution\nStdOut:\n1739021872\n" +
         wizard + "\n" + classpath + "\n\nErrOut:\n\n";
}

const test::Tags kWizard = {{"SET_ENV_FOR_WIZARD", {"WIZARD=set for it"}}};
const test::Tags kVariable = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}};

const EnvironmentRow kEnvironments[] = {
    {.name = "wizard's variables for purpose 0",
     .purpose = 0,
     .tags = kWizard,
     .classpath = "\"v.jar\"",
     .wantedCall = "[-cp][v.jar][Verify][a][b]",
     .wantedLog = ranWith("-cp \"v.jar\" ", "set for it", "unset")},
    {.name = "no wizard's variables for purpose 1",
     .purpose = 1,
     .tags = kWizard,
     .classpath = "\"v.jar\"",
     .wantedCall = "[-cp][v.jar][Verify][a][b]",
     .wantedLog = ranWith("-cp \"v.jar\" ", "unset", "unset")},
    {.name = "wizard's variables for purpose 2",
     .purpose = 2,
     .tags = kWizard,
     .classpath = "\"v.jar\"",
     .wantedCall = "[-cp][v.jar][Verify][a][b]",
     .wantedLog = ranWith("-cp \"v.jar\" ", "set for it", "unset")},
    {.name = "no wizard's variables for purpose 3",
     .purpose = 3,
     .tags = kWizard,
     .classpath = "\"v.jar\"",
     .wantedCall = "[-cp][v.jar][Verify][a][b]",
     .wantedLog = ranWith("-cp \"v.jar\" ", "unset", "unset")},
    {.name = "quoted class path in a variable",
     .purpose = 1,
     .tags = kVariable,
     .classpath = "\"DIR/v 1.jar\"",
     .wantedCall = "[Verify][a][b]",
     .wantedLog = "Set env var MY_CP to DIR/v 1.jar\n\n" + ranWith(" ", "unset", "DIR/v 1.jar")},
    {.name = "no class path in a variable",
     .purpose = 1,
     .tags = kVariable,
     .classpath = "",
     .wantedCall = "[Verify][a][b]",
     .wantedLog = "Set env var MY_CP to \n\n" + ranWith(" ", "unset", "")},
};

TEST(VerifyEnvironment, ReachesTheJVM) {
  test::LogCapture logCapture;
  for (const EnvironmentRow& row : kEnvironments) {
    SCOPED_TRACE(row.name);
    const test::TempDir homes;
    LauncherTestAccess::setLauncherFileName(homes / "setup");
    LauncherTestAccess::setPurpose(row.purpose);
    const test::ScopedEnvironment wizard("WIZARD", nullptr);
    const test::ScopedEnvironment variable("MY_CP", nullptr);
    const std::string home = test::makeFakeJVM(homes / "jdk", kShowsVariables);
    TagFile tags;
    test::addTags(tags, {{"DESC", {"J"}},
                         {"JVM_EXE", {"bin/java"}},
                         {"JVM_PROPERTIES", {"a=...", "b=..."}},
                         {"CLASSPATH", {"-cp "}}});
    test::addTags(tags, row.tags);
    const SString classpath = sstr(test::replaced(row.classpath, "DIR", homes.path()));
    EXPECT_NE(nullptr, JVMFile(tags).verify(sstr(home), {classpath, "\"Verify\""}));
    EXPECT_EQ("Verifying JVM at DIR/jdk/bin/java\n   for JVM: J\n" + row.wantedLog +
                  "Found matching JVM at DIR/jdk\n",
              test::replaced(logCapture.take(), homes.path(), "DIR"));
    EXPECT_EQ(std::vector<std::string>{row.wantedCall}, test::callsOfFakeJVM(home));
  }
}

}  // namespace
