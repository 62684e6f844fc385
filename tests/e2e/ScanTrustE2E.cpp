// What the scan of a disk finds is run by root only when nobody else could have put it there.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "e2e/ScanFixture.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

class ScanTrust : public Scan {
 protected:
  void SetUp() override {
    if (geteuid() != 0) {
      GTEST_SKIP() << "only root can give files away";
    }
    Scan::SetUp();
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  }

  // A Java that tells that it was run.
  void placeTelling(const std::string& home) {
    test::writeScript(dir("jail" + home + "/bin/java"),
                      "#!/bin/sh\n: >/ran\nprintf '%s\\n' 1739021872 17.0.1\n");
  }
  void give(const std::string& path, uid_t user) {
    ASSERT_EQ(0, lchown(dir("jail" + path).c_str(), user, 0));
  }
  bool wasRun() { return fs::remove(dir("jail/ran")); }
};

TEST_F(ScanTrust, WhatAStrangerCanPutThereIsNotRun) {
  embedJVM("SEARCH_ALL: 1\n");
  embedInstructions({"FIND_JVM 0 1"});
  embedLaunchScript();
  struct Row {
    const char* name;
    const char* changed;
    uid_t owner;
    mode_t mode;
    const char* caller;
    const char* reason;  // empty: it is run
  };
  const Row rows[] = {
      {"root's", "/opt/x", 0, 0755, "", ""},
      {"a stranger's program", "/opt/x/bin/java", 1000, 0755, "",
       "/opt/x/bin/java: it belongs to user 1000"},
      {"a stranger's home", "/opt/x", 1000, 0755, "", "/opt/x: it belongs to user 1000"},
      {"the caller's", "/opt/x", 1000, 0755, "1000", ""},
      {"another's than the caller's", "/opt/x", 1001, 0755, "1000",
       "/opt/x: it belongs to user 1001"},
      {"open to everybody", "/opt", 0, 0777, "", "/opt: everybody can write there"},
      {"sticky", "/opt", 0, 01777, "", ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    fs::remove_all(dir("jail/opt"));
    placeTelling("/opt/x");
    give(row.changed, row.owner);
    ASSERT_EQ(0, chmod(dir(std::string("jail") + row.changed).c_str(), row.mode));
    setEnv("SUDO_UID", row.caller);
    const Result result = runInside({});
    const std::string refusal =
        "WARNING: Not trusted and not tried as root: /opt/x/bin/java because of ";
    if (row.reason[0] == '\0') {
      EXPECT_TRUE(wasRun());
      EXPECT_EQ(std::string::npos, result.log.find("Not trusted"));
    } else {
      EXPECT_FALSE(wasRun());
      EXPECT_NE(std::string::npos, result.log.find(refusal + row.reason + "\n")) << result.log;
      EXPECT_EQ(std::string::npos, result.log.find("Verifying JVM at /opt"));
    }
  }
}

// Nobody is asked about what was named on purpose.
TEST_F(ScanTrust, WhatIsNamedIsRunAsBefore) {
  embedInstructions({"FIND_JVM 0 1"});
  embedLaunchScript();
  placeTelling("/opt/x");
  give("/opt/x", 1000);
  embedJVM("SEARCH_ALL: 0\n");
  runInside({"-cv:javahome", "/opt/x"});
  EXPECT_TRUE(wasRun());
  setEnv("PATH", "/bin:/opt/x/bin");
  runInside({});
  EXPECT_TRUE(wasRun());
  setEnv("PATH", "/bin");
  runInside({});
  EXPECT_FALSE(wasRun());
  forgetFiles(FILE_TYPE_JVM);
  embedJVM("PATH_HINT: /opt/x\n");
  pack();
  runInside({});
  EXPECT_TRUE(wasRun());
}

TEST_F(ScanTrust, TheOthersAreStillFound) {
  place("/opt/good", "17.0.1");
  place("/opt/bad", "17.0.2");
  give("/opt/bad", 1000);
  fs::create_directories(dir("jail/links/bin"));
  fs::create_symlink("/opt/bad/bin/java", dir("jail/links/bin/java"));
  embedJVM("");
  test::writeFile(dir("jail/in.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /log\n");
  const Result result = runInside({"-cv:in", "/in.tag"});
  EXPECT_TRUE(result.out.starts_with("1\n/opt/good\n")) << result.out;
  for (const char* path : {"/opt/bad/bin/java", "/links/bin/java"}) {
    EXPECT_NE(std::string::npos,
              result.log.find("WARNING: Not trusted and not tried as root: " + std::string(path) +
                              " because of /opt/bad: it belongs to user 1000\n"))
        << result.log;
  }
  for (const std::string& file : test::listTree(dir("jail/tmp"))) {
    fs::remove(dir("jail/tmp/") + file);
  }
}

}  // namespace
}  // namespace e2e
