// Which programs are the same, and which kind they are of.
#include "platform/ProgramFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::sstr;

struct KindRow {
  const char* name;
  std::string bytes;
  bool isBinary;
  bool isOpenJDKLauncher;
};

const KindRow kKinds[] = {
    {"empty", "", false, false},
    {"three bytes",
     "\x7f"
     "EL",
     false, false},
    {"ELF",
     "\x7f"
     "ELF\2\1\1",
     true, false},
    {"ELF of OpenJDK",
     "\x7f"
     "ELF\2\1\1...\0JLI_Launch\0"s,
     true, true},
    {"a large ELF",
     "\x7f"
     "ELF JLI_Launch" +
         std::string(std::size_t{512} << 10, ' '),
     true, false},
    {"Mach-O, 32 bits", "\xfe\xed\xfa\xce", true, false},
    {"Mach-O, 64 bits", "\xcf\xfa\xed\xfe", true, false},
    {"Mach-O, several processors", "\xca\xfe\xba\xbe", true, false},
    {"script", "#!/bin/sh\n", false, false},
    {"script without a mark", "exit 0\n", false, false},
};

TEST(ProgramFileTest, Kinds) {
  const test::TempDir dir;
  const std::string path = dir / "java";
  for (const KindRow& row : kKinds) {
    SCOPED_TRACE(row.name);
    test::writeFile(path, row.bytes);
    const auto program = ProgramFile::at(sstr(path));
    ASSERT_TRUE(program);
    EXPECT_EQ(row.isBinary, program->isBinary());
#ifdef __linux__
    EXPECT_EQ(row.isOpenJDKLauncher, program->isOpenJDKLauncher());
#endif
  }
}

TEST(ProgramFileTest, LinksLeadToTheSameAndHardLinksDoNot) {
  const test::TempDir dir;
  test::writeFile(dir / "jdk/java", "x");
  fs::create_symlink("jdk", dir / "link");
  fs::create_symlink("link/java", dir / "java");
  fs::create_hard_link(dir / "jdk/java", dir / "hard");
  const auto program = ProgramFile::at(sstr(dir / "jdk/java"));
  ASSERT_TRUE(program);
  for (const char* name : {"link/java", "java", "jdk/../jdk//java"}) {
    EXPECT_EQ(program, ProgramFile::at(sstr(dir / name))) << name;
  }
  EXPECT_NE(program, ProgramFile::at(sstr(dir / "hard")));
}

TEST(ProgramFileTest, EachChangeTells) {
  const test::TempDir dir;
  const std::string path = test::writeFile(dir / "java", "x");
  const auto program = ProgramFile::at(sstr(path));
  ASSERT_TRUE(program);
  const timespec times[2] = {{1, 0}, {1, 0}};
  ASSERT_EQ(0, utimensat(0, path.c_str(), times, 0));
  EXPECT_NE(program, ProgramFile::at(sstr(path)));
  test::writeFile(path, "xy");
  EXPECT_NE(program, ProgramFile::at(sstr(path)));
}

TEST(ProgramFileTest, WhatIsNoOrdinaryFileIsNoProgram) {
  const test::TempDir dir;
  fs::create_symlink("nothing", dir / "dangling");
  for (const char* name : {"missing", "dangling", "."}) {
    EXPECT_FALSE(ProgramFile::at(sstr(dir / name))) << name;
  }
  EXPECT_FALSE(ProgramFile::at("/dev/null"));
}

}  // namespace
