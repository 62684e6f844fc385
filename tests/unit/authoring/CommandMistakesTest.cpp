// What `check` finds in the launch script.
#include "unit/authoring/Mistakes.h"

namespace {

const std::vector<mistakes::Mistake> kRows = {
    {"unknown function",
     "l",
     "%CP%()",
     "%CPP%()",
     {"l:2: error: COMMAND: there is no function \"CPP\"; the wizard is not started; did you mean "
      "CP?"}},
    {"function in small letters",
     "l",
     "%CP%()",
     "%cp%()",
     {"l:2: error: COMMAND: there is no function \"cp\"; the wizard is not started; did you mean "
      "CP?"}},
    {"too few arguments",
     "l",
     "%SYSTEMPROP%(\"a\",\"b\")",
     "%SYSTEMPROP%(\"a\")",
     {"l:2: error: COMMAND: SYSTEMPROP needs 2 arguments and has 1; the wizard is not started"}},
    {"an equals sign where a comma belongs",
     "l",
     "(\"a\",\"b\")",
     "(\"a=b\")",
     {"l:2: error: COMMAND: SYSTEMPROP needs 2 arguments and has 1; the wizard is not started"}},
    {"parenthesis not closed",
     "l",
     "%RUNTIME_JAVAARGS%()",
     "%RUNTIME_JAVAARGS%( Main",
     {"l:2: error: COMMAND: RUNTIME_JAVAARGS has an argument without double quotes, or lacks its "
      "); the wizard is not started; write parentheses, and in them texts in double quotes with "
      "commas between"}},
    {"function without parentheses",
     "l",
     "%RUNTIME_JAVAARGS%()",
     "%RUNTIME_JAVAARGS%",
     {"l:2: error: COMMAND: RUNTIME_JAVAARGS lacks its (; the wizard is not started; write "
      "parentheses, and in them texts in double quotes with commas between"}},
    {"argument without quotes",
     "l",
     "(\"a\",\"b\")",
     "(a,\"b\")",
     {"l:2: error: COMMAND: SYSTEMPROP has an argument without double quotes, or lacks its ); the "
      "wizard is not started; write parentheses, and in them texts in double quotes with commas "
      "between"}},
    {"second percent sign missing",
     "l",
     "%CP%()",
     "%CP()",
     {"l:2: error: COMMAND: CP lacks its second percent sign; the wizard is not started; write "
      "%CP%("}},
    {"percent sign of a text",
     "l",
     "%CP%()",
     "-Dp=100% %CP%()",
     {"l:2: error: COMMAND: there is no function \" \"; the wizard is not started; put a percent "
      "sign of your own behind all calls, or into a tag of the jvm file"}},
    {"second percent sign missing at the end",
     "l",
     "%RUNTIME_JAVAARGS%()",
     "%RUNTIME_JAVAARGS()",
     {"l:2: error: COMMAND: RUNTIME_JAVAARGS lacks its second percent sign; the shell refuses the "
      "command; write %RUNTIME_JAVAARGS%(",
      "j:15: warning: REQ_JAVA_ARGS is not part of COMMAND; the arguments count for a search, but "
      "not for the wizard; write %RUNTIME_JAVAARGS%() or @REQ_JAVA_ARGS@ into COMMAND"}},
    {"text behind the closing quote",
     "l",
     "COMMAND: exec \"",
     "COMMAND: \"",
     {"l:2: error: text behind the closing quote is lost: \"%CP%() %SYSTEMPROP%(\"a\",\"b\") "
      "%RUNTIME_JAVAARGS%() com.example.Setup\"; a value that begins with a quote ends at the next "
      "single one; let the value begin with something else, such as exec, or put all of it into "
      "quotes and double those inside",
      "l:2: warning: COMMAND: CP is not called, though the setup carries jar files; nothing else "
      "puts them on the class path; write %CP%() in front of the class",
      "j:15: warning: REQ_JAVA_ARGS is not part of COMMAND; the arguments count for a search, but "
      "not for the wizard; write %RUNTIME_JAVAARGS%() or @REQ_JAVA_ARGS@ into COMMAND"}},
    {"unknown tag between at signs",
     "l",
     "com.example",
     "@MODULES@ com.example",
     {"l:2: warning: COMMAND: no jvm file sets @MODULES@; it vanishes from the command; set the "
      "tag MODULES in the jvm files, or leave it out"}},
    {"misspelt tag between at signs",
     "l",
     "@JVM_EXE@",
     "@JVM_EXEC@",
     {"l:2: error: COMMAND: no jvm file sets @JVM_EXEC@; it vanishes from the command; did you "
      "mean JVM_EXE?"}},
    {"function between at signs",
     "l",
     "com.example",
     "@LAUNCHER_DIR@ com.example",
     {"l:2: error: COMMAND: @LAUNCHER_DIR@ is a function and no tag; it vanishes from the command; "
      "write %LAUNCHER_DIR%()"}},
    {"text between two at signs",
     "l",
     "com.example",
     "-Da=x@y -Db=u@v com.example",
     {"l:2: error: COMMAND: the text between two @ is taken for the name of a tag: \"y -Db=u\"; it "
      "vanishes from the command; leave a single @ in the command, or put the text into a tag and "
      "name that"}},
    {"unknown tag of IF_EXISTS",
     "l",
     "com.example",
     "%IF_EXISTS%(\"NATIVE\",\"-n\") com.example",
     {"l:2: warning: COMMAND: no jvm file sets the tag \"NATIVE\" that IF_EXISTS asks for; its "
      "text is never put in; set the tag in a jvm file, or leave out the call"}},
    {"misspelt tag of IF_EXISTS",
     "l",
     "com.example",
     "%IF_EXISTS%(\"REQ_JAVA_ARG\",\"-n\") com.example",
     {"l:2: warning: COMMAND: no jvm file sets the tag \"REQ_JAVA_ARG\" that IF_EXISTS asks for; "
      "its text is never put in; did you mean REQ_JAVA_ARGS?"}},
    {"tag between number signs",
     "l",
     "com.example",
     "#JVM_HOME# com.example",
     {"l:2: warning: COMMAND: #JVM_HOME# is a tag of the jvm file and no variable of users; it "
      "vanishes from the command; write @JVM_HOME@"}},
    {"function between number signs",
     "l",
     "com.example",
     "#TEMP_DIR# com.example",
     {"l:2: warning: COMMAND: #TEMP_DIR# is a function and no variable of users; it vanishes from "
      "the command; write %TEMP_DIR%()"}},
    {"misspelt variable",
     "l",
     "com.example",
     "#HOMR# com.example",
     {"l:2: warning: COMMAND: hardly anybody sets #HOMR#; it vanishes from the command then; did "
      "you "
      "mean HOME?"}},
    {"variable that nothing sets",
     "l",
     "com.example",
     "#INSTALL_FOLDER# com.example",
     {"l:2: warning: COMMAND: hardly anybody sets #INSTALL_FOLDER#; it vanishes from the command "
      "then; leave it out, or set a tag of the jvm file and name that"}},
    {"property with blanks around its equals sign",
     "l",
     "com.example",
     "-Dmode = full com.example",
     {"l:2: error: COMMAND: blanks stand around the = of \"-Dmode\"; Java takes the = for the name "
      "of a class; write -Dmode=value"}},
    {"tag of another type",
     "l",
     "DESC:",
     "MESSAGE: No Java.\nDESC:",
     {"l:1: warning: MESSAGE is no tag that the launcher knows here; nothing reads it; it belongs "
      "into a file of the type jvm-message"}},
    {"tag that there is not",
     "l",
     "DESC:",
     "MAIN_CLASS: com.example.Setup\nDESC:",
     {"l:1: warning: MAIN_CLASS is no tag that the launcher knows here; nothing reads it"}},
    {"text between two number signs",
     "l",
     "com.example",
     "-Da=#fff -Db=#000 com.example",
     {"l:2: error: COMMAND: the text between two # is taken for the name of a variable: \"fff "
      "-Db=\"; it vanishes from the command; leave a single # in the command, or put the text into "
      "the environment"}},
    {"no slash behind the home",
     "l",
     "@JVM_HOME@/@JVM_EXE@",
     "@JVM_HOME@@JVM_EXE@",
     {"l:2: error: COMMAND: no slash stands behind @JVM_HOME@; the program is not found; write "
      "@JVM_HOME@/@JVM_EXE@"}},
    {"java of PATH",
     "l",
     "exec \"@JVM_HOME@/@JVM_EXE@\"",
     "exec java",
     {"l:2: warning: COMMAND: java is the one of PATH, not the one that was found; users without "
      "it, or with another one, cannot run the wizard; write \"@JVM_HOME@/@JVM_EXE@\""}},
    {"quote not closed",
     "l",
     "@JVM_EXE@\" ",
     "@JVM_EXE@ ",
     {"l:2: error: COMMAND: a quote is not closed; the shell refuses the command; close the "
      "quote"}},
    {"assignment behind exec",
     "l",
     "exec ",
     "exec LANG=C ",
     {"l:2: error: COMMAND: exec takes \"LANG=C\" for a program; the wizard is not started; put "
      "the assignment in front of exec"}},
    {"assignment with blanks",
     "l",
     "COMMAND: exec",
     "COMMAND: LANG = C; exec",
     {"l:2: error: COMMAND: the shell wants no blanks around the = of an assignment; it takes "
      "\"LANG\" for a program; write LANG=value"}},
    {"equals sign instead of the colon",
     "l",
     "COMMAND: exec",
     "COMMAND = -Da:b exec",
     {"l: error: COMMAND is missing; there is nothing to run",
      "l:2: error: the name of the tag COMMAND ends with =; it ends at the first colon, so that "
      "there is no tag COMMAND; write COMMAND: and the value"}},
    {"neither colon nor value",
     "l",
     "DESC: Sample",
     "DESC = Sample",
     {"l:1: error: missing colon at the end of the tag name; the launcher cannot load the file; "
      "write NAME: value; there are no comments here"}},
    {"class path option twice",
     "l",
     "%CP%()",
     "-cp %CP%()",
     {"l:2: error: COMMAND: the option of the class path stands twice; CP begins with the tag "
      "CLASSPATH of the jvm file; write %CP%() alone"}},
    {"no CP for the jar files",
     "l",
     "%CP%() ",
     "",
     {"l:2: warning: COMMAND: CP is not called, though the setup carries jar files; nothing else "
      "puts them on the class path; write %CP%() in front of the class"}},
    {"jar and class path",
     "l",
     "com.example",
     "-jar com.example",
     {"l:2: warning: COMMAND: with -jar Java ignores the class path; what CP collects is not "
      "found; name the class instead"}},
    {"option of a property twice",
     "l",
     "(\"a\",\"b\")",
     "(\"-Da\",\"b\")",
     {"l:2: error: COMMAND: SYSTEMPROP writes the -D itself; Java gets \"-D-Da\"; write the name "
      "alone, as in %SYSTEMPROP%(\"a\",\"...\")"}},
    {"archive that is not there",
     "l",
     "com.example",
     "%APPLICATION_ARCHIVE%() com.example",
     {"l:2: error: COMMAND: the setup carries no application archive; APPLICATION_ARCHIVE gives "
      "nothing; add a file of the type archive"}},
    {"in the background",
     "l",
     "com.example.Setup",
     "com.example.Setup &",
     {"l:2: warning: COMMAND: & at the end lets the wizard run in the background; the launcher "
      "ends at once and removes the files that the wizard needs; leave it out"}},
    {"arguments of Java not passed on",
     "l",
     " %RUNTIME_JAVAARGS%()",
     "",
     {"j:15: warning: REQ_JAVA_ARGS is not part of COMMAND; the arguments count for a search, but "
      "not for the wizard; write %RUNTIME_JAVAARGS%() or @REQ_JAVA_ARGS@ into COMMAND"}},
    {"word instead of a number",
     "l",
     "CONSOLE: 1",
     "CONSOLE: yes",
     {"l:3: warning: DISPLAY_CONSOLE: \"yes\" is no number; it counts as not given; write 1 or 0"}},
    {"misspelt tag of the launch script",
     "l",
     "DISPLAY_CONSOLE",
     "DISPLAY_CONSOL",
     {"l:3: warning: DISPLAY_CONSOL is no tag that the launcher knows here; nothing reads it; did "
      "you "
      "mean DISPLAY_CONSOLE?"}},
    {"command in two lines",
     "l",
     "COMMAND: exec",
     "COMMAND:\n  %CP%(\"@REQ_JAVA_ARGS@\")\n  exec\n/:\nCOMMENT: exec",
     {"l:4: warning: COMMAND has several lines; the first alone counts; write one line"}},
};

TEST(CommandMistakes, AreFoundAtTheirLines) {
  mistakes::expectFindings(kRows);
}

}  // namespace
