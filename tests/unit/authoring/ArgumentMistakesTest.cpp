// What `check` finds in the words of the command: those that Java gets, and those that calls put
// into it.
#include "unit/authoring/Mistakes.h"

namespace {

const std::vector<mistakes::Mistake> kRows = {
    {"blank in an entry of the class path",
     "l",
     "%CP%()",
     "%CP%(\"my app.jar\")",
     {"l:2: error: COMMAND: the entry \"my app.jar\" holds a blank outside quotes; the shell makes "
      "several words of it; put the entry into double quotes, doubled as in %CP%(\"\"\"my "
      "lib.jar\"\"\"), and separate entries by commas"}},
    {"semicolon in an entry of the class path",
     "l",
     "%CP%()",
     "%CP%(\"a.jar;b.jar\")",
     {"l:2: error: COMMAND: the entry \"a.jar;b.jar\" holds ; outside quotes; the shell takes it "
      "for a sign of its own; put the entry into double quotes, doubled as in %CP%(\"\"\"my "
      "lib.jar\"\"\"), and separate entries by commas"}},
    {"function with a blank behind it in an entry",
     "l",
     "%CP%()",
     "%CP%(\"%LAUNCHER_DIR%() lib.jar\")",
     {"l:2: error: COMMAND: the entry \"%LAUNCHER_DIR%() lib.jar\" holds a blank outside quotes; "
      "the shell makes several words of it; put the entry into double quotes, doubled as in "
      "%CP%(\"\"\"my lib.jar\"\"\"), and separate entries by commas"}},
    {"blank in the value of a property",
     "l",
     "%SYSTEMPROP%(\"a\",\"b\")",
     "%SYSTEMPROP%(\"a\",\"b c\")",
     {"l:2: error: COMMAND: SYSTEMPROP: the value \"b c\" holds a blank outside quotes; the shell "
      "makes several words of it; put the value into double quotes, doubled as in "
      "%SYSTEMPROP%(\"name\",\"\"\"a b\"\"\")"}},
    {"ampersand in the value of a property",
     "l",
     "%SYSTEMPROP%(\"a\",\"b\")",
     "%SYSTEMPROP%(\"a\",\"b&c\")",
     {"l:2: error: COMMAND: SYSTEMPROP: the value \"b&c\" holds & outside quotes; the shell takes "
      "it for a sign of its own; put the value into double quotes, doubled as in "
      "%SYSTEMPROP%(\"name\",\"\"\"a b\"\"\")"}},
    {"equals sign in the name of a property",
     "l",
     "%SYSTEMPROP%(\"a\",\"b\")",
     "%SYSTEMPROP%(\"a=b\",\"\")",
     {"l:2: error: COMMAND: SYSTEMPROP: \"a=b\" is no name of a property; the wizard does not find "
      "the property; write %SYSTEMPROP%(\"name\",\"value\")"}},
    {"blank in the name of a property",
     "l",
     "%SYSTEMPROP%(\"a\",\"b\")",
     "%SYSTEMPROP%(\"a b\",\"c\")",
     {"l:2: error: COMMAND: SYSTEMPROP: \"a b\" is no name of a property; the wizard does not find "
      "the property; write %SYSTEMPROP%(\"name\",\"value\")"}},
    {"property without a name",
     "l",
     "%SYSTEMPROP%(\"a\",\"b\")",
     "%SYSTEMPROP%(\"\",\"c\")",
     {"l:2: error: COMMAND: SYSTEMPROP: \"\" is no name of a property; the wizard does not find "
      "the property; write %SYSTEMPROP%(\"name\",\"value\")"}},
    {"blank in the archive",
     "l",
     "DISPLAY_CONSOLE",
     "ARCHIVE: my lib.jar\nDISPLAY_CONSOLE",
     {"l:3: error: ARCHIVE: the entry \"my lib.jar\" holds a blank outside quotes; the shell makes "
      "several words of it; put the entry into double quotes, doubled as in ARCHIVE: \"\"\"my "
      "lib.jar\"\"\""}},
    {"semicolon in the archive",
     "l",
     "DISPLAY_CONSOLE",
     "ARCHIVE: a.jar;b.jar\nDISPLAY_CONSOLE",
     {"l:3: error: ARCHIVE: the entry \"a.jar;b.jar\" holds ; outside quotes; the shell takes it "
      "for a sign of its own; put the entry into double quotes, doubled as in ARCHIVE: \"\"\"my "
      "lib.jar\"\"\""}},
    {"replacement of nothing",
     "l",
     "com.ex",
     "%REPLACE%(\"\",\"x\",\"abc\") com.ex",
     {"l:2: warning: COMMAND: REPLACE looks for nothing; it replaces nothing; write the text that "
      "is to be replaced first"}},
    {"replacement in what a function gives",
     "l",
     "com.ex",
     "-Da=%REPLACE%(\"/\",\"_\",\"%LAUNCHER_DIR%()\") com.ex",
     {"l:2: warning: COMMAND: REPLACE: \"/\" does not stand in \"%LAUNCHER_DIR%()\"; the subject "
      "is taken as it is written, in front of all macros, and nothing is replaced; let the shell "
      "do it, or leave it out"}},
    {"replacement in what a tag holds",
     "l",
     "com.ex",
     "-Da=%REPLACE%(\"/\",\"_\",\"@JVM_HOME@\") com.ex",
     {"l:2: warning: COMMAND: REPLACE: \"/\" does not stand in \"@JVM_HOME@\"; the subject is "
      "taken as it is written, in front of all macros, and nothing is replaced; let the shell do "
      "it, or leave it out"}},
    {"no blank in front of the class path",
     "l",
     "\" %CP",
     "\"%CP",
     {"l:2: error: COMMAND: no blank stands in front of CP; the shell makes one word of both; "
      "write a blank there"}},
    {"no blank behind the class path",
     "l",
     "%CP%() ",
     "%CP%()-Dx=y ",
     {"l:2: error: COMMAND: no blank stands behind CP; the shell makes one word of both; write a "
      "blank there"}},
    {"no blank behind the arguments of a side file",
     "l",
     "%RUNTIME_JAVAARGS%() ",
     "%RUNTIME_JAVAARGS%()",
     {"l:2: warning: COMMAND: no blank stands behind RUNTIME_JAVAARGS; the shell makes one word of "
      "both; write a blank there"}},
    {"class in front of the class path",
     "l",
     "%CP%() %SYSTEMPROP%(\"a\",\"b\") %RUNTIME_JAVAARGS%() com.example.Setup",
     "com.example.Setup %CP%() %RUNTIME_JAVAARGS%()",
     {"l:2: error: COMMAND: CP stands behind the class com.example.Setup; Java takes the class "
      "path for arguments of the wizard; write %CP%() in front of the class"}},
    {"no class",
     "l",
     " com.example.Setup",
     "",
     {"l:2: error: COMMAND: no class is named; Java has nothing to run; write the class of the "
      "wizard at the end"}},
    {"second class path",
     "l",
     "%CP%()",
     "%CP%() -cp extra.jar",
     {"l:2: error: COMMAND: a class path stands beside CP; Java takes the last one only; write the "
      "entries into the call: %CP%(\"...\")"}},
    {"second class path by its long name",
     "l",
     "%CP%()",
     "%CP%() --class-path=extra.jar",
     {"l:2: error: COMMAND: a class path stands beside CP; Java takes the last one only; write the "
      "entries into the call: %CP%(\"...\")"}},
    {"program that is a folder",
     "l",
     "\"@JVM_HOME@/@JVM_EXE@\"",
     "\"@JVM_HOME@\"",
     {"l:2: error: COMMAND: @JVM_HOME@ is a folder; the shell cannot run it; write "
      "\"@JVM_HOME@/@JVM_EXE@\""}},
    {"program without its home",
     "l",
     "\"@JVM_HOME@/@JVM_EXE@\"",
     "\"@JVM_EXE@\"",
     {"l:2: error: COMMAND: @JVM_EXE@ is a path below the home of the Java; the program is not "
      "found; write \"@JVM_HOME@/@JVM_EXE@\""}},
    {"folder of the program twice",
     "l",
     "/@JVM_EXE@",
     "/bin/@JVM_EXE@",
     {"l:2: error: COMMAND: @JVM_EXE@ begins with bin/ itself; the program is not found; write "
      "@JVM_HOME@/@JVM_EXE@"}},
    {"backslash behind the home",
     "l",
     "/@JVM_EXE@",
     "\\@JVM_EXE@",
     {"l:2: error: COMMAND: a backslash stands behind @JVM_HOME@; the program is not found; write "
      "\"@JVM_HOME@/@JVM_EXE@\""}},
    {"program of Windows",
     "l",
     "@JVM_EXE@",
     "bin/javaw",
     {"l:2: warning: COMMAND: \"@JVM_HOME@/bin/javaw\" is a program of Windows; no Java on Unix "
      "has it; write \"@JVM_HOME@/@JVM_EXE@\""}},
    {"option and its value apart",
     "l",
     "%RUNTIME",
     "-Xmx 512m %RUNTIME",
     {"l:2: error: COMMAND: a blank stands behind -Xmx; Java takes the next word for a class; "
      "leave out the blank"}},
    {"size with a unit of two letters",
     "l",
     "%RUNTIME",
     "-Xms64m -Xmx512MB %RUNTIME",
     {"l:2: error: COMMAND: -Xmx512MB is no size that Java knows; Java refuses to start; write a "
      "number and k, m or g, such as -Xmx512m"}},
    {"size with a fraction, in front of what nobody knows yet",
     "l",
     "%RUNTIME",
     "-Xmn1.5g -Xmx512MB @JVM_FILE@ %RUNTIME",
     {"l:2: error: COMMAND: -Xmn1.5g is no size that Java knows; Java refuses to start; write a "
      "number and k, m or g, such as -Xmx512m"}},
    {"option -Xmn and its size apart",
     "l",
     "%RUNTIME",
     "-Xmn 64m %RUNTIME",
     {"l:2: error: COMMAND: a blank stands behind -Xmn; Java takes the next word for a class; "
      "leave out the blank"}},
    {"option -D and its name apart",
     "l",
     "%RUNTIME",
     "-D a=b %RUNTIME",
     {"l:2: error: COMMAND: a blank stands behind -D; Java takes the next word for a class; leave "
      "out the blank"}},
    {"pipe behind the wizard",
     "l",
     "Setup\n",
     "Setup | tee setup.log\n",
     {"l:2: warning: COMMAND: more stands behind the wizard; the user's arguments, such as "
      "-silent, are put at the end and do not reach the wizard; let the wizard be the last "
      "command"}},
    {"semicolon behind the wizard",
     "l",
     "Setup\n",
     "Setup;\n",
     {"l:2: warning: COMMAND: more stands behind the wizard; the user's arguments, such as "
      "-silent, are put at the end and do not reach the wizard; let the wizard be the last "
      "command"}},
    {"command behind the wizard",
     "l",
     "Setup\n",
     "Setup && echo done\n",
     {"l:2: warning: COMMAND: more stands behind the wizard; the user's arguments, such as "
      "-silent, are put at the end and do not reach the wizard; let the wizard be the last "
      "command"}},
    {"wizard in parentheses",
     "l",
     "exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %SYSTEMPROP%(\"a\",\"b\") %RUNTIME_JAVAARGS%() "
     "com.example.Setup",
     "(exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_JAVAARGS%() Setup)",
     {"l:2: warning: COMMAND: more stands behind the wizard; the user's arguments, such as "
      "-silent, are put at the end and do not reach the wizard; let the wizard be the last "
      "command"}},
    {"wizard in an if",
     "l",
     "exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %SYSTEMPROP%(\"a\",\"b\") %RUNTIME_JAVAARGS%() "
     "com.example.Setup",
     "if true; then exec \"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_JAVAARGS%() Setup; fi",
     {"l:2: warning: COMMAND: more stands behind the wizard; the user's arguments, such as "
      "-silent, are put at the end and do not reach the wizard; let the wizard be the last "
      "command"}},
    {"comment of the shell",
     "l",
     "Setup\n",
     "Setup # the wizard\n",
     {"l:2: warning: COMMAND: # begins a comment of the shell; the user's arguments are put behind "
      "it and do not reach the wizard; leave it out"}},
    {"line that is to go on",
     "l",
     "Setup\n",
     "\\\n-Dt=a:b com.example.Setup\n",
     {"l:2: error: COMMAND: the backslash at the end joins no lines; the next line is a tag of its "
      "own; write the command on one line"}},
    {"arguments of a jvm file twice",
     "l",
     "%RUNTIME",
     "@REQ_JAVA_ARGS@ %RUNTIME",
     {"l:2: warning: COMMAND: @REQ_JAVA_ARGS@ stands beside RUNTIME_JAVAARGS; Java gets these "
      "arguments twice; leave out @REQ_JAVA_ARGS@"}},
    {"tag in the title",
     "l",
     "Sample",
     "Setup of @NAME@",
     {"l:1: warning: DESC: @NAME@ is not filled in here; users read it as it stands; write the "
      "text itself"}},
    {"function in the title",
     "l",
     "Sample",
     "Setup in %LAUNCHER_DIR%()",
     {"l:1: warning: DESC: %LAUNCHER_DIR% is not filled in here; users read it as it stands; write "
      "the text itself"}},
    {"list with commas in an entry",
     "l",
     "%CP%()",
     "%CP%(\"a.jar,b.jar\")",
     {"l:2: error: COMMAND: the entry \"a.jar,b.jar\" is a list with commas; Java takes it for the "
      "name of one file; write %CP%(\"a.jar\",\"b.jar\")"}},
    {"file with entries",
     "l",
     "%CP%()",
     "%CP%(\"@entries.txt\")",
     {"l:2: warning: COMMAND: the entry \"@entries.txt\" names no list; a file with entries is for "
      "-cp:p and -cp:a; write the entries themselves"}},
    {"option of Java behind the class",
     "l",
     "Setup\n",
     "Setup -Xmx512m\n",
     {"l:2: warning: COMMAND: -Xmx512m stands behind the class com.example.Setup; Java gives it to "
      "the wizard; write it in front of the class"}},
};

TEST(ArgumentMistakes, AreFoundAtTheirLines) {
  mistakes::expectFindings(kRows);
}

}  // namespace
