#include <gtest/gtest.h>

#include "support/ClasspathFixture.h"

namespace {

using SideFilesTest = test::ClasspathTest;
using test::SideFile;

// --- Properties and arguments of side files ---

struct SideFileRow {
  const char* name;
  std::vector<SideFile> files;
  std::string command;
  std::string wanted;
  test::Tags tags = {};
};

const test::Tags kProperties = {{"SYSTEM", {"-D"}}, {"SYSTEM_SEPARATOR", {"="}}, {"X", {"ex"}}};

const SideFileRow kSideFiles[] = {
    {"no properties", {}, "[%RUNTIME_SYSTEMPROP%()]", "[]"},
    {"one property", {{".sp", "a=b\n"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=b]"},
    {"two properties", {{".sp", "a=b\nc=d"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=b -Dc=d]"},
    {"lines without an equal sign are skipped",
     {{".sp", "a\n\nb=c\nd\n"}},
     "[%RUNTIME_SYSTEMPROP%()]",
     "[-Db=c]"},
    {"value with an equal sign", {{".sp", "a=b=c"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=b=c]"},
    {"blanks around the equal sign stay",
     {{".sp", "  a = b  \r\n"}},
     "[%RUNTIME_SYSTEMPROP%()]",
     "[-Da = b]"},
    {"empty name, empty value", {{".sp", "=b\na="}}, "[%RUNTIME_SYSTEMPROP%()]", "[-D=b -Da=]"},
    {"value is resolved", {{".sp", "a=@X@"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=ex]"},

    {"no arguments", {}, "[%RUNTIME_JAVAARGS%()]", "[]"},
    {"one argument", {{".ja", "-Xint\n"}}, "[%RUNTIME_JAVAARGS%()]", "[-Xint]"},
    {"two arguments", {{".ja", "-Xint\n-ea"}}, "[%RUNTIME_JAVAARGS%()]", "[-Xint -ea]"},
    {"several on a line",
     {{".ja", " -Xint   -ea \r\n\n-da"}},
     "[%RUNTIME_JAVAARGS%()]",
     "[-Xint   -ea -da]"},
    {"arguments are resolved", {{".ja", "-x @X@"}}, "[%RUNTIME_JAVAARGS%()]", "[-x ex]"},
    {"an argument that resolves to nothing is skipped",
     {{".ja", "-a\n@Y@\n-b"}},
     "[%RUNTIME_JAVAARGS%()]",
     "[-a -b]"},
    {"required arguments behind them",
     {{".ja", "-Xint"}},
     "[%RUNTIME_JAVAARGS%()]",
     "[-Xint -req]",
     {{"REQ_JAVA_ARGS", {"-req"}}}},
    {"required-args-after-blank",
     {},
     "[%RUNTIME_JAVAARGS%()]",
     "[ -req]",
     {{"REQ_JAVA_ARGS", {"-req", "second value"}}}},
    {"required arguments wait for the next pass",
     {},
     "[%RUNTIME_JAVAARGS%()]",
     "[ -req ex]",
     {{"REQ_JAVA_ARGS", {"-req @X@"}}}},
};

TEST_F(SideFilesTest, ReadsPropertiesAndArguments) {
  for (const SideFileRow& row : kSideFiles) {
    SCOPED_TRACE(row.name);
    begin("", "", row.files);
    test::Tags tags = kProperties;
    tags.insert(tags.end(), row.tags.begin(), row.tags.end());
    EXPECT_EQ(row.wanted, resolve(row.command, tags));
    EXPECT_EQ("", takeLog());
  }
}

// --- Where the side files lie ---

struct NameRow {
  const char* name;
  std::string launcher;
  std::string wanted;
};

const NameRow kNames[] = {
    {"without extension", "DIR/setup", "DIR/setup.cp"},
    {"with extension", "DIR/setup.bin", "DIR/setup.cp"},
    {"with two extensions", "DIR/setup.tar.bin", "DIR/setup.tar.cp"},
    {"dot at the end", "DIR/setup.", "DIR/setup.cp"},
    {"dot in the folder only", "DIR/x.y/setup", "DIR/x.y/setup.cp"},
    {"dot in the folder and the name", "DIR/x.y/setup.sh", "DIR/x.y/setup.cp"},
    {"name begins with a dot", "DIR/.setup", "DIR/.cp"},
    {"dot in front of a backslash", "DIR/x.y\\setup", "DIR/x.y\\setup.cp"},
    {"dot behind a backslash", "DIR/x\\setup.bin", "DIR/x\\setup.cp"},
    {"no folder", "setup.bin", "setup.cp"},
    {"no folder, no extension", "setup", "setup.cp"},
};

TEST_F(SideFilesTest, LooksForSideFilesBesideTheOriginalLauncher) {
  for (const NameRow& row : kNames) {
    SCOPED_TRACE(row.name);
    begin("", "", {});
    const test::ScopedCurrentDir current(m_dir->path());
    LauncherTestAccess::setOriginalLauncherFileName(here(row.launcher));
    const std::string path = here(row.wanted);
    test::writeFile(path.starts_with("/") ? path : *m_dir / path, "found");
    EXPECT_EQ("-cp found", resolve("%CP%()", {}));
  }
}

}  // namespace
