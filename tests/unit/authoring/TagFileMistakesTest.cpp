// What `check` finds in the way in which a tag file is written.
#include <algorithm>

#include "unit/authoring/Mistakes.h"

namespace {

std::string withReturns(std::string text) {
  std::replace(text.begin(), text.end(), '\n', '\r');
  return text;
}

const std::vector<mistakes::Mistake> kRows = {
    {"block without its end",
     "j",
     "17\n/:\nPLATFORM",
     "17\nPLATFORM",
     {"j:5: error: PLATFORM_HINT stands in the block of JVM_PROPERTIES, which begins in line 3; "
      "the line is a value of that block and sets no tag; end the block with a line /: in front of "
      "it"}},
    {"end of a block without a block",
     "j",
     "PLATFORM_HINT: JAVA_HOME\n",
     "PLATFORM_HINT: JAVA_HOME\n/:\n",
     {"j:7: error: this /: ends no block; it begins a block of the name / that swallows all lines "
      "up to line 11; delete the line"}},
    {"end of a block with more behind it",
     "j",
     "17\n/:",
     "17\n/: end",
     {"j:5: error: \"/: end\" does not end the block; it is a value of the block; write /: alone "
      "on its line",
      "j:6: error: PLATFORM_HINT stands in the block of JVM_PROPERTIES, which begins in line 3; "
      "the line is a value of that block and sets no tag; end the block with a line /: in front of "
      "it"}},
    {"end of a block misspelt",
     "j",
     "17\n/:",
     "17\n:/",
     {"j:5: error: \":/\" does not end the block; it is a value of the block; write /: alone on "
      "its line",
      "j:6: error: PLATFORM_HINT stands in the block of JVM_PROPERTIES, which begins in line 3; "
      "the line is a value of that block and sets no tag; end the block with a line /: in front of "
      "it"}},
    {"empty value that begins a block",
     "j",
     "DESC: Java 17",
     "DESC:",
     {"j: error: JVM_EXE is missing; no JVM is ever accepted",
      "j: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no JVM",
      "j:2: error: JVM_EXE stands in the block of DESC, which begins in line 1; the line is a "
      "value of that block and sets no tag; end the block with a line /: in front of it"}},
    {"tag twice",
     "j",
     "DESC: Java 17",
     "DESC: Java 17\nDESC: Seventeen",
     {"j:1: warning: DESC is given again in line 2; only the last one counts, and what stands here "
      "is lost; write it once, several values as a block"}},
    {"block twice",
     "j",
     "CLASSPATH:",
     "PATH_HINT: /opt/java\nCLASSPATH:",
     {"j:7: warning: PATH_HINT is given again in line 11; only the last one counts, and what "
      "stands here is lost; write it once, several values as a block"}},
    {"comment with a colon",
     "j",
     "DESC: Java 17",
     "# Note: the first\nDESC: Java 17",
     {"j:1: warning: \"# Note: the first\" is no comment; tag files have none; it is read as a tag "
      "of its own; delete the line"}},
    {"comment that begins a block",
     "j",
     "PATH_HINT:",
     "// Places:\nPATH_HINT:",
     {"j:7: error: \"// Places:\" is no comment; tag files have none; it begins a block that "
      "swallows all lines up to line 11; delete the line"}},
    {"comment without a colon",
     "j",
     "DESC: Java 17",
     "# the first\nDESC: Java 17",
     {"j:1: error: missing colon at the end of the tag name; the launcher cannot load the file; "
      "write NAME: value; there are no comments here"}},
    {"text behind a quote",
     "j",
     "\"-cp \"",
     "\"-cp \" of Java",
     {"j:11: warning: text behind the closing quote is lost: \"of Java\"; a value that begins with "
      "a quote ends at the next single one; put all of the value into quotes and double those "
      "inside"}},
    {"byte order mark",
     "j",
     "DESC: Java 17",
     "\357\273\277DESC: Java 17",
     {"j:1: error: the file begins with a byte order mark; the launcher takes it as a part of the "
      "first tag's name, which it then does not know; save the file as UTF-8 without a mark"}},
    {"no-break space",
     "j",
     "JVM_EXE: bin",
     "JVM_EXE:\302\240bin",
     {"j:2: warning: the line holds a no-break space (U+00A0); to the launcher it is a letter like "
      "any other; write an ordinary blank"}},
    {"typographic quotes",
     "j",
     "\"-cp \"",
     "\342\200\234-cp \342\200\235",
     {"j:11: warning: the line holds a typographic quote (U+201C); to the launcher it is a letter "
      "like any other; write a double quote",
      "j:11: warning: the line holds a typographic quote (U+201D); to the launcher it is a letter "
      "like any other; write a double quote",
      "j:11: error: CLASSPATH: \"\342\200\234-cp \342\200\235\" is no option for a class path; "
      "Java does not take it, and no Java is accepted; write CLASSPATH: \"-cp \""}},
    {"zero byte",
     "j",
     "-Xmx1g",
     std::string("-Xmx1g\000x", 8),
     {"j:15: error: the line holds a zero byte; the value ends there; delete the byte"}},
    {"dash for a hyphen",
     "j",
     "-Xmx1g",
     "\342\200\223Xmx1g",
     {"j:15: warning: the line holds a dash (U+2013); to the launcher it is a letter like any "
      "other; write a hyphen",
      "j:15: error: REQ_JAVA_ARGS: \"\342\200\223Xmx1g\" is no option; Java takes it for the "
      "class, and no Java is accepted; write options alone, such as -Xmx512m"}},
    {"jar in the place of a jvm file",
     "j",
     mistakes::kJavaFile,
     std::string("PK\3\4\n\0\0\0", 8),
     {"j: error: the file is no tag file; it looks like a zip archive (a jar is one); the launcher "
      "finds no tag in it that it knows; correct its type in the manifest",
      "j:1: error: missing colon at the end of the tag name; the launcher cannot load the file; "
      "write NAME: value; there are no comments here"}},
    {"tag of one value without its value, which a block begins",
     "j",
     "JVM_EXE: bin/java",
     "JVM_EXE:\n  bin/java",
     {"j: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no JVM",
      "j:4: error: JVM_PROPERTIES stands in the block of JVM_EXE, which begins in line 2; the line "
      "is a value of that block and sets no tag; end the block with a line /: in front of it"}},
    {"UTF-16",
     "j",
     "DESC",
     std::string("\377\376D\000E\000S\000C\000", 10),
     {"j: error: the file is UTF-16; the launcher finds no tag in it that it knows; save it as "
      "UTF-8"}},
    {"line ends of a Macintosh",
     "j",
     mistakes::kJavaFile,
     withReturns(mistakes::kJavaFile),
     {"j: error: JVM_EXE is missing; no JVM is ever accepted",
      "j: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no JVM",
      "j:1: error: the whole file is one line; a newline ends a line; carriage returns are "
      "dropped; save the file with the line ends of Unix"}},
    {"message in another encoding",
     "m",
     "No Java",
     "Kein Java gef\374nden",
     {"m:1: warning: the message is not UTF-8; it is shown as it stands, and few terminals read "
      "anything else; save the file as UTF-8"}},
    {"message with an escape",
     "m",
     "No Java",
     "Pas de Java trouv\\u00e9",
     {"m:1: warning: the message holds the escape \"\\u00e9\"; it is shown as it stands; write the "
      "letter itself"}},
    {"message in two lines",
     "m",
     "MESSAGE: No Java.",
     "MESSAGE:\n  No\n  Java.\n/:",
     {"m:3: warning: MESSAGE has several lines; the first alone counts; write one line"}},
};

TEST(TagFileMistakes, AreFoundAtTheirLines) {
  mistakes::expectFindings(kRows);
}

}  // namespace
