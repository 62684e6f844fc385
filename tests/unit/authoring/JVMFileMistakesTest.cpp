// What `check` finds in jvm files.
#include "unit/authoring/Mistakes.h"

namespace {

const std::vector<mistakes::Mistake> kRows = {
    {"misspelt tag",
     "j",
     "PATH_HINT:",
     "PATH_HINTS:",
     {"j:7: warning: PATH_HINTS is no tag that the launcher knows here; nothing reads it; did you "
      "mean "
      "PATH_HINT?"}},
    {"tag in small letters",
     "j",
     "JVM_EXE",
     "jvm_exe",
     {"j: error: JVM_EXE is missing; no JVM is ever accepted",
      "j:2: warning: jvm_exe is no tag that the launcher knows here; nothing reads it; did you "
      "mean "
      "JVM_EXE?"}},
    {"class path without its blank",
     "j",
     "\"-cp \"",
     "\"-cp\"",
     {"j:11: error: CLASSPATH: \"-cp\" does not end with its blank; the class path follows at "
      "once, as in -cpa.jar; put it into quotes with a blank: CLASSPATH: \"-cp \""}},
    {"class path without quotes",
     "j",
     "\"-cp \"",
     "-cp ",
     {"j:11: error: CLASSPATH: \"-cp\" does not end with its blank; the class path follows at "
      "once, as in -cpa.jar; put it into quotes with a blank: CLASSPATH: \"-cp \""}},
    {"class path missing",
     "j",
     "CLASSPATH: \"-cp \"\n",
     "",
     {"j: error: CLASSPATH is missing; the class path stands in the command without an option, and "
      "no Java is accepted; write CLASSPATH: \"-cp \""}},
    {"entries as the class path",
     "j",
     "\"-cp \"",
     "lib/a.jar",
     {"j:11: error: CLASSPATH: \"lib/a.jar\" is no option; the tag is what stands in front of a "
      "class path, and Java would take it for a class; write CLASSPATH: \"-cp \", and entries as "
      "JVM_CLASSPATH"}},
    {"separator of the class path missing",
     "j",
     "CLASSPATH_SEPARATOR: \":\"\n",
     "",
     {"j: warning: CLASSPATH_SEPARATOR is missing; the entries of a class path would stand side by "
      "side; write CLASSPATH_SEPARATOR: \":\""}},
    {"separator of Windows",
     "j",
     "SEPARATOR: \":\"",
     "SEPARATOR: ;",
     {"j:12: error: CLASSPATH_SEPARATOR: \";\" is the separator of Windows; for the shell the "
      "command ends there; write CLASSPATH_SEPARATOR: \":\""}},
    {"other separator",
     "j",
     "SEPARATOR: \":\"",
     "SEPARATOR: \",\"",
     {"j:12: warning: CLASSPATH_SEPARATOR: \",\" separates no entries; Java on Unix separates them "
      "by a colon; write CLASSPATH_SEPARATOR: \":\""}},
    {"SYSTEM missing",
     "j",
     "SYSTEM: -D\n",
     "",
     {"j: error: SYSTEM is missing; SYSTEMPROP makes no property that Java understands; write "
      "SYSTEM: -D"}},
    {"SYSTEM with a blank",
     "j",
     "SYSTEM: -D",
     "SYSTEM: \"-D \"",
     {"j:13: error: SYSTEM: \"-D \" ends with a blank; Java takes the property behind it for a "
      "class; write SYSTEM: -D"}},
    {"separator of a property missing",
     "j",
     "SYSTEM_SEPARATOR: \"=\"\n",
     "",
     {"j: error: SYSTEM_SEPARATOR is missing; SYSTEMPROP makes no property that Java understands; "
      "write SYSTEM_SEPARATOR: \"=\""}},
    {"other separator of a property",
     "j",
     "SYSTEM_SEPARATOR: \"=\"",
     "SYSTEM_SEPARATOR: \":\"",
     {"j:14: warning: SYSTEM_SEPARATOR: \":\" separates no name from its value; Java wants an "
      "equals sign; write SYSTEM_SEPARATOR: \"=\""}},
    {"absolute program",
     "j",
     "bin/java",
     "/usr/bin/java",
     {"j:2: error: JVM_EXE: \"/usr/bin/java\" is absolute, and the home of each Java is put in "
      "front of it; no Java has such a file, so that none is accepted; write the path below the "
      "home, such as bin/java"}},
    {"program with a variable",
     "j",
     "bin/java",
     "$JAVA_HOME/bin/java",
     {"j:2: error: JVM_EXE: \"$JAVA_HOME/bin/java\" holds signs that nothing expands; no Java has "
      "such a file, so that none is accepted; write the path below the home, such as bin/java"}},
    {"program with backslashes",
     "j",
     "bin/java",
     "bin\\java",
     {"j:2: error: JVM_EXE: \"bin\\java\" is no path of Unix; no Java has such a file, so that "
      "none is accepted; write slashes, such as bin/java"}},
    {"program of Windows",
     "j",
     "bin/java",
     "bin/java.exe",
     {"j:2: warning: JVM_EXE: \"bin/java.exe\" is a program of Windows; no Java on Unix has it; "
      "write bin/java"}},
    {"folder as the program",
     "j",
     "bin/java",
     "bin/",
     {"j:2: error: JVM_EXE: \"bin/\" is a folder; no Java has such a file, so that none is "
      "accepted; write the program in it, such as bin/java"}},
    {"program with arguments",
     "j",
     "bin/java",
     "bin/java -server",
     {"j:2: error: JVM_EXE: \"bin/java -server\" is more than the path of a program; no Java has "
      "such a file, so that none is accepted; write the path alone, and arguments as "
      "REQ_JAVA_ARGS"}},
    {"program with a comment",
     "j",
     "bin/java",
     "bin/java # the program",
     {"j:2: error: JVM_EXE: \"bin/java # the program\" holds a comment; values have none; no Java "
      "has such a file, so that none is accepted; delete it"}},
    {"tilde in a hint",
     "j",
     "  jre",
     "  ~/jre",
     {"j:8: warning: PATH_HINT: \"~/jre\" begins with ~; it is taken as it stands: no folder is "
      "called so; write the whole path, or name a variable in PLATFORM_HINT"}},
    {"variable in a hint",
     "j",
     "  jre",
     "  $HOME/jre",
     {"j:8: warning: PATH_HINT: \"$HOME/jre\" holds the name of a variable; it is taken as it "
      "stands: no folder is called so; name the variable in PLATFORM_HINT"}},
    {"variable in braces in a hint",
     "j",
     "  jre",
     "  ${HOME}/jre",
     {"j:8: warning: PATH_HINT: \"${HOME}/jre\" holds the name of a variable; it is taken as it "
      "stands: no folder is called so; name the variable in PLATFORM_HINT"}},
    {"variable between number signs in a hint",
     "j",
     "  jre",
     "  #HOME#/jre",
     {"j:8: warning: PATH_HINT: \"#HOME#/jre\" holds the name of a variable; it is taken as it "
      "stands: no folder is called so; name the variable in PLATFORM_HINT"}},
    {"pattern in a hint",
     "j",
     "java-17\n",
     "java-17*\n",
     {"j:9: warning: PATH_HINT: \"/usr/lib/jvm/java-17*\" is a pattern; it is taken as it stands: "
      "no folder is called so; write a line for each folder"}},
    {"program in a hint",
     "j",
     "java-17\n",
     "java-17/bin/java\n",
     {"j:9: warning: PATH_HINT: \"/usr/lib/jvm/java-17/bin/java\" names the program; JVM_EXE is "
      "put behind it once more; write the home, /usr/lib/jvm/java-17/"}},
    {"folder of the program in a hint",
     "j",
     "java-17\n",
     "java-17/bin\n",
     {"j:9: warning: PATH_HINT: \"/usr/lib/jvm/java-17/bin\" ends with the folder of JVM_EXE; "
      "JVM_EXE is put behind it once more; write the home, /usr/lib/jvm/java-17/"}},
    {"list in a hint",
     "j",
     "java-17\n",
     "java-17:/opt/java\n",
     {"j:9: warning: PATH_HINT: \"/usr/lib/jvm/java-17:/opt/java\" holds a colon; it is one name "
      "and not a list; write a line for each folder"}},
    {"slash of a hint missing",
     "j",
     "/usr/lib",
     "usr/lib",
     {"j:9: warning: PATH_HINT: \"usr/lib/jvm/java-17\" does not begin with a slash; it is looked "
      "for in the folder of the launcher; write /usr/lib/jvm/java-17"}},
    {"comment in a hint",
     "j",
     "java-17\n",
     "java-17 # Debian\n",
     {"j:9: warning: PATH_HINT: \"/usr/lib/jvm/java-17 # Debian\" holds a comment; it belongs to "
      "the name of the folder; delete it"}},
    {"comment among the hints",
     "j",
     "  jre",
     "  # beside the setup\n  jre",
     {"j:8: warning: \"# beside the setup\" is no comment; blocks have none; it is a value of the "
      "block; delete the line"}},
    {"path of Windows in a hint",
     "j",
     "  jre",
     "  C:\\Java",
     {"j:8: warning: PATH_HINT: \"C:\\Java\" is no path of Unix; no folder is called so; write "
      "slashes"}},
    {"variable with its sign",
     "j",
     "JAVA_HOME",
     "$JAVA_HOME",
     {"j:6: warning: PLATFORM_HINT: \"$JAVA_HOME\" is no name of an environment variable; nothing "
      "is found by it; write one name in each line, such as JAVA_HOME, without signs around it"}},
    {"path as a variable",
     "j",
     "JAVA_HOME",
     "/opt/java",
     {"j:6: warning: PLATFORM_HINT: \"/opt/java\" is a path; names of environment variables are "
      "looked up here; write it as PATH_HINT"}},
    {"several variables in a line",
     "j",
     "JAVA_HOME",
     "JAVA_HOME, JDK_HOME",
     {"j:6: warning: PLATFORM_HINT: \"JAVA_HOME, JDK_HOME\" is no name of an environment variable; "
      "nothing is found by it; write one name in each line, such as JAVA_HOME, without signs "
      "around it"}},
    {"misspelt variable name",
     "j",
     "JAVA_HOME",
     "JAVAHOME",
     {"j:6: warning: PLATFORM_HINT: hardly anybody sets \"JAVAHOME\"; nothing is found by it; did "
      "you mean JAVA_HOME?"}},
    {"variable for the class path missing",
     "j",
     "CLASSPATH: \"-cp \"",
     "USE_CP_ENV_VAR: 1",
     {"j:11: error: USE_CP_ENV_VAR is 1 without CP_ENV_VAR; the class path is lost, and no Java is "
      "accepted; name the variable: CP_ENV_VAR: CLASSPATH"}},
    {"variable for the class path with its sign",
     "j",
     "CLASSPATH: \"-cp \"",
     "USE_CP_ENV_VAR: 1\nCP_ENV_VAR: $CLASSPATH",
     {"j:12: error: CP_ENV_VAR: \"$CLASSPATH\" is no name of a variable; the class path does not "
      "reach Java; write the name alone, without signs around it"}},
    {"variable for the class path unused",
     "j",
     "CLASSPATH: \"-cp \"",
     "CLASSPATH: \"-cp \"\nCP_ENV_VAR: CLASSPATH",
     {"j:12: warning: CP_ENV_VAR without USE_CP_ENV_VAR; the class path goes into the command, not "
      "into the variable; write USE_CP_ENV_VAR: 1, or leave it out"}},
    {"word for USE_CP_ENV_VAR",
     "j",
     "CLASSPATH: \"-cp \"",
     "CLASSPATH: \"-cp \"\nUSE_CP_ENV_VAR: true",
     {"j:12: warning: USE_CP_ENV_VAR: \"true\" is neither 1 nor 0; it counts as 0; write 1 or 0"}},
    {"SEARCH_ALL in front",
     "j",
     "DESC: Java 17",
     "DESC: Java 17\nSEARCH_ALL: 1",
     {"j:2: warning: SEARCH_ALL hides the jvm files behind it: k; their hints are never tried, "
      "since the scan begins first; give it to the last jvm file alone"}},
    {"tag that holds itself",
     "j",
     "-Xmx1g",
     "@REQ_JAVA_ARGS@ -Xmx1g",
     {"j:15: error: REQ_JAVA_ARGS holds itself; a search never ends once it tries a Java with this "
      "file; take one of the names out"}},
    {"circle of tags",
     "j",
     "-Xmx1g",
     "@A@\nA: x@B@\nB: y@A@",
     {"j:16: error: A holds itself, by way of B; a search never ends once it tries a Java with "
      "this file; take one of the names out"}},
    {"circle of the author's own tags",
     "j",
     "-Xmx1g",
     "-Xmx1g\nA: @A@",
     {"j:16: warning: A holds itself; a command that names it never ends; take one of the names "
      "out"}},
    {"function in arguments",
     "j",
     "-Xmx1g",
     "-Da=%LAUNCHER_DIR%()",
     {"j:15: error: REQ_JAVA_ARGS: the function LAUNCHER_DIR is not called here; a search puts the "
      "value into its command as it stands, and no Java is accepted; write it into COMMAND"}},
    {"quote in arguments",
     "j",
     "-Xmx1g",
     "-Da=\"b c",
     {"j:15: error: REQ_JAVA_ARGS: a quote is not closed; the shell refuses each command for this "
      "Java, and none is accepted; close the quote"}},
    {"environment without a value",
     "j",
     "A=b",
     "A",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"A\" has no =; the variable of that name becomes empty; "
      "write NAME=value"}},
    {"environment exported",
     "j",
     "A=b",
     "export A=b",
     {"j:16: error: SET_ENV_FOR_WIZARD: \"export A=b\" sets no variable; \"export A\" is no name "
      "of one; write NAME=value"}},
    {"environment in quotes",
     "j",
     "A=b",
     "A=\"b c\"",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"A=\"b c\"\" has quotes; they belong to the value; "
      "leave them out"}},
    {"environment with a variable",
     "j",
     "A=b",
     "A=$HOME/x",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"A=$HOME/x\" holds a $; no shell reads it: it stays as "
      "it stands; set the variable in COMMAND"}},
    {"written by the launcher",
     "j",
     "DESC: Java 17",
     "DESC: Java 17\nJVM_HOME: /opt/java\nJVM_FILE: /tmp/cvj1",
     {"j:3: warning: JVM_FILE is written by the launcher; this looks like its copy for the Java of "
      "one machine; leave out JVM_HOME, JVM_FILE and JVM_TEMP"}},
    {"two slashes in JVM_EXE",
     "j",
     "bin/java",
     "bin//java",
     {"j:2: warning: JVM_EXE: \"bin//java\" holds two slashes together; folders of PATH and of a "
      "scan do not end with it; write one slash"}},
    {"JVM_EXE in capitals",
     "j",
     "bin/java",
     "bin/Java",
     {"j:2: warning: JVM_EXE: \"bin/Java\" is not the java of a Java; the verify class is not run "
      "by it; write bin/java"}},
    {"name of a variable in JVM_EXE",
     "j",
     "bin/java",
     "JAVA_HOME/bin/java",
     {"j:2: warning: JVM_EXE: \"JAVA_HOME/bin/java\" begins with the name of a variable; the path "
      "is put behind the home of each Java; write bin/java"}},
    {"PATH among the variables",
     "j",
     "PLATFORM_HINT: JAVA_HOME",
     "PLATFORM_HINT: PATH",
     {"j:6: warning: PLATFORM_HINT: PATH holds folders of programs and no homes; they are looked "
      "at anyway, as such; leave it out"}},
    {"single quotes about a folder",
     "j",
     "/usr/lib/jvm/java-17",
     "'/opt/my jdk'",
     {"j:9: warning: PATH_HINT: \"'/opt/my jdk'\" has single quotes; they belong to the name of "
      "the folder; leave them out"}},
    {"list with semicolons",
     "j",
     "/usr/lib/jvm/java-17",
     "/opt/jdk;/opt/jre",
     {"j:9: warning: PATH_HINT: \"/opt/jdk;/opt/jre\" holds a semicolon; it is one name and not a "
      "list; write a line for each folder"}},
    {"folder of Javas",
     "j",
     "/usr/lib/jvm/java-17",
     "/usr/lib/jvm/",
     {"j:9: warning: PATH_HINT: \"/usr/lib/jvm/\" is a folder of Javas and no home of one; folders "
      "in it are not looked at; write a line for each Java in it"}},
    {"folders in braces",
     "j",
     "/usr/lib/jvm/java-17",
     "/opt/{jdk,jre}",
     {"j:9: warning: PATH_HINT: \"/opt/{jdk,jre}\" is a pattern; it is taken as it stands: no "
      "folder is called so; write a line for each folder"}},
};

TEST(JVMFileMistakes, AreFoundAtTheirLines) {
  mistakes::expectFindings(kRows);
}

}  // namespace
