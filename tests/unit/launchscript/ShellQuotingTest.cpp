#include "launchscript/ShellQuoting.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "support/JVMSupport.h"

namespace {

using test::sstr;
using test::str;

// What the shell prints on standard output for the text.
std::string printedBy(const SString& text) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(text.c_str(), "r"), pclose);
  std::string printed;
  for (int byte = 0; (byte = std::fgetc(pipe.get())) != EOF;) {
    printed += static_cast<char>(byte);
  }
  return printed;
}

CommandText commandOf(const std::string& before, const std::string& name,
                      const std::string& behind) {
  return sstr(before) + CommandText::inserted(sstr(name)) + sstr(behind);
}

// Every byte but newline and the zero byte.
std::string allBytes() {
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '\n') {
      bytes += static_cast<char>(byte);
    }
  }
  return bytes;
}

const std::string kNames[] = {
    "/ordinary/name-1.0_x86:y,@%+",
    "/with blanks\tand  more",
    "$(touch ran)",
    "`touch ran`",
    "\"; touch ran; \"",
    "'; touch ran; '",
    "a;touch ran;b&touch ran|touch ran",
    "$HOME ${HOME} $$ $(( 1 + 1 ))",
    "\\",
    "a\\\\b\\",
    "\\\"\\'\\`\\$",
    "*?[a]~{a,b}!^=#",
    "#touch ran",
    "%A% @B@ #C#",
    ")}>ran<ran",
    "\xFF\xFE\xC3(\x80",
    allBytes(),
};

struct Place {
  const char* name;
  const char* before;
  const char* behind;
};

const Place kPlaces[] = {
    {"double quotes", "printf '%s' \"", "\""},
    {"double quotes, behind other text", "printf '%s' \"$NONE\"''\"", "\"''"},
    {"single quotes", "printf '%s' '", "'"},
    {"bare", "printf %s ", ""},
    {"bare, behind a hash within a word", "x=a#'b\"'\"#'\"\\'; printf %s ", ""},
    {"bare, in a group", "( { printf %s ", "; } )"},
    {"bare, in a function", "f() { printf %s \"$1\"; }; f ", ""},
    {"command substitution", "printf %s \"$(printf %s ", ")\""},
    {"command substitution, double quotes in it", "printf %s \"$(printf %s \"", "\")\""},
    {"command substitution, single quotes in it", "printf %s \"$(printf %s '", "')\""},
    {"command substitution with a group", "printf %s \"$( (:); (printf %s ", ") )\""},
    {"behind arithmetic", "x=$((2*(3+4))); printf %s \"", "\""},
    {"backquotes", "x=`printf %s ", "`; printf %s \"$x\""},
    {"backquotes in double quotes", "printf %s \"`printf %s ", "`\""},
    {"double quotes in backquotes", "x=`printf %s \"", "\"`; printf %s \"$x\""},
    {"single quotes in backquotes", "x=`printf %s '", "'`; printf %s \"$x\""},
    {"backquotes in backquotes", "x=`y=\\`printf %s \"",
     "\"\\`; printf %s \"$y\"`; printf %s \"$x\""},
    {"backslashes in backquotes", "x=`: \\\\\" \\$HOME; printf %s ", "`; printf %s \"$x\""},
    {"default value in double quotes", "printf %s \"${NONE:-", "}\""},
    {"default value, bare", "x=${NONE:-", "}; printf %s \"$x\""},
    {"default value in its own quotes", "x=${NONE:-\"", "\"}; printf %s \"$x\""},
    {"behind an escaped quote", "x=\\\"; printf %s \"", "\""},
    {"behind an escaped quote in quotes", "x=\"\\\"\"; printf %s '", "'"},
    {"in front of a comment", "printf %s \"", "\" # it's"},
};

TEST(ShellQuoting, InsertedBytesArriveAsTheyAre) {
  test::TempDir empty;
  const test::ScopedCurrentDir here(empty.path());
  for (const Place& place : kPlaces) {
    for (const std::string& name : kNames) {
      const SString text = quoteForShell(commandOf(place.before, name, place.behind));
      EXPECT_EQ(name, printedBy(text)) << place.name << ": " << str(text);
    }
  }
  EXPECT_EQ(std::vector<std::string>(), test::listTree(empty.path()));
}

TEST(ShellQuoting, InsertedBytesInAStrangePlaceRunNothing) {
  test::TempDir empty;
  const test::ScopedCurrentDir here(empty.path());
  const Place places[] = {
      {"comment", ": # it's ", ""},
      {"behind a backslash", ": \\", ""},
      {"behind a backslash in double quotes", ": \"\\", "\""},
      {"behind a dollar", ": $", ""},
      {"a quote without end", "exec 2>&1; : \"", ""},
      {"backquotes without end", "exec 2>&1; : `: ", ""},
      {"pattern", "case x in ", ") : ;; esac"},
  };
  for (const Place& place : places) {
    for (const std::string& name : kNames) {
      printedBy(quoteForShell(commandOf(place.before, "\n" + name + "\n", place.behind)));
      EXPECT_EQ(std::vector<std::string>(), test::listTree(empty.path()))
          << place.name << ": " << name;
    }
  }
}

TEST(ShellQuoting, OrdinaryCommandsStayAsTheyAre) {
  for (const char* const text :
       {"", "\"/opt/jdk\"/bin/java -cp \"a:b\" `x \\$y` $(z) 'q' # it's \\",
        "unbalanced ' \" ` $( ${"}) {
    EXPECT_EQ(text, str(quoteForShell(CommandText(text))));
    EXPECT_EQ(std::string(text) + "/opt/jdk-17.0.1_x86",
              str(quoteForShell(commandOf(text, "/opt/jdk-17.0.1_x86", ""))));
  }
}

TEST(ShellQuoting, QuotesWhatTheShellWouldTakeForSyntax) {
  EXPECT_EQ("a\\ \\$b", str(quoteForShell(commandOf("", "a $b", ""))));
  EXPECT_EQ("\"a \\$b;\"", str(quoteForShell(commandOf("\"", "a $b;", "\""))));
  EXPECT_EQ("'a $b'\\''c'", str(quoteForShell(commandOf("'", "a $b'c", "'"))));
}

}  // namespace
