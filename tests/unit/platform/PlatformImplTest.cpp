// The environment, small file operations and the conversion of wide characters.
#include "platform/PlatformImpl.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/OwnProcess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

using test::str;
using test::toVector;
using Strings = std::vector<std::string>;

// --- Environment ---

struct HintRow {
  const char* name;
  const char* value;  // null: not set
  Strings wanted;
};

const HintRow kHintRows[] = {
    {"not set", nullptr, {}},
    {"empty", "", {}},
    {"one directory", "/opt/jvm", {"/opt/jvm"}},
    {"two directories", "/a:/b", {"/a", "/b"}},
    {"separator at the end", "/a:", {"/a", ""}},
    {"separator at the start", ":/a", {"", "/a"}},
    {"separator alone", ":", {"", ""}},
    {"two separators together", "/a::/b", {"/a", "", "/b"}},
    {"blanks and semicolons stay", " /a ;/b: /c", {" /a ;/b", " /c"}},
};

TEST(PlatformImpl, PlatformHints) {
  for (const HintRow& row : kHintRows) {
    const test::ScopedEnvironment variable("CORVANE_HINT", row.value);
    StringDeque homes;
    homes.push_back("left over");
    PlatformImpl::getPlatformHint(homes, "CORVANE_HINT");
    EXPECT_EQ(row.wanted, toVector(homes)) << row.name;
  }
}

TEST(PlatformImpl, HintWithoutNameIsEmpty) {
  StringDeque homes;
  homes.push_back("left over");
  PlatformImpl::getPlatformHint(homes, "");
  EXPECT_EQ(Strings(), toVector(homes));
}

TEST(PlatformImpl, JVMPathsAreThoseOfPath) {
  const test::ScopedEnvironment path("PATH", "/a/bin::/b/bin");
  StringDeque dirs;
  PlatformImpl::getPlatformJVMPaths(dirs);
  EXPECT_EQ((Strings{"/a/bin", "", "/b/bin"}), toVector(dirs));
}

TEST(PlatformImpl, PartitionsAreAppended) {
  StringDeque partitions;
  partitions.push_back("kept");
  PlatformImpl::getJVMSearchPartitions(partitions);
  EXPECT_EQ((Strings{"kept", "/"}), toVector(partitions));
}

TEST(PlatformImpl, PathSeparator) {
  EXPECT_EQ("/", str(PlatformImpl::getPathSeparator()));
}

struct VariableRow {
  const char* name;
  const char* value;
};

const VariableRow kVariableRows[] = {
    {"new", "one"},         {"replaced", "two"}, {"replaced by a longer one", "three and more"},
    {"empty", ""},          {"with =", "a=b=c"}, {"with blanks and lines", " a\nb "},
    {"with bytes", "\xE9"},
};

TEST(PlatformImpl, SetEnvironmentVariable) {
  const test::ScopedEnvironment putBack("CORVANE_VARIABLE", nullptr);
  for (const VariableRow& row : kVariableRows) {
    PlatformImpl::setEnvironmentVariable("CORVANE_VARIABLE", row.value);
    EXPECT_STREQ(row.value, std::getenv("CORVANE_VARIABLE")) << row.name;
    EXPECT_EQ(row.value, str(PlatformImpl::getEnvironmentVariable("CORVANE_VARIABLE"))) << row.name;
  }
}

struct OddNameRow {
  const char* name;
  SString variable;
  SString value;
  const char* wanted;  // the entry of the environment
};

const OddNameRow kOddNameRows[] = {
    {"no name", "", "x", "=x"},
    {"name with =", "CORVANE_VARIABLE=a", "b", "CORVANE_VARIABLE=a=b"},
    {"blanks around", " CORVANE ", "x", " CORVANE =x"},
    {"value that ends for C", "CORVANE_VARIABLE", SString("a\0b", 3), "CORVANE_VARIABLE=a"},
};

TEST(PlatformImpl, SetEnvironmentVariableTakesAnyName) {
  for (const OddNameRow& row : kOddNameRows) {
    EXPECT_EQ(row.wanted, test::outputOf([&] {
                clearenv();
                PlatformImpl::setEnvironmentVariable(row.variable, row.value);
                std::fputs(environ[0], stdout);
              }))
        << row.name;
  }
}

TEST(PlatformImpl, UnsetVariableIsEmpty) {
  const test::ScopedEnvironment unset("CORVANE_VARIABLE", nullptr);
  EXPECT_EQ("", str(PlatformImpl::getEnvironmentVariable("CORVANE_VARIABLE")));
  EXPECT_EQ("", str(PlatformImpl::getEnvironmentVariable("")));
}

TEST(PlatformImpl, VariableIsIndependentOfItsSources) {
  const test::ScopedEnvironment putBack("CORVANE_VARIABLE", nullptr);
  {
    SString value = "kept";
    PlatformImpl::setEnvironmentVariable("CORVANE_VARIABLE", value);
    value.replace(0, 4, "gone");
  }
  EXPECT_STREQ("kept", std::getenv("CORVANE_VARIABLE"));
}

// --- Files ---

struct ModeRow {
  const char* name;
  mode_t before;
  mode_t wanted;
};

const ModeRow kModeRows[] = {
    {"plain", 0644, 0755},
    {"private", 0600, 0711},
    {"no rights", 0000, 0111},
    {"executable", 0755, 0755},
    {"for the owner only", 0700, 0711},
    {"special bits", 01644, 01755},
};

TEST(PlatformImpl, SetFileExecutable) {
  test::TempDir dir;
  const std::string path = test::writeFile(dir / "file", "x");
  for (const ModeRow& row : kModeRows) {
    ASSERT_EQ(0, chmod(path.c_str(), row.before));
    PlatformImpl::setFileExecutable(path.c_str());
    struct stat status = {};
    ASSERT_EQ(0, stat(path.c_str(), &status));
    EXPECT_EQ(row.wanted, status.st_mode & 07777) << row.name;
  }
}

TEST(PlatformImpl, SetFileExecutableIgnoresAMissingFile) {
  test::TempDir dir;
  PlatformImpl::setFileExecutable((dir / "missing").c_str());
  EXPECT_EQ(Strings(), test::listTree(dir.path()));
}

// --- Wide characters ---

struct WideRow {
  const char* name;
  const wchar_t* wide;
  const char* inC;
  const char* inUtf8;
};

constexpr wchar_t kStrayByte[] = {L'a', static_cast<wchar_t>(-61), L'b', 0};

const WideRow kWideRows[] = {
    {"empty", L"", "", ""},
    {"ASCII", L"Foo 1.0\x7F", "Foo 1.0\x7F", "Foo 1.0\x7F"},
    {"letter of two bytes", L"a\x00E9z", "a", "a\xC3\xA9z"},
    {"letter of three bytes", L"\x65E5", "", "\xE6\x97\xA5"},
    {"character of four bytes", L"\x1F600!", "", "\xF0\x9F\x98\x80!"},
    {"sign-extended byte", kStrayByte, "a", "a"},
    {"half of a pair", L"a\xD83Dz", "a", "a"},
    {"something before and behind", L"\x00E9\xD83D\x00E9", "", "\xC3\xA9"},
};

TEST(PlatformImpl, WideToMultiByte) {
  const test::ScopedEnvironment all("LC_ALL", "C");
  for (const WideRow& row : kWideRows) {
    EXPECT_EQ(row.inC, str(PlatformImpl::wideToMultiByte(row.wide))) << row.name;
  }
}

TEST(PlatformImpl, WideToMultiByteInUtf8) {
  const test::ScopedEnvironment all("LC_ALL", "C.UTF-8");
  for (const WideRow& row : kWideRows) {
    EXPECT_EQ(row.inUtf8, str(PlatformImpl::wideToMultiByte(row.wide))) << row.name;
  }
}

TEST(PlatformImpl, WideToMultiByteOfALongText) {
  const std::wstring wide(100000, L'x');
  EXPECT_EQ(std::string(100000, 'x'), str(PlatformImpl::wideToMultiByte(wide.c_str())));
}

}  // namespace
