// Each Java that a scan of the disks finds is started once, whatever leads to it.
#include <filesystem>

#include "e2e/ScanFixture.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

class AskedOnceOnDisk : public Scan {
 protected:
  // Homes /opt/jdk and /opt/exe with one Java, and jvm files that do not take it.
  void SetUp() override {
    Scan::SetUp();
    if (IsSkipped()) {
      return;
    }
    bringLibrariesOf(CORVANE_STAND_IN_JAVA);
    fs::create_directories(dir("jail/opt/jdk/bin"));
    fs::create_directories(dir("jail/opt/exe/bin"));
    fs::copy_file(CORVANE_STAND_IN_JAVA, dir("jail/opt/jdk/bin/java"));
    fs::create_symlink("/opt/jdk/bin/java", dir("jail/opt/exe/bin/java"));
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
    int id = 10;
    for (const std::string wanted : {"18...", "19...", "18..."}) {
      embed(FILE_TYPE_JVM, id, "jvm" + std::to_string(id) + ".jvm",
            "DESC: Java\nJVM_EXE: bin/java\nCLASSPATH: \"-cp \"\nSEARCH_ALL: 1\n"
            "JVM_PROPERTIES: java.version = " +
                wanted + "\n");
      ++id;
    }
    embedInstructions({"FIND_JVM 0 0"});
  }

  void expectOneStart(const std::vector<std::string>& args) {
    const std::string log = runInside(args).log;
    EXPECT_EQ(2 * 3, test::countOf("Verifying JVM at /opt/", log)) << log;
    EXPECT_EQ(1, test::countOf("\n", test::readFile(dir("jail/opt/jdk/starts"))));
  }
};

// The first jvm file while the walk goes on, the others at its end.
TEST_F(AskedOnceOnDisk, ByASearchThatScans) {
  expectOneStart({});
}

TEST_F(AskedOnceOnDisk, ByTheActionSearchAll) {
  test::writeFile(dir("jail/app/input"), "LOGFILE: /log\nACTION: SEARCH_ALL\n");
  expectOneStart({"-cv:in", "/app/input"});
}

}  // namespace
}  // namespace e2e
