// NAME.sha256 beside a setup.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "authoring/AuthoringError.h"
#include "authoring/Packer.h"
#include "authoring/Sha256.h"
#include "authoring/SumFile.h"
#include "support/TestFiles.h"
#include "support/Texts.h"
#include "support/Trees.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class SumFileTest : public testing::Test {
 protected:
  SumFileTest() {
    test::writeFile(m_dir / "in/stub", "stub\n");
    test::writeFile(m_dir / "in/a", "PK");
    test::writeFile(m_dir / "in/m.json", R"({"files": [{"type": "jar", "path": "a"}]})");
    fs::create_directory(m_dir / "out");
  }

  authoring::PackResult pack(const std::string& output, bool withSum = true) {
    authoring::PackOptions options{m_dir / "in/m.json", {}, m_dir / "in/stub", output, true};
    options.sumFile = withSum;
    return authoring::packLauncher(options);
  }
  std::string errorOf(const std::string& output) {
    return test::replaced(test::errorOf<authoring::AuthoringError>([&] { pack(output); }),
                          m_dir.path(), "DIR");
  }
  // What sha256sum is to read beside a file of that name in `out`.
  std::string sumOf(const std::string& name) {
    return authoring::sumLine(
        authoring::hexOf(authoring::sha256Of(test::readFile(m_dir / ("out/" + name)))), name);
  }
  Names tree() { return test::listTree(m_dir / "out"); }

  test::TempDir m_dir;
};

struct LineRow {
  const char* name;
  const char* line;
};

const LineRow kLineRows[] = {
    {"setup", "12ab  setup\n"},
    {" two words", "12ab   two words\n"},
    {"*star", "12ab  *star\n"},
    {"a\\b\nc", "\\12ab  a\\\\b\\nc\n"},
};

TEST_F(SumFileTest, WritesLinesAsSha256sumDoes) {
  for (const LineRow& row : kLineRows) {
    EXPECT_EQ(row.line, authoring::sumLine("12ab", row.name));
  }
}

TEST_F(SumFileTest, IsReadBySha256sum) {
  if (std::system("command -v sha256sum >/dev/null") != 0) {
    GTEST_SKIP() << "there is no sha256sum";
  }
  for (const char* const name :
       {"setup", " two words", "-rf", "*star", "a\\b", "a\nb", "\xC3\xA4"}) {
    SCOPED_TRACE(name);
    const auto result = pack(m_dir / ("out/" + std::string(name)));
    EXPECT_EQ(m_dir / ("out/" + std::string(name) + ".sha256"), result.sumFile);
    EXPECT_EQ(sumOf(name), test::readFile(result.sumFile));
    const std::string command =
        "cd '" + m_dir.path() + "/out' && sha256sum --status --strict -c -- *.sha256";
    EXPECT_EQ(0, std::system(command.c_str()));
    fs::remove_all(m_dir / "out");
    fs::create_directory(m_dir / "out");
  }
}

TEST_F(SumFileTest, ReplacesAnEarlierOne) {
  test::writeFile(m_dir / "out/setup", "old");
  test::writeFile(m_dir / "out/setup.sha256", "old");
  pack(m_dir / "out/setup");
  EXPECT_EQ(sumOf("setup"), test::readFile(m_dir / "out/setup.sha256"));
  EXPECT_EQ((Names{"setup", "setup.sha256"}), tree());
}

// A sum that does not fit is worse than none.
TEST_F(SumFileTest, LeavesNoEarlierOneWhenNoneIsWanted) {
  test::writeFile(m_dir / "out/setup.sha256", "old");
  EXPECT_EQ("", pack(m_dir / "out/setup", false).sumFile);
  EXPECT_EQ(Names{"setup"}, tree());
}

TEST_F(SumFileTest, StandsBesideWhatALinkLeadsTo) {
  test::writeFile(m_dir / "out/setup-1", "old");
  fs::create_symlink("setup-1", m_dir / "out/latest");
  test::writeFile(m_dir / "out/latest.sha256", "the sum of another day");
  pack(m_dir / "out/latest");
  EXPECT_EQ(sumOf("setup-1"), test::readFile(m_dir / "out/setup-1.sha256"));
  EXPECT_EQ((Names{"latest", "setup-1", "setup-1.sha256"}), tree());
}

// What would be an earlier sum beside the link is to be packed.
TEST_F(SumFileTest, BesideALinkNoInputGoes) {
  test::writeFile(m_dir / "out/setup-1", "old");
  fs::create_symlink("setup-1", m_dir / "out/latest");
  fs::rename(m_dir / "in/a", m_dir / "out/latest.sha256");
  test::writeFile(m_dir / "in/m.json",
                  R"({"files": [{"type": "jar", "path": "../out/latest.sha256"}]})");
  const Names before = tree();
  EXPECT_EQ(
      "DIR/out/latest.sha256 is one of the inputs (DIR/in/../out/latest.sha256); name another file "
      "with --output",
      errorOf(m_dir / "out/latest"));
  EXPECT_EQ(before, tree());
  EXPECT_EQ("old", test::readFile(m_dir / "out/setup-1"));
}

TEST_F(SumFileTest, MayBeALink) {
  test::writeFile(m_dir / "out/sums", "old");
  fs::create_symlink("sums", m_dir / "out/setup.sha256");
  pack(m_dir / "out/setup");
  EXPECT_EQ(sumOf("setup"), test::readFile(m_dir / "out/sums"));
  EXPECT_TRUE(fs::is_symlink(m_dir / "out/setup.sha256"));
  EXPECT_EQ((Names{"setup", "setup.sha256", "sums"}), tree());
}

struct RefusalRow {
  const char* entry;  // in `out`, as makeEntry makes it
  const char* error;
};

const RefusalRow kRefusalRows[] = {
    {"setup.sha256/", "DIR/out/setup.sha256 is a folder; name a file with --output"},
    {"setup.sha256|", "DIR/out/setup.sha256 is a pipe; name a file with --output"},
    {"setup.sha256>none",
     "DIR/out/setup.sha256 is a link that leads nowhere (No such file or directory); remove it or "
     "name another file"},
    {"setup.sha256>../in/a",
     "DIR/in/a is one of the inputs (DIR/in/a); name another file with --output"},
};

TEST_F(SumFileTest, HarmsNothingElse) {
  for (const RefusalRow& row : kRefusalRows) {
    SCOPED_TRACE(row.entry);
    test::makeEntry(m_dir / "out", row.entry);
    const Names before = tree();
    EXPECT_EQ(row.error, errorOf(m_dir / "out/setup"));
    EXPECT_EQ(before, tree());
    fs::remove_all(m_dir / "out/setup.sha256");
  }
  const std::string name(250, 'n');
  EXPECT_EQ(
      "DIR/out/" + name +
          ".sha256 cannot be written: File name too long; shorten the name, or add --no-sha256",
      errorOf(m_dir / ("out/" + name)));
  EXPECT_EQ(Names{}, tree());
}

// The earlier setup stays, and so does its sum.
TEST_F(SumFileTest, ComesBackWhenTheSetupCannotBeReplaced) {
  test::writeFile(m_dir / "out/setup.sha256", "old");
  {
    const authoring::SetAside earlier(m_dir / "out/setup.sha256");
    EXPECT_FALSE(fs::exists(m_dir / "out/setup.sha256"));
  }
  EXPECT_EQ("old", test::readFile(m_dir / "out/setup.sha256"));
  EXPECT_EQ(Names{"setup.sha256"}, tree());
}

}  // namespace
