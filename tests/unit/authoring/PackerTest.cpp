#include "authoring/Packer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "archive/StubMark.h"
#include "authoring/AuthoringError.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/Listing.h"
#include "support/ArchiveFixture.h"
#include "support/Texts.h"
#include "unit/authoring/SetupBytes.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class PackerTest : public testing::Test {
 protected:
  PackerTest() {
    write("stub", "the stub\n");
    write("i.tag", "INSTRUCTIONS:\n//\n/:\n");
    write("a.jar", "PK");
    write("bad.tag", "A: 1\nB\n");
    write("unquoted.tag", "A: \"1\n");
    write("m.json", R"({"purpose": 2, "files": [{"type": "instructions", "path": "i.tag"},
        {"type": "archive", "path": "a.jar", "decompressed": {"files": 3, "bytes": 4}}]})");
  }

  std::string write(const std::string& name, const std::string& bytes) {
    return test::writeFile(m_dir / name, bytes);
  }
  std::string errorOf(const authoring::PackOptions& options) {
    return errorOf([&] { authoring::packLauncher(options); });
  }
  template <class Step>
  std::string errorOf(Step step) {
    return test::replaced(test::errorOf<authoring::AuthoringError>(step), m_dir.path(), "DIR");
  }
  authoring::PackOptions options(const std::string& manifest, const std::string& stub,
                                 const std::string& output) {
    return {m_dir / manifest, {}, m_dir / stub, m_dir / output, true};
  }

  test::TempDir m_dir;
};

TEST_F(PackerTest, MakesALauncherFile) {
  umask(027);
  const auto result = authoring::packLauncher(options("m.json", "stub", "setup"));
  EXPECT_EQ(2u, result.files);
  EXPECT_EQ(test::setupBytes(
                {{0, 1, "i.tag", "INSTRUCTIONS:\n//\n/:\n"}, {6, 2, "a.jar", "PK", {{3, 4}}}}, 2,
                "the stub\n"),
            test::readFile(m_dir / "setup"));
  EXPECT_EQ(static_cast<std::size_t>(result.size), test::readFile(m_dir / "setup").size());
  struct stat status;
  ASSERT_EQ(0, stat((m_dir / "setup").c_str(), &status));
  EXPECT_EQ(0750u, status.st_mode & 0777u);
}

TEST_F(PackerTest, ReplacesWhatStoodThere) {
  write("setup", std::string(100000, 'x'));
  authoring::packLauncher(options("m.json", "stub", "setup"));
  EXPECT_EQ("the stub\n", test::readFile(m_dir / "setup").substr(0, 9));
  EXPECT_GT(1000u, test::readFile(m_dir / "setup").size());
}

struct RefusalRow {
  const char* name;
  std::string files;  // of the manifest
  const char* stub;
  const char* output;
  const char* error;
};

const std::string kGoodFiles = R"({"type": "instructions", "path": "i.tag"})";

const RefusalRow kRefusalRows[] = {
    {"stub that is not there", kGoodFiles, "none", "setup",
     "DIR/none cannot be read: No such file or directory"},
    {"stub that is a folder", kGoodFiles, "folder", "setup",
     "DIR/folder is a folder; name a regular file"},
    {"stub that carries files", kGoodFiles, "packed", "setup",
     "DIR/packed carries files already; a stub is the bare launcher, as it is built"},
    {"output over the stub", kGoodFiles, "stub", "stub",
     "DIR/stub is one of the inputs (DIR/stub); name another file with --output"},
    {"output over a link to the stub", kGoodFiles, "stub", "link",
     "DIR/link is one of the inputs (DIR/stub); name another file with --output"},
    {"output over an input", kGoodFiles, "stub", "i.tag",
     "DIR/i.tag is one of the inputs (DIR/i.tag); name another file with --output"},
    {"output over the manifest", kGoodFiles, "stub", "refused.json",
     "DIR/refused.json is one of the inputs (DIR/refused.json); name another file with --output"},
    {"output over a folder", kGoodFiles, "stub", "folder",
     "DIR/folder is a folder; name a file with --output"},
    {"output over a device", kGoodFiles, "stub", "device",
     "DIR/device is a device; name a file with --output"},
    {"stub that is a device", kGoodFiles, "device", "setup",
     "DIR/device is a device; name a regular file"},
    {"output into a folder that is not there", kGoodFiles, "stub", "none/setup",
     "DIR/none/setup cannot be written: No such file or directory"},
    {"tag file with a syntax error", R"({"type": "jvm", "path": "bad.tag"})", "stub", "setup",
     "Syntax error in DIR/bad.tag at line 2 ==> Missing colon at the end of the tag name."},
    {"tag file with an open quote", R"({"type": "jvm", "path": "unquoted.tag"})", "stub", "setup",
     "DIR/unquoted.tag: Expected double quote to end argument near 4"},
    {"manifest with an error", R"({"type": "jar"})", "stub", "setup",
     "DIR/refused.json: files[0]: the key \"path\" is missing"},
    {"too large", R"({"type": "jar", "path": "huge"}, {"type": "jar", "path": "a.jar"})", "stub",
     "setup",
     "the launcher file would be larger than 2147483647 bytes, the most that its index can "
     "describe "
     "(stub and files together: 2147483658 bytes); leave out or shrink files, the largest is "
     "DIR/huge"},
#ifdef __linux__
    // The first page of a process is never there.
    {"input that fails while it is read", R"({"type": "jar", "path": "/proc/self/mem"})", "stub",
     "setup", "/proc/self/mem cannot be read: Input/output error"},
#endif
};

// Nothing is written, and nothing changes that stood there before.
TEST_F(PackerTest, RefusesAndLeavesNothingBehind) {
  write("packed", test::launcherFileBytes({}));
  write("folder/x", "");
  write("huge", "");
  fs::create_symlink("stub", m_dir / "link");
  fs::create_symlink("/dev/null", m_dir / "device");
  fs::resize_file(m_dir / "huge", 2147483647);
  for (const RefusalRow& row : kRefusalRows) {
    SCOPED_TRACE(row.name);
    write("refused.json", R"({"files": [)" + row.files + "]}");
    const auto before = test::listTree(m_dir.path());
    EXPECT_EQ(row.error, errorOf(options("refused.json", row.stub, row.output)));
    EXPECT_EQ(before, test::listTree(m_dir.path()));
    EXPECT_EQ("the stub\n", test::readFile(m_dir / "stub"));
    EXPECT_EQ("INSTRUCTIONS:\n//\n/:\n", test::readFile(m_dir / "i.tag"));
  }
}

// The link stays; what it leads to is replaced.
TEST_F(PackerTest, WritesWhatALinkLeadsTo) {
  write("folder/old", std::string(100000, 'x'));
  fs::create_symlink("folder/old", m_dir / "link");
  authoring::packLauncher(options("m.json", "stub", "link"));
  EXPECT_TRUE(fs::is_symlink(m_dir / "link"));
  EXPECT_EQ("the stub\n", test::readFile(m_dir / "folder/old").substr(0, 9));
  EXPECT_EQ((std::vector<std::string>{"old", "old.sha256"}), test::listTree(m_dir / "folder"));
}

struct StubRow {
  const char* name;
  std::string bytes;
  const char* look;  // nothing: it is taken
};

const StubRow kStubRows[] = {
    {"ours",
     "\x7F"
     "ELF" CORVANE_STUB_MARK("k", "1", "user", "m"),
     ""},
    {"empty", "", "an empty file"},
    {"script", "#!/bin/sh\n", "a script"},
    {"another program",
     "\x7F"
     "ELF\1",
     "a program that is none of ours"},
    {"archive", "PK\3\4", "a zip archive (a jar is one)"},
    {"changed by a transfer as text",
     "\x7F"
     "ELF corvane-stub kind=k version=1 encoding=user machine=m\r\n",
     "a launcher that was damaged by a transfer as text; transfer it as binary"},
};

TEST_F(PackerTest, TakesOurStubsAlone) {
  for (const StubRow& row : kStubRows) {
    SCOPED_TRACE(row.name);
    write("the stub", row.bytes);
    auto some = options("m.json", "the stub", "setup");
    EXPECT_EQ("", errorOf(some));
    EXPECT_EQ(row.bytes, test::readFile(m_dir / "setup").substr(0, row.bytes.size()));
    fs::remove(m_dir / "setup");
    some.anyStub = false;
    EXPECT_EQ(row.look[0] == '\0'
                  ? ""
                  : "DIR/the stub is no stub of ours: it looks like " + std::string(row.look) +
                        "; name a bare launcher with --stub, or add --any-stub",
              errorOf(some));
    EXPECT_EQ(row.look[0] == '\0', fs::exists(m_dir / "setup"));
  }
}

TEST_F(PackerTest, RefusesAManifestThatIsNotThere) {
  EXPECT_EQ("DIR/none.json: No such file or directory",
            errorOf(options("none.json", "stub", "setup")));
}

// A jar is no tag file: its text does not matter.
TEST_F(PackerTest, ParsesTagFilesAlone) {
  write("m.json", R"({"files": [{"type": "jar", "path": "bad.tag"}]})");
  EXPECT_EQ("", errorOf(options("m.json", "stub", "setup")));
}

// --- Listing ---

TEST_F(PackerTest, ListsAsATable) {
  const auto launcher = authoring::readLauncherFile(
      write("setup", test::launcherFileBytes({{0, 1, "i.tag", "A: 1\n"},
                                              {4, -12345, "in\\st\x01\x7F\xC3\xA4", ""},
                                              {6, 3, "a", "PK", {{1, 2147483647}}}},
                                             2)));
  EXPECT_EQ(
      "setup: 3 files, 102 bytes, purpose 2\n"
      "pos  type               id  length  offset  name               unpacked\n"
      "  0  instructions        1       5      10  i.tag              -\n"
      "  1  jvm-installer  -12345       0      15  in\\x5Cst\\x01\\x7F\xC3\xA4  -\n"
      "  2  archive             3       2      15  a                  1 file, 2147483647 bytes\n",
      authoring::listAsTable("setup", launcher));
}

struct ListRow {
  const char* name;
  std::string bytes;
  const char* table;
  const char* json;
};

const ListRow kListRows[] = {
    {"no trailer", "#!/bin/sh\n", "setup: no embedded files, 10 bytes\n",
     "{\n  \"size\": 10,\n  \"purpose\": null,\n  \"stub\": null,\n  \"digests\": \"none\",\n  "
     "\"files\": []\n}\n"},
    {"empty", "", "setup: no embedded files, 0 bytes\n",
     "{\n  \"size\": 0,\n  \"purpose\": null,\n  \"stub\": null,\n  \"digests\": \"none\",\n  "
     "\"files\": []\n}\n"},
    {"no entries", test::launcherFileBytes({}, 255), "setup: 0 files, 23 bytes, purpose 255\n",
     "{\n  \"size\": 23,\n  \"purpose\": 255,\n  \"stub\": null,\n  \"digests\": \"none\",\n  "
     "\"files\": []\n}\n"},
    {"one entry", test::launcherFileBytes({{6, 3, "\xFF\"", "PK\n", {{1, 2}}}}),
     "setup: 1 file, 52 bytes, purpose 0\n"
     "pos  type     id  length  offset  name   unpacked\n"
     "  0  archive   3       3      10  \\xFF\"  1 file, 2 bytes\n",
     "{\n  \"size\": 52,\n  \"purpose\": 0,\n  \"stub\": null,\n  \"digests\": \"none\",\n  "
     "\"files\": [\n    {\n"
     "      \"position\": 0,\n      \"type\": \"archive\",\n      \"id\": 3,\n"
     "      \"length\": 3,\n      \"offset\": 10,\n      \"name\": \"\\ufffd\\\"\",\n"
     "      \"decompressed\": {\n        \"files\": 1,\n        \"bytes\": 2\n      }\n"
     "    }\n  ]\n}\n"},
    {"a name that would move the cursor and turn the line",
     test::launcherFileBytes({{3, 1,
                               "a\x1B[1m\xC2\x9B"
                               "2J\xE2\x80\xAE\\",
                               "PK\n"}}),
     "setup: 1 file, 55 bytes, purpose 0\n"
     "pos  type  id  length  offset  name                                unpacked\n"
     "  0  jar    1       3      10  a\\x1B[1m\\xC2\\x9B2J\\xE2\\x80\\xAE\\x5C  -\n",
     "{\n  \"size\": 55,\n  \"purpose\": 0,\n  \"stub\": null,\n  \"digests\": \"none\",\n  "
     "\"files\": [\n    {\n"
     "      \"position\": 0,\n      \"type\": \"jar\",\n      \"id\": 1,\n"
     "      \"length\": 3,\n      \"offset\": 10,\n"
     "      \"name\": \"a\\u001b[1m\\u009b2J\\u202e\\\\\"\n    }\n  ]\n}\n"},
    {"digests", test::setupBytes({{3, 1, "a", "PK\n"}}),
     "setup: 1 file, 207 bytes, purpose 0, digests\n"
     "pos  type  id  length  offset  name  unpacked\n"
     "  0  jar    1       3      10  a     -\n",
     "{\n  \"size\": 207,\n  \"purpose\": 0,\n  \"stub\": null,\n  \"digests\": \"stored\",\n"
     "  \"files\": [\n    {\n      \"position\": 0,\n      \"type\": \"jar\",\n"
     "      \"id\": 1,\n      \"length\": 3,\n      \"offset\": 10,\n      \"name\": \"a\",\n"
     "      \"sha256\": \""
     "09d1bdfd0c497f9ffdd545221f1ebb4abbc3713ceaafc76da8f3f3226728b0b3\"\n    }\n  ]\n}\n"},
};

TEST_F(PackerTest, ListsForPeopleAndForPrograms) {
  for (const ListRow& row : kListRows) {
    SCOPED_TRACE(row.name);
    const auto launcher = authoring::readLauncherFile(write("setup", row.bytes));
    EXPECT_EQ(row.table, authoring::listAsTable("setup", launcher));
    EXPECT_EQ(row.json, authoring::listAsJson(launcher));
  }
}

struct UnreadableRow {
  const char* name;
  std::string bytes;  // of the launcher file
  std::string error;
};

const UnreadableRow kUnreadableRows[] = {
    {"index outside", authoring::encodeTrailer(1000),
     "DIR/setup: entry 0 of the file index cannot be read: the file index lies outside the file"},
    {"negative index offset", authoring::encodeTrailer(-1),
     "DIR/setup: entry 0 of the file index cannot be read: the file index lies outside the file"},
    {"bad type",
     test::launcherFileBytes(
         "", authoring::encodeIndex({{3, 1, 0, 0, "a", {}}, {9, 1, 0, 0, "a", {}}})),
     "DIR/setup: entry 1 of the file index cannot be read: Invalid file type in file index."},
};

TEST_F(PackerTest, SaysWhatIsWrongWithAnIndex) {
  for (const UnreadableRow& row : kUnreadableRows) {
    SCOPED_TRACE(row.name);
    write("setup", row.bytes);
    EXPECT_EQ(row.error, errorOf([&] { authoring::readLauncherFile(m_dir / "setup"); }));
  }
  EXPECT_EQ("DIR/none: No such file or directory",
            errorOf([&] { authoring::readLauncherFile(m_dir / "none"); }));
  EXPECT_EQ("DIR is a folder; name a file",
            errorOf([&] { authoring::readLauncherFile(m_dir.path()); }));
}

}  // namespace
