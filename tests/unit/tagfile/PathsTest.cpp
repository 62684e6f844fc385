#include "tagfile/Paths.h"

#include <gtest/gtest.h>

#include "support/Texts.h"

namespace {

using test::str;

struct PathRow {
  const char* name;
  const char* path;
  const char* directory;
  const char* baseName;
  const char* directoryOfEither;  // with "\" as a separator, too
  const char* baseNameOfEither;
};

constexpr PathRow kPathRows[] = {
    {.name = "absolute",
     .path = "/opt/setup/run.bin",
     .directory = "/opt/setup",
     .baseName = "run.bin",
     .directoryOfEither = "/opt/setup",
     .baseNameOfEither = "run.bin"},
    {.name = "relative",
     .path = "bin/java",
     .directory = "bin",
     .baseName = "java",
     .directoryOfEither = "bin",
     .baseNameOfEither = "java"},
    {.name = "no separator",
     .path = "java",
     .directory = "",
     .baseName = "java",
     .directoryOfEither = "",
     .baseNameOfEither = "java"},
    {.name = "in the root",
     .path = "/java",
     .directory = "",
     .baseName = "java",
     .directoryOfEither = "",
     .baseNameOfEither = "java"},
    {.name = "separator at the end",
     .path = "/opt/",
     .directory = "/opt",
     .baseName = "",
     .directoryOfEither = "/opt",
     .baseNameOfEither = ""},
    {.name = "several separators",
     .path = "a//b",
     .directory = "a/",
     .baseName = "b",
     .directoryOfEither = "a/",
     .baseNameOfEither = "b"},
    {.name = "backslash",
     .path = "lib\\a.jar",
     .directory = "",
     .baseName = "lib\\a.jar",
     .directoryOfEither = "lib",
     .baseNameOfEither = "a.jar"},
    {.name = "backslash behind",
     .path = "/opt/a\\b",
     .directory = "/opt",
     .baseName = "a\\b",
     .directoryOfEither = "/opt/a",
     .baseNameOfEither = "b"},
    {.name = "slash behind",
     .path = "a\\b/c",
     .directory = "a\\b",
     .baseName = "c",
     .directoryOfEither = "a\\b",
     .baseNameOfEither = "c"},
    {.name = "separator alone",
     .path = "/",
     .directory = "",
     .baseName = "",
     .directoryOfEither = "",
     .baseNameOfEither = ""},
    {.name = "empty",
     .path = "",
     .directory = "",
     .baseName = "",
     .directoryOfEither = "",
     .baseNameOfEither = ""},
};

TEST(Paths, DirectoryAndBaseName) {
  for (const PathRow& row : kPathRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.directory, str(directoryOf(row.path)));
    EXPECT_EQ(row.baseName, str(baseNameOf(row.path)));
    EXPECT_EQ(row.directoryOfEither, str(directoryOf(row.path, kEitherSeparator)));
    EXPECT_EQ(row.baseNameOfEither, str(baseNameOf(row.path, kEitherSeparator)));
  }
}

}  // namespace
