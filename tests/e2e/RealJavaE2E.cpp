// The machine's own Java, found by each strategy, and a large Java program that we did not write:
// Apache Ant, packed both as class-path archives and as an application archive.
#include <stdlib.h>

#include <filesystem>

#include "e2e/LauncherTest.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

constexpr const char* kAntJar = "/usr/share/ant/lib/ant.jar";
constexpr const char* kAntLauncherJar = "/usr/share/ant/lib/ant-launcher.jar";
constexpr const char* kBuildFile = R"(<project default="greet">
  <target name="greet">
    <echo file="${record}" encoding="UTF-8">${greeting}</echo>
    <fail if="broken" message="it broke" status="3"/>
  </target>
</project>
)";

class RealJava : public LauncherTest {
 protected:
  void SetUp() override {
    if (std::string(CORVANE_JAVA_EXE).empty()) {
      GTEST_SKIP() << "there is no JDK";
    }
    const fs::path java = fs::canonical(CORVANE_JAVA_EXE);
    m_home = java.parent_path().parent_path().string();
    setEnv("LC_ALL", "C.UTF-8");  // so that Java takes its arguments as UTF-8
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", test::readFile(CORVANE_VERIFY_JAR));
  }

  void embedJavaFile(const std::string& tags) {
    embed(FILE_TYPE_JVM, 10, "java.jvm",
          "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES:\njava.specification.version=...\n"
          "java.vendor=...\n/:\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\nSYSTEM: -D\n"
          "SYSTEM_SEPARATOR: =\n" +
              tags);
  }

  // Runs Ant with a greeting that holds what is hard to hand on.
  void runAnt(const std::string& launchTag, int status, std::vector<std::string> more = {}) {
    embedJavaFile("PLATFORM_HINT: REAL_HOME\n");
    setEnv("REAL_HOME", m_home);
    embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "ant.lsc",
          "DESC: Ant\nCOMMAND: @JVM_HOME@/@JVM_EXE@ %CP%() org.apache.tools.ant.Main\n" +
              launchTag + "\n");
    embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0"});
    const std::string greeting = "it's \"two\" words, gr\xC3\xBC\xC3\x9F  Gott";
    std::vector<std::string> args{"-f", test::writeFile(dir("build file.xml"), kBuildFile),
                                  "-Dgreeting=" + greeting, "-Drecord=" + dir("record.txt")};
    args.insert(args.end(), more.begin(), more.end());
    const Result result = run(args);
    EXPECT_EQ(status, result.status) << result.out << result.log;
    EXPECT_EQ(greeting, test::readFile(dir("record.txt")));
    if (status != 0) {
      EXPECT_NE(std::string::npos, result.out.find("it broke"));
    }
  }

  std::string m_home;
};

TEST_F(RealJava, FoundByEachStrategy) {
  struct Row {
    const char* name;
    std::string tags;
    std::vector<std::string> args;
    const char* variable;
    std::string value;
  };
  const std::string bin = m_home + "/bin";
  const Row rows[] = {
      {"platform hint", "PLATFORM_HINT: JAVA_PLACES\n", {}, "JAVA_PLACES", "/none:" + m_home},
      {"path hint", "PATH_HINT: " + m_home + "\n", {}, "IGNORED", ""},
      {"the directories of PATH", "", {}, "PATH", "/usr/sbin:" + bin + ":/usr/bin:/bin"},
      {"the user's home", "", {"-cv:javahome", m_home + "/"}, "IGNORED", ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles(FILE_TYPE_JVM);
    forgetFiles(FILE_TYPE_INSTRUCTIONS);
    embedJavaFile(row.tags);
    embedInstructions({"FIND_JVM 0 1", "ILAUNCH @N1@ 0"});
    setEnv("PATH", "/nowhere");
    setEnv(row.variable, row.value);
    pack();
    const Result result = run(row.args);
    EXPECT_NE(std::string::npos, result.log.find("Matching JVM home is " + m_home)) << result.log;
  }
}

TEST_F(RealJava, AntOnTheClassPath) {
  if (!fs::exists(kAntJar)) {
    GTEST_SKIP() << "Apache Ant is not installed";
  }
  embed(FILE_TYPE_JAR, 5, "ant.jar", test::readFile(kAntJar));
  embed(FILE_TYPE_JAR, 6, "ant-launcher.jar", test::readFile(kAntLauncherJar));
  runAnt("", 0);
}

TEST_F(RealJava, AntAsApplicationArchive) {
  if (!fs::exists(kAntJar)) {
    GTEST_SKIP() << "Apache Ant is not installed";
  }
  embed(FILE_TYPE_APPLICATION_ARCHIVE, 5, "ant all in one.jar", test::readFile(kAntJar));
  embed(FILE_TYPE_JAR, 6, "ant-launcher.jar", test::readFile(kAntLauncherJar));
  runAnt(R"tag(ARCHIVE: """%APPLICATION_ARCHIVE%()""")tag", 0);
}

TEST_F(RealJava, AntsFailureIsTheSetups) {
  if (!fs::exists(kAntJar)) {
    GTEST_SKIP() << "Apache Ant is not installed";
  }
  embed(FILE_TYPE_JAR, 5, "ant.jar", test::readFile(kAntJar));
  embed(FILE_TYPE_JAR, 6, "ant-launcher.jar", test::readFile(kAntLauncherJar));
  runAnt("", 3, {"-Dbroken=1"});
}

}  // namespace
}  // namespace e2e
