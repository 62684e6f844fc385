// Which commands can be remembered at all. What is asked once is shown by tests/e2e/AskedOnceE2E.
#include "jvm/VerificationMemory.h"

#include <gtest/gtest.h>

#include <string>

#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using namespace std::string_literals;
using test::sstr;
using test::str;

struct Row {
  const char* name;
  std::string command;  // "DIR" stands for a folder with a file "java"
  bool wanted;
};

const Row kRows[] = {
    {"as usual", "\"DIR/java\" -cp \"DIR/v.jar\"   \"Verify\" java.version", true},
    {"options", "\"DIR/java\" -Xint -XX:+UseSerialGC -Da.b=c_d@1% \"Verify\" a", true},
    {"empty words", "\"DIR/java\" \"\" ", true},
    {"quotes inside a word", "\"DIR/java\" -Dx=\"a b\"c", true},
    {"what is no syntax in quotes", "\"DIR/java\" \"a;b|c&d(e)*?[f]#~{}<>!'\n\t\"", true},
    {"nothing behind the program", "\"DIR/java\"", false},
    {"a word that begins with the program", "\"DIR/java\"x a", false},
    {"no quotes", "DIR/java a", false},
    {"no program there", "\"DIR/none\" a", false},
    {"a folder", "\"DIR\" a", false},
    {"a relative path", "\"java\" a", false},
    {"an open quote", "\"DIR/java\" \"a", false},
    {"variable", "\"DIR/java\" $HOME", false},
    {"variable in quotes", "\"DIR/java\" \"$HOME\"", false},
    {"backquotes in quotes", "\"DIR/java\" \"`date`\"", false},
    {"backslash in quotes", "\"DIR/java\" \"a\\b\"", false},
    {"backslash", "\"DIR/java\" a\\b", false},
    {"single quotes", "\"DIR/java\" 'a'", false},
    {"tilde", "\"DIR/java\" ~/a", false},
    {"wildcard", "\"DIR/java\" *.jar", false},
    {"braces", "\"DIR/java\" {a,b}", false},
    {"comment", "\"DIR/java\" #a", false},
    {"second command", "\"DIR/java\" a; b", false},
    {"second line", "\"DIR/java\" a\nb", false},
    {"pipe", "\"DIR/java\" a | b", false},
    {"redirection", "\"DIR/java\" a >b", false},
    {"background", "\"DIR/java\" a &", false},
    {"subshell", "\"DIR/java\" (a)", false},
    {"bytes of no alphabet outside quotes", "\"DIR/java\" \xc3\xa4", false},
    {"a letter of Latin-1 outside quotes", "\"DIR/java\" \xe4", false},
    {"such bytes in quotes", "\"DIR/java\" \"\xc3\xa4\"", true},
    {"a byte of zero", "\"DIR/java\" a\0b"s, false},
    {"a byte of zero in quotes", "\"DIR/java\" \"a\0b\""s, false},
    {"variable for the program", "\"DIR/$x/java\" a", false},
    {"nothing", "", false},
};

TEST(VerificationQuestionTest, OnlyPlainWordsAreRemembered) {
  const test::TempDir dir;
  test::writeFile(dir / "java", "x");
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const std::string command = test::replaced(row.command, "DIR", dir.path());
    EXPECT_EQ(row.wanted, VerificationQuestion::of(sstr(command), "/").has_value());
  }
}

TEST(VerificationQuestionTest, InsertedBytesMeanNothingToTheShell) {
  const test::TempDir dir;
  const std::string name = dir / "a $(b) `c`/java";
  test::writeFile(name, "x");
  const CommandText command = CommandText::insertedInQuotes(sstr(name)) + " -cp " +
                              CommandText::insertedInQuotes("$x;\"y\"") + " Verify";
  const auto question = VerificationQuestion::of(command, "/work");
  ASSERT_TRUE(question);
  EXPECT_EQ(name, str(question->name));
  EXPECT_EQ(" -cp \"$x;\"y\"\" Verify", str(question->words));
  EXPECT_EQ("/work", str(question->workingDir));
}

TEST(VerificationQuestionTest, TheEnvironmentCountsAndJavaHomeApart) {
  const test::TempDir dir;
  const std::string command = "\"" + test::writeFile(dir / "java", "x") + "\" a";
  const test::ScopedEnvironment one("CORVANE_A", "1");
  const test::ScopedEnvironment home("JAVA_HOME", "/opt/jdk");
  const auto first = VerificationQuestion::of(sstr(command), "");
  const test::ScopedEnvironment otherHome("JAVA_HOME", "/opt/jre");
  const auto second = VerificationQuestion::of(sstr(command), "");
  const test::ScopedEnvironment two("CORVANE_A", "2");
  const auto third = VerificationQuestion::of(sstr(command), "");
  ASSERT_TRUE(first && second && third);
  EXPECT_EQ("/opt/jdk", str(first->javaHome));
  EXPECT_EQ("/opt/jre", str(second->javaHome));
  EXPECT_EQ(first->environment, second->environment);
  EXPECT_NE(second->environment, third->environment);
}

// --- Asking ---

#ifdef __linux__
// A program that never answers the same.
class VerificationMemoryTest : public testing::Test {
 protected:
  static std::string ask() {
    const CommandText command = "\"/bin/cat\" /proc/sys/kernel/random/uuid";
    ProcessRequest request;
    request.command = command.bytes();
    request.captures = true;
    request.isTrial = true;
    return str(VerificationMemory::ofRun().ask(command, request, true).output.text());
  }

 private:
  const test::ScopedEnvironment m_home{"JAVA_HOME", "/opt/jdk"};
};

TEST_F(VerificationMemoryTest, TheSameAgain) {
  const std::string first = ask();
  EXPECT_EQ(37U, first.size());
  EXPECT_EQ(first, ask());
  EXPECT_EQ(first, ask());
}

TEST_F(VerificationMemoryTest, AnotherOnceAllIsForgotten) {
  const std::string first = ask();
  VerificationMemory::forget();
  EXPECT_NE(first, ask());
}

TEST_F(VerificationMemoryTest, ACancelCountsBetweenRepetitions) {
  const std::string first = ask();
  EXPECT_EQ(first, ask());
  PlatformTestAccess::setCanceled(true);
  EXPECT_THROW(ask(), Canceled);
}
#endif

}  // namespace
