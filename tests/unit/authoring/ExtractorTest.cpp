// Taking launcher files apart, and packing them again.
#include "authoring/Extractor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

#include "archive/StubMark.h"
#include "authoring/AuthoringError.h"
#include "authoring/DigestBlock.h"
#include "authoring/LauncherFileReader.h"
#include "authoring/Packer.h"
#include "authoring/Sha256.h"
#include "support/ArchiveFixture.h"
#include "support/Texts.h"
#include "support/Trees.h"
#include "unit/authoring/SetupBytes.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using Names = std::vector<std::string>;

class ExtractorTest : public testing::Test {
 protected:
  std::string write(const std::string& name, const std::string& bytes) {
    return test::writeFile(m_dir / name, bytes);
  }
  template <class Step>
  std::string errorOf(Step step) {
    return test::replaced(test::errorOf<authoring::AuthoringError>(step), m_dir.path(), "DIR");
  }
  authoring::LauncherFile setupOf(const std::string& bytes) {
    return authoring::readLauncherFile(write("setup", bytes));
  }

  test::TempDir m_dir;
};

struct RefusalRow {
  const char* name;
  std::string bytes;  // of the launcher file
  std::string error;
};

const std::string kPlainIndex =
    authoring::encodeIndex({{3, 1, 2, 3, "a", {}}, {3, 1, 0, 0, "../b", {}}});

const RefusalRow kExtractRows[] = {
    {"path", test::launcherFileBytes({{3, 1, "a", "a"}, {3, 2, "../b", "b"}}),
     "entry 1 (../b): its name is a path; write the plain name of a file; nothing was written"},
    {"absolute path", test::launcherFileBytes({{3, 1, "/b", "b"}}),
     "entry 0 (/b): its name is a path; write the plain name of a file; nothing was written"},
    {"folder above", test::launcherFileBytes({{3, 1, "..", "b"}}),
     "entry 0 (..): its name is a path; write the plain name of a file; nothing was written"},
    {"no name", test::launcherFileBytes({{3, 1, "", "b"}}),
     "entry 0 (): its name is empty; nothing was written"},
    {"name of 256 bytes", test::launcherFileBytes({{3, 1, std::string(256, 'n'), "b"}}),
     "entry 0 (" + std::string(256, 'n') +
         "): its name is longer than 255 bytes; nothing was written"},
    {"name twice", test::launcherFileBytes({{3, 1, "a", "a"}, {3, 2, "a", "b"}}),
     "entry 1 (a): entry 0 has this name, too; nothing was written, take one of them by its --id "
     "or its --type"},
    {"bytes past the end",
     test::launcherFileBytes("", authoring::encodeIndex({{3, 1, 1000, 3, "a", {}}})),
     "entry 0 (a): its bytes lie outside the file; nothing was written"},
    {"negative offset",
     test::launcherFileBytes("", authoring::encodeIndex({{3, 1, 1, -1, "a", {}}})),
     "entry 0 (a): its bytes lie outside the file; nothing was written"},
    {"negative length",
     test::launcherFileBytes("", authoring::encodeIndex({{3, 1, -1, 1, "a", {}}})),
     "entry 0 (a): its bytes lie outside the file; nothing was written"},
};

TEST_F(ExtractorTest, ExtractsNothingThatLeavesTheFolder) {
  for (const RefusalRow& row : kExtractRows) {
    SCOPED_TRACE(row.name);
    const auto launcher = authoring::readLauncherFile(write("setup", row.bytes));
    const auto before = test::listTree(m_dir.path());
    EXPECT_EQ(row.error, errorOf([&] { authoring::extractFiles(launcher, m_dir / "out"); }));
    EXPECT_EQ(before, test::listTree(m_dir.path()));
  }
}

struct UnreadableRow {
  const char* name;
  std::function<void(const std::string& path, int descriptor)> spoil;  // once the index was read
  const char* error;
};

const UnreadableRow kUnreadableBytes[] = {
    {"file that shrinks", [](const std::string& path, int) { fs::resize_file(path, 150000); },
     "entry 1 (b): its bytes cannot be read: the launcher file has become shorter"},
    {"file that fails",
     [](const std::string&, int descriptor) {
       const int folder = open("/", O_RDONLY | O_CLOEXEC);
       EXPECT_EQ(descriptor, dup2(folder, descriptor));
       close(folder);
     },
     "entry 0 (a): its bytes cannot be read: Is a directory"},
    {"file that is written to",
     [](const std::string& path, int) {
       usleep(20000);  // clocks of files are coarse
       test::writeFile(path, test::readFile(path));
     },
     "DIR/setup changed while it was read: it was written to; nothing was written, try again when "
     "it is complete"},
};

TEST_F(ExtractorTest, ExtractsNothingHalfOfALauncherThatCannotBeRead) {
  const std::string bytes(100000, 'x');
  for (const UnreadableRow& row : kUnreadableBytes) {
    SCOPED_TRACE(row.name);
    const auto launcher = authoring::readLauncherFile(
        write("setup", test::launcherFileBytes({{3, 1, "a", bytes}, {3, 2, "b", bytes}})));
    row.spoil(m_dir / "setup", fileno(launcher.file.get()));
    EXPECT_EQ(row.error, errorOf([&] { authoring::extractFiles(launcher, m_dir / "out"); }));
    EXPECT_EQ(std::vector<std::string>{"setup"}, test::listTree(m_dir.path()));
  }
}

TEST_F(ExtractorTest, ExtractsWhatItPacked) {
  const auto launcher =
      authoring::readLauncherFile(write("setup", test::launcherFileBytes(allTypes())));
  authoring::extractFiles(launcher, m_dir / "new/out");
  EXPECT_EQ(allTypes().size() + 2, test::listTree(m_dir / "new/out").size());
  for (const auto& file : allTypes()) {
    const std::string path = m_dir / ("new/out/" + file.name);
    EXPECT_EQ(file.bytes, test::readFile(path));
    EXPECT_EQ(file.type == 4 || file.type == 7 ? 0 : -1, access(path.c_str(), X_OK)) << file.name;
  }
}

// --- The folder ---

struct FolderRow {
  const char* name;
  const char* folder;
  const char* error;
};

const FolderRow kGoodFolders[] = {
    {"new", "new", ""},
    {"new with a slash", "new/", ""},
    {"new below new ones", "new/er/out", ""},
    {"empty", "empty", ""},
    {"a link to an empty one", "to-empty", ""},
};

const FolderRow kBadFolders[] = {
    {"file", "file", "DIR/file is a file; name a new or an empty folder"},
    {"pipe", "pipe", "DIR/pipe is a pipe; name a new or an empty folder"},
    {"device", "null", "DIR/null is a device; name a new or an empty folder"},
    {"link that leads nowhere", "far", "DIR/far is a link that leads nowhere; name a folder"},
    {"folder with a file", "full", "DIR/full is not empty; name a new or an empty folder"},
    {"below a file", "file/out", "DIR/file/out cannot be made: Not a directory"},
    {"below a link that leads nowhere", "far/new/out",
     "DIR/far/new/out cannot be made: No such file or directory"},
};

class FolderTest : public ExtractorTest {
 protected:
  FolderTest() {
    for (const char* const entry : {"empty/", "to-empty>empty", "file", "pipe|", "null>/dev/null",
                                    "far>none", "full/", "full/.hidden"}) {
      test::makeEntry(m_dir.path(), entry);
    }
    write("setup", test::launcherFileBytes({{3, 1, "a", "A"}}));
  }
  void extract(const std::string& folder) {
    authoring::extractFiles(authoring::readLauncherFile(m_dir / "setup"), m_dir / folder);
  }
};

TEST_F(FolderTest, TakesANewOrAnEmptyFolder) {
  const auto before = test::listTree(m_dir.path());
  for (const FolderRow& row : kGoodFolders) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ("", errorOf([&] { extract(row.folder); }));
    EXPECT_EQ((Names{"a", "manifest.json", "stub"}), test::listTree(m_dir / row.folder));
    fs::remove_all(m_dir / "new");
    fs::remove_all(m_dir / "empty");
    fs::create_directory(m_dir / "empty");
    EXPECT_EQ(before, test::listTree(m_dir.path()));
  }
}

TEST_F(FolderTest, RefusesAllElse) {
  const auto before = test::listTree(m_dir.path());
  for (const FolderRow& row : kBadFolders) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.error, errorOf([&] { extract(row.folder); }));
    EXPECT_EQ(before, test::listTree(m_dir.path()));
  }
  EXPECT_EQ("the name of the output is empty; name a folder", errorOf([&] {
              authoring::extractFiles(authoring::readLauncherFile(m_dir / "setup"), "");
            }));
}

// Its mode is the user's; the folder that stands there is not replaced by another.
TEST_F(FolderTest, FillsTheFolderThatIsThere) {
  struct stat before;
  struct stat after;
  fs::permissions(m_dir / "empty", fs::perms::owner_all);
  ASSERT_EQ(0, stat((m_dir / "empty").c_str(), &before));
  extract("empty");
  ASSERT_EQ(0, stat((m_dir / "empty").c_str(), &after));
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(before.st_mode, after.st_mode);
}

// --- Parts ---

const std::vector<test::StoredFile> kTwins = {
    {3, 1, "twin", "first"}, {3, 2, "twin", "second"}, {6, 3, "twin", "third"}, {3, 4, "a", "A"}};

struct PartRow {
  const char* name;
  authoring::Selection selection;
  const char* files;  // as NAME=BYTES
  const char* error;
};

const PartRow kPartRows[] = {
    {"a name", {{"a"}, {}, {}}, "a=A ", ""},
    {"a number", {{}, {2}, {}}, "twin=second ", ""},
    {"a name and a number", {{"twin"}, {1}, {}}, "twin=first ", ""},
    {"a name and a type", {{"twin"}, {}, {"archive"}}, "twin=third ", ""},
    {"a type", {{}, {}, {"archive"}}, "twin=third ", ""},
    {"names", {{"a", "twin"}, {3, 4}, {}}, "a=A twin=third ", ""},
    {"a name that two have",
     {{"twin"}, {}, {"jar"}},
     "",
     "entry 1 (twin): entry 0 has this name, too; nothing was written, take one of them by its "
     "--id or its --type"},
    {"an unknown name",
     {{"twins"}, {}, {}},
     "",
     "no file is stored as \"twins\"; did you mean twin?"},
    {"a name like no other",
     {{"../b\n"}, {}, {}},
     "",
     "no file is stored as \"../b\\x0A\"; `corvane-pack list` shows what there is"},
    {"an unknown number",
     {{}, {9}, {}},
     "",
     "no file has the number 9; `corvane-pack list` shows what there is"},
    {"a type of no file",
     {{}, {}, {"jvm"}},
     "",
     "no file is of the type jvm; `corvane-pack list` shows what there is"},
    {"an unknown type",
     {{}, {}, {"zip"}},
     "",
     "\"zip\" is no file type; the types are instructions, jvm, launchscript, jar, jvm-installer, "
     "verify, archive, launcher, jvm-message"},
    {"nothing has both",
     {{"a"}, {1}, {}},
     "",
     "no file has the name, number and type together; `corvane-pack list` shows what there is"},
};

TEST_F(ExtractorTest, TakesAPart) {
  const auto launcher = setupOf(test::launcherFileBytes(kTwins));
  for (const PartRow& row : kPartRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.error, errorOf([&] {
                const auto result = authoring::extractFiles(launcher, m_dir / "out", row.selection);
                EXPECT_EQ("", result.manifest);
                EXPECT_EQ(Names{}, result.warnings);
              }));
    std::string files;
    for (const std::string& name : test::listTree(m_dir / "out")) {
      files += name + "=" + test::readFile(m_dir / ("out/" + name)) + " ";
    }
    EXPECT_EQ(row.files, files);
    fs::remove_all(m_dir / "out");
    fs::create_directory(m_dir / "out");
  }
}

TEST_F(ExtractorTest, WritesOneFileToAStream) {
  const auto launcher = setupOf(test::launcherFileBytes(kTwins));
  const FilePtr output(std::tmpfile());
  authoring::extractFile(launcher, output.get(), {{"twin"}, {2}, {}});
  EXPECT_EQ(6, std::ftell(output.get()));
  for (const authoring::Selection& selection : {authoring::Selection{}, {{"twin"}, {}, {}}}) {
    EXPECT_EQ(
        "standard output takes one file; name it with --file, and with --id or --type when several "
        "have that name",
        errorOf([&] { authoring::extractFile(launcher, output.get(), selection); }));
  }
}

// --- Packed again ---

const std::string kOurStub = "stub " CORVANE_STUB_MARK("corvane-launcher-any", "1", "user", "m");

struct AgainRow {
  const char* name;
  std::vector<test::StoredFile> files;
  std::int32_t purpose;
  std::string stub;
  Names names;  // in the folder
};

const AgainRow kAgainRows[] = {
    {"no files", {}, 0, kOurStub, {"corvane-launcher-any", "manifest.json"}},
    {"no stub", {{3, 1, "a", "A"}}, 255, "", {"a", "manifest.json", "stub"}},
    {"a stub of a hostile kind",
     {{3, 1, "a", "A"}},
     1,
     CORVANE_STUB_MARK("../stub", "1", "user", "m"),
     {"a", "manifest.json", "stub"}},
    {"names that we would take",
     {{3, 1, "manifest.json", "{}"},
      {3, 2, "manifest-2.json", "{}"},
      {3, 3, "corvane-launcher-any", ""}},
     2,
     kOurStub,
     {"corvane-launcher-any", "corvane-launcher-any-2", "manifest-2.json", "manifest-3.json",
      "manifest.json"}},
    {"hostile names",
     {{3, 5, "-rf", "1"},
      {3, 4, " blank ", "2\n"},
      {3, 3, "a\\b\"c'd", ""},
      {3, 2, "\t\r\x1B[2J\x7F", "3"},
      {3, 1, "$(touch x)`y`;*?", "4"},
      {3, 0, "\xC3\xA4\xE2\x80\xAE", "5"},
      {3, 2147483647, "..a", "6"},
      {3, 7, "...", "7"},
      {3, 8, "~", "8"},
      {3, 9, "con:aux.", "9"},
      {3, 10, std::string(255, 'n'), "10"}},
     0,
     kOurStub,
     {"\t\r\x1B[2J\x7F", " blank ", "$(touch x)`y`;*?", "-rf", "...", "..a", "a\\b\"c'd",
      "con:aux.", "corvane-launcher-any", "manifest.json", std::string(255, 'n'), "~",
      "\xC3\xA4\xE2\x80\xAE"}},
    {"unpacked sizes",
     {{6, 1, "a.zip", "PK", {{3, 2147483647}}}, {6, 2, "b.zip", "\n", {{0, 0}}}},
     0,
     kOurStub,
     {"a.zip", "b.zip", "corvane-launcher-any", "manifest.json"}},
};

TEST_F(ExtractorTest, WritesAManifestThatMakesTheSameBytes) {
  for (const AgainRow& row : kAgainRows) {
    SCOPED_TRACE(row.name);
    const std::string bytes = test::setupBytes(row.files, row.purpose, row.stub);
    const auto result = authoring::extractFiles(setupOf(bytes), m_dir / "out");
    EXPECT_EQ(row.names, test::listTree(m_dir / "out"));
    EXPECT_EQ(row.stub.empty() ? Names{"the stub is none of ours; pack it again with --any-stub"}
                               : Names{},
              result.warnings);
    authoring::PackOptions options;
    options.manifest = m_dir / ("out/" + result.manifest);
    options.output = m_dir / "again";
    options.anyStub = row.stub.empty();
    authoring::packLauncher(options);
    EXPECT_EQ(bytes, test::readFile(m_dir / "again"));
    fs::remove_all(m_dir / "out");
  }
}

struct LossRow {
  const char* name;
  std::string bytes;
  const char* warning;
};

// Of a compressed flag that means no, as 0 does.
std::string otherFlag() {
  const std::string begin = kOurStub + "A\n";
  std::string index = authoring::encodeIndex(
      {{3, 1, 2, static_cast<std::int32_t>(kOurStub.size()), "a", std::nullopt}});
  index.back() = '\2';
  const auto offset = static_cast<std::int64_t>(begin.size() + index.size());
  const std::string end = '\0' + authoring::encodeTrailer(static_cast<std::int64_t>(begin.size()));
  return begin + index +
         authoring::encodeDigests(offset,
                                  {authoring::sha256Of(kOurStub), authoring::sha256Of("A\n"),
                                   authoring::sha256Of(index)},
                                  end) +
         end;
}

std::string withDamage() {
  std::string bytes = test::setupBytes({{3, 1, "a", "A"}}, 0, kOurStub);
  bytes[kOurStub.size()] = 'B';
  return bytes;
}

const LossRow kLossRows[] = {
    {"a foreign stub", test::setupBytes({{3, 1, "a", "A"}}),
     "the stub is none of ours; pack it again with --any-stub"},
    {"a name that is no text", test::setupBytes({{3, 1, "\xFF", "A"}}, 0, kOurStub),
     "entry 0 (\\xFF): its name is not UTF-8, so the manifest does not hold it right"},
    {"a name that the launcher writes itself",
     test::setupBytes({{3, 1, "input.tag", "A"}}, 0, kOurStub),
     "DIR/out/manifest.json cannot be packed as it stands: files[0].name: \"input.tag\" is the "
     "name "
     "of the file that -cv:extract writes itself"},
    {"a number twice", test::setupBytes({{3, 1, "a", "A"}, {3, 1, "b", "B"}}, 0, kOurStub),
     "DIR/out/manifest.json cannot be packed as it stands: files[1].id: another file has the "
     "number "
     "1; give each file a number of its own, or none"},
    {"a negative number", test::setupBytes({{3, -1, "a", "A"}}, 0, kOurStub),
     "DIR/out/manifest.json cannot be packed as it stands: files[0].id: this must be a whole "
     "number "
     "from 0 to 2147483647"},
    {"another layout", otherFlag(),
     "another program made this setup; packed again it has the same files, but not the same "
     "bytes"},
    {"no digests", test::launcherFileBytes({{3, 1, "a", "A"}}, 0, kOurStub),
     "the setup has no digests; packed again it has the same files, and digests"},
    {"damage", withDamage(), "a is damaged (bytes 78 to 78)"},
};

TEST_F(ExtractorTest, SaysWhenTheManifestDoesNotMakeTheSameBytes) {
  for (const LossRow& row : kLossRows) {
    SCOPED_TRACE(row.name);
    const auto result = authoring::extractFiles(setupOf(row.bytes), m_dir / "out");
    ASSERT_EQ(1u, result.warnings.size());
    EXPECT_EQ(row.warning, test::replaced(result.warnings[0], m_dir.path(), "DIR"));
    fs::remove_all(m_dir / "out");
  }
}

}  // namespace
