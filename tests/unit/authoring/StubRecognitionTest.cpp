// The mark of a stub: read from bytes, and found in the stubs that were built.
#include <gtest/gtest.h>

#include <string>

#include "archive/StubMark.h"
#include "authoring/StubRecognition.h"
#include "support/ArchiveFixture.h"

namespace {

std::string textOf(const std::optional<authoring::Stub>& stub) {
  return stub ? stub->kind + "|" + stub->version + "|" + stub->encoding + "|" + stub->machine
              : "none";
}

struct MarkRow {
  const char* name;
  std::string bytes;
  const char* wanted;
};

const std::string kMark = CORVANE_STUB_MARK("k", "1.0", "user", "m");

const MarkRow kMarkRows[] = {
    {"nothing", "", "none"},
    {"the mark alone", kMark, "k|1.0|user|m"},
    {"among other bytes",
     std::string("\x7F"
                 "ELF\0",
                 5) +
         kMark + '\0',
     "k|1.0|user|m"},
    {"the first one counts", CORVANE_STUB_MARK("a", "1", "b", "c") + kMark, "a|1|b|c"},
    {"behind the begin of one", "corvane-stub" + kMark, "k|1.0|user|m"},
    {"with a field of later versions", kMark.substr(0, kMark.size() - 1) + " more=x\n",
     "k|1.0|user|m"},
    {"cut within the last value", kMark.substr(0, kMark.size() - 1), "none"},
    {"cut within a field", kMark.substr(0, 20), "none"},
    {"an empty value", CORVANE_STUB_MARK("k", "", "user", "m"), "none"},
    {"a control character", CORVANE_STUB_MARK("k\x1B", "1", "user", "m"), "none"},
    {"a letter beyond ASCII", CORVANE_STUB_MARK("k", "1", "user", "\xC3\xA9"), "none"},
    {"fields in another order", "corvane-stub version=1 kind=k encoding=e machine=m\n", "none"},
};

TEST(StubRecognition, ReadsTheMark) {
  for (const MarkRow& row : kMarkRows)
    EXPECT_EQ(row.wanted, textOf(authoring::findStubMark(row.bytes))) << row.name;
}

TEST(StubRecognition, KnowsTheStubs) {
  const std::string end = "|" CORVANE_MACHINE;
  EXPECT_EQ("corvane-launcher|" CORVANE_VERSION "|traditional" + end,
            textOf(authoring::recognizeStub(authoring::readLauncherFile(CORVANE_STUB))));
  EXPECT_EQ("corvane-launcher-any|" CORVANE_VERSION "|user" + end,
            textOf(authoring::recognizeStub(authoring::readLauncherFile(CORVANE_STUB_ANY))));
}

// A launcher among the embedded files has a mark of its own.
TEST(StubRecognition, LooksInFrontOfTheEmbeddedFiles) {
  test::TempDir dir;
  const test::StoredFile inner{FILE_TYPE_LAUNCHER, 1, "inner", kMark};
  test::writeFile(dir / "foreign", test::launcherFileBytes({inner}));
  EXPECT_EQ("none", textOf(authoring::recognizeStub(authoring::readLauncherFile(dir / "foreign"))));
  const std::string other = CORVANE_STUB_MARK("a", "1", "b", "c");
  test::writeFile(dir / "ours", test::launcherFileBytes({inner}, 0, other));
  EXPECT_EQ("a|1|b|c", textOf(authoring::recognizeStub(authoring::readLauncherFile(dir / "ours"))));
}

TEST(StubRecognition, DescribesAStub) {
  EXPECT_EQ("k 1.0 (m)", authoring::describeStub({"k", "1.0", "user", "m"}));
}

}  // namespace
