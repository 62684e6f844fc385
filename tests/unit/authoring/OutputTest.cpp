// Where outputs go, and inputs that change while they are read.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "authoring/AuthoringError.h"
#include "authoring/OutputFile.h"
#include "authoring/OutputTarget.h"
#include "authoring/SourceFile.h"
#include "support/TestFiles.h"
#include "support/Texts.h"
#include "support/Trees.h"

namespace {

namespace fs = std::filesystem;

class OutputTest : public testing::Test {
 protected:
  OutputTest() {
    for (const char* const entry :
         {"folder/", "pipe|", "socket=", "file", "link>file", "link2>link", "far>folder/new",
          "to-folder>folder", "to-pipe>pipe", "to-socket>socket", "to-device>/dev/null",
          "circle>circle", "folder/up>../file"}) {
      test::makeEntry(m_dir.path(), entry);
    }
  }
  template <class Step>
  std::string errorOf(Step step) {
    return test::replaced(test::errorOf<authoring::AuthoringError>(step), m_dir.path(), "DIR");
  }

  test::TempDir m_dir;
};

struct TargetRow {
  const char* path;  // below DIR, when it is not absolute
  const char* target;
  const char* error;
};

const TargetRow kTargetRows[] = {
    {"new", "DIR/new", ""},
    {"file", "DIR/file", ""},
    {"none/new", "DIR/none/new", ""},
    {"to-folder/new", "DIR/to-folder/new", ""},
    {"link", "DIR/file", ""},
    {"link2", "DIR/file", ""},
    {"folder/up", "DIR/file", ""},
    {"folder", "", "DIR/folder is a folder; name a file with --output"},
    {"folder/", "", "DIR/folder/ is a folder; name a file with --output"},
    {"to-folder", "", "DIR/to-folder is a folder; name a file with --output"},
    {"pipe", "", "DIR/pipe is a pipe; name a file with --output"},
    {"to-pipe", "", "DIR/to-pipe is a pipe; name a file with --output"},
    {"socket", "", "DIR/socket is a socket; name a file with --output"},
    {"to-socket", "", "DIR/to-socket is a socket; name a file with --output"},
    {"to-device", "", "DIR/to-device is a device; name a file with --output"},
    {"/dev/null", "", "/dev/null is a device; name a file with --output"},
    {"/", "", "/ is a folder; name a file with --output"},
    {"far", "",
     "DIR/far is a link that leads nowhere (No such file or directory); remove it or name another "
     "file"},
    {"circle", "",
     "DIR/circle is a link that leads nowhere (Too many levels of symbolic links); remove it or "
     "name another file"},
};

TEST_F(OutputTest, FollowsLinksToFilesAlone) {
  for (const TargetRow& row : kTargetRows) {
    SCOPED_TRACE(row.path);
    const std::string path = row.path[0] == '/' ? row.path : m_dir / row.path;
    std::string target;
    EXPECT_EQ(row.error, errorOf([&] { target = authoring::findOutputTarget(path); }));
    EXPECT_EQ(row.target, test::replaced(target, m_dir.path(), "DIR"));
  }
  EXPECT_EQ("the name of the output is empty; name a file with --output",
            errorOf([] { authoring::findOutputTarget(""); }));
}

// --- Whole or not at all ---

TEST_F(OutputTest, AppearsWhole) {
  test::writeFile(m_dir / "file", "old");
  const auto before = test::listTree(m_dir.path());
  {
    authoring::OutputFile output(m_dir / "file");
    std::fputs("new", output.stream());
    EXPECT_EQ("old", test::readFile(m_dir / "file"));
    output.commit();
    EXPECT_EQ("new", test::readFile(m_dir / "file"));
  }
  EXPECT_EQ(before, test::listTree(m_dir.path()));
}

TEST_F(OutputTest, IsGoneWithoutCommit) {
  const auto before = test::listTree(m_dir.path());
  { std::fputs("new", authoring::OutputFile(m_dir / "new").stream()); }
  EXPECT_EQ(before, test::listTree(m_dir.path()));
}

// The temporary name does not grow with the name.
TEST_F(OutputTest, HasALongName) {
  const std::string name(255, 'n');
  authoring::OutputFile(m_dir / name).commit();
  EXPECT_EQ("", test::readFile(m_dir / name));
}

TEST_F(OutputTest, CannotBeWrittenWhereNothingCan) {
  EXPECT_EQ("DIR/none/new cannot be written: No such file or directory",
            errorOf([&] { authoring::OutputFile(m_dir / "none/new"); }));
  EXPECT_EQ("DIR/file/new cannot be written: Not a directory",
            errorOf([&] { authoring::OutputFile(m_dir / "file/new"); }));
}

// --- Inputs ---

struct ChangeRow {
  const char* name;
  void (*change)(const std::string& path);
  const char* what;  // nothing: the file counts as unchanged
};

const ChangeRow kChangeRows[] = {
    {"nothing", [](const std::string&) {}, ""},
    {"it was read", [](const std::string& path) { test::readFile(path); }, ""},
    {"shrinks", [](const std::string& path) { fs::resize_file(path, 3); },
     "it had 5 bytes and has 3 now"},
    {"grows", [](const std::string& path) { fs::resize_file(path, 2000000000); },
     "it had 5 bytes and has 2000000000 now"},
    {"is emptied", [](const std::string& path) { test::writeFile(path, ""); },
     "it had 5 bytes and has 0 now"},
    {"is rewritten", [](const std::string& path) { test::writeFile(path, "BYTES"); },
     "it was written to"},
    {"is rewritten and dated back",
     [](const std::string& path) {
       const auto time = fs::last_write_time(path);
       test::writeFile(path, "BYTES");
       fs::last_write_time(path, time);
     },
     "it was written to"},
    {"is replaced",
     [](const std::string& path) {
       test::writeFile(path + ".new", "BYTES");
       fs::rename(path + ".new", path);
     },
     "another file took its place, or it was removed"},
    {"is removed", [](const std::string& path) { fs::remove(path); },
     "another file took its place, or it was removed"},
    {"becomes a folder",
     [](const std::string& path) {
       fs::remove(path);
       fs::create_directory(path);
     },
     "another file took its place, or it was removed"},
};

// Clocks of files are coarse: the change must not come within the same tick.
constexpr int kTick = 20000;

TEST_F(OutputTest, NoticesAnInputThatChanges) {
  for (const ChangeRow& row : kChangeRows) {
    SCOPED_TRACE(row.name);
    fs::remove_all(m_dir / "input");
    test::writeFile(m_dir / "input", "bytes");
    usleep(kTick);
    const authoring::SourceFile source(m_dir / "input");
    EXPECT_EQ(5, source.size());
    row.change(m_dir / "input");
    const std::string error =
        row.what[0] == '\0' ? ""
                            : "DIR/input changed while it was read: " + std::string(row.what) +
                                  "; nothing was written, try again when it is complete";
    EXPECT_EQ(error, errorOf([&] { source.checkUnchanged(); }));
  }
}

const TargetRow kSourceRows[] = {
    {"file", "", ""},
    {"link2", "", ""},
    {"none", "", "DIR/none cannot be read: No such file or directory"},
    {"folder", "", "DIR/folder is a folder; name a regular file"},
    {"pipe", "", "DIR/pipe is a pipe; name a regular file"},
    {"to-pipe", "", "DIR/to-pipe is a pipe; name a regular file"},
    {"socket", "", "DIR/socket is a socket; name a regular file"},
    {"to-device", "", "DIR/to-device is a device; name a regular file"},
    {"circle", "", "DIR/circle cannot be read: Too many levels of symbolic links"},
};

TEST_F(OutputTest, ReadsRegularFilesAlone) {
  for (const TargetRow& row : kSourceRows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(row.error, errorOf([&] { authoring::SourceFile source(m_dir / row.path); }));
  }
}

}  // namespace
