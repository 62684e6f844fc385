// Which programs are the same, and which kind they are of.
#include "platform/ProgramFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "support/OrdinaryUser.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::sstr;

using Kind = ProgramFile::Kind;

#ifdef __linux__
constexpr Kind kOpenJDK = Kind::OpenJDKLauncher;
#else
constexpr Kind kOpenJDK = Kind::Binary;
#endif

struct KindRow {
  const char* name;
  std::string bytes;
  Kind wanted;
};

// `beginning`, then zeros up to `size`.
std::string filled(std::string beginning, std::size_t size) {
  beginning.resize(size);
  return beginning;
}

const KindRow kKinds[] = {
    {"empty", "", Kind::Script},
    {"three bytes", "\177EL", Kind::Script},
    {"four bytes of ELF", "\177ELF", Kind::Binary},
    {"ELF", "\177ELF\2\1\1\0...."s, Kind::Binary},
    {"ELF of OpenJDK", "\177ELF\2\1\1...\0JLI_Launch\0"s, kOpenJDK},
    {"the largest of OpenJDK", filled("\177ELF JLI_Launch", 512 << 10), kOpenJDK},
    {"a larger ELF", filled("\177ELF JLI_Launch", (512 << 10) + 1), Kind::Binary},
    {"Mach-O, 32 bits", "\xfe\xed\xfa\xce....", Kind::Binary},
    {"Mach-O, 64 bits", "\xfe\xed\xfa\xcf....", Kind::Binary},
    {"Mach-O, 32 bits, lowest byte first", "\xce\xfa\xed\xfe....", Kind::Binary},
    {"Mach-O, 64 bits, lowest byte first", "\xcf\xfa\xed\xfe....", Kind::Binary},
    {"Mach-O, two processors", "\xca\xfe\xba\xbe\0\0\0\2"s, Kind::Binary},
    {"Mach-O, 44 processors", "\xca\xfe\xba\xbe\0\0\0\54"s, Kind::Binary},
    {"class of Java 1.1", "\xca\xfe\xba\xbe\0\3\0\55"s, Kind::Script},
    {"class of Java 1.1 without a minor version", "\xca\xfe\xba\xbe\0\0\0\55"s, Kind::Script},
    {"class of Java 17", "\xca\xfe\xba\xbe\0\0\0\75"s, Kind::Script},
    {"class of a preview", "\xca\xfe\xba\xbe\xff\xff\0\75"s, Kind::Script},
    {"cut before its number", "\xca\xfe\xba\xbe\0\0\0"s, Kind::Script},
    {"script", "#!/bin/sh\n", Kind::Script},
    {"script of OpenJDK's words", "#!/bin/sh\n# JLI_Launch\n", Kind::Script},
    {"script without a mark", "exit 0\n", Kind::Script},
};

TEST(ProgramFileTest, Kinds) {
  const test::TempDir dir;
  const std::string path = dir / "java";
  for (const KindRow& row : kKinds) {
    SCOPED_TRACE(row.name);
    test::writeFile(path, row.bytes);
    const auto program = ProgramFile::at(sstr(path));
    ASSERT_TRUE(program);
    EXPECT_EQ(row.wanted, program->kind());
  }
}

TEST(ProgramFileTest, WhatCannotBeReadCountsAsAScript) {
  const test::TempDir dir;
  const std::string path = test::writeFile(dir / "java", "\177ELF");
  ASSERT_EQ(0, chmod(dir.path().c_str(), 0755));
  ASSERT_EQ(0, chmod(path.c_str(), 0111));
  const test::OrdinaryUser user;
  const auto program = ProgramFile::at(sstr(path));
  ASSERT_TRUE(program);
  EXPECT_EQ(Kind::Script, program->kind());
}

TEST(ProgramFileTest, WhatIsGoneCountsAsAScript) {
  const test::TempDir dir;
  const std::string path = test::writeFile(dir / "java", "\177ELF");
  const auto program = ProgramFile::at(sstr(path));
  fs::remove(path);
  ASSERT_TRUE(program);
  EXPECT_EQ(Kind::Script, program->kind());
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
  fs::create_symlink("round", dir / "round");
  ASSERT_EQ(0, mkfifo((dir / "fifo").c_str(), 0600));
  test::writeFile(dir / "file", "x");
  for (const char* name : {"missing", "dangling", "round", "fifo", ".", "file/java"}) {
    EXPECT_FALSE(ProgramFile::at(sstr(dir / name))) << name;
  }
  EXPECT_FALSE(ProgramFile::at("/dev/null"));
}

}  // namespace
