// What bash completes, asked of bash itself; zsh and fish read their scripts where they are there.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "support/TestFiles.h"

namespace {

class CompletionTest : public testing::Test {
 protected:
  CompletionTest() {
    for (const char* const file : {"a file.json", "folder/b.jar", "my-setup"}) {
      test::writeFile(m_dir / file, "");
    }
    EXPECT_EQ(0, shell("for s in bash zsh fish; do '" CORVANE_PACK "' --completion $s >$s || exit; "
                       "done"));
  }
  int shell(const std::string& words) {
    return std::system(("cd '" + m_dir.path() + "' && { " + words + "; }").c_str());
  }
  bool isThere(const std::string& program) {
    return shell("command -v " + program + " >/dev/null") == 0;
  }

  test::TempDir m_dir;
};

struct CompletionRow {
  const char* words;  // the last one is to be completed
  const char* answers;
};

constexpr const char* kTypes =
    "instructions\njvm\nlaunchscript\njar\njvm-installer\nverify\narchive\nlauncher\njvm-message\n";

const CompletionRow kRows[] = {
    {"pa", "pack\n"},
    {"ex", "extract\nexplain\n"},
    {"exp", "explain\n"},
    {"zz", ""},
    {"--v", "--version\n"},
    {"--completion ''", "bash\nzsh\nfish\n"},
    {"pack a", "a file.json\n"},
    {"pack 'a file.json' --out", "--output\n"},
    {"pack 'a file.json' --output my", "my-setup\n"},
    {"pack --any", "--any-stub\n"},
    {"pack --any-stub my", "my-setup\n"},
    {"pack --base ''", "folder\n"},
    {"pack --output x --base fo", "folder\n"},
    {"list my", "my-setup\n"},
    {"list --j", "--json\n"},
    {"extract my-setup --output ''", "folder\n"},
    {"extract my-setup --type ''", kTypes},
    {"extract my-setup --type jvm-m", "jvm-message\n"},
    {"extract my-setup --id ''", ""},
    {"explain my", "my-setup\n"},
    {"explain x --setup my", "my-setup\n"},
    {"none ''", ""},
};

TEST_F(CompletionTest, Bash) {
  if (!isThere("bash")) GTEST_SKIP() << "no bash";
  for (const CompletionRow& row : kRows) {
    SCOPED_TRACE(row.words);
    test::writeFile(m_dir / ".ask",
                    "source ./bash\nCOMP_WORDS=(corvane-pack " + std::string(row.words) +
                        ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_corvane_pack\n"
                        "((${#COMPREPLY[@]})) && printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    shell("bash --norc .ask >.answers 2>&1");
    EXPECT_EQ(row.answers, test::readFile(m_dir / ".answers"));
  }
}

TEST_F(CompletionTest, OthersReadTheirScripts) {
  for (const char* const program : {"zsh", "fish"}) {
    if (!isThere(program)) continue;
    EXPECT_EQ(0, shell(std::string(program) + " -n ./" + program)) << program;
  }
}

TEST_F(CompletionTest, FlagsTakeNoValue) {
  for (const char* const shell : {"zsh", "fish"}) {
    const std::string script = test::readFile(m_dir / shell);
    EXPECT_NE(std::string::npos,
              script.find(*shell == 'z' ? "'--json[For programs]'" : "-l json -d 'For programs'"))
        << script;
  }
}

TEST_F(CompletionTest, Fish) {
  if (!isThere("fish")) GTEST_SKIP() << "no fish";
  EXPECT_EQ(
      0,
      shell("HOME=. fish --no-config -c 'source fish; complete -C \"corvane-pack pa\"' >answers"));
  EXPECT_EQ("pack\tMake a launcher file from a manifest\n", test::readFile(m_dir / "answers"));
}

}  // namespace
