// What `check` finds in the tags of a jvm file that become words of a command or variables.
#include "unit/authoring/Mistakes.h"

namespace {

const std::vector<mistakes::Mistake> kRows = {
    {"class path among the arguments",
     "j",
     "-Xmx1g",
     "-cp extra.jar",
     {"j:15: error: REQ_JAVA_ARGS: -cp takes the place of the class path; Java does not find the "
      "class that it is to run, and no Java is accepted; write the entries as JVM_CLASSPATH"}},
    {"class among the arguments",
     "j",
     "-Xmx1g",
     "-Xmx1g com.example.Setup",
     {"j:15: error: REQ_JAVA_ARGS: \"com.example.Setup\" is no option; Java takes it for the "
      "class, and no Java is accepted; write options alone, such as -Xmx512m"}},
    {"argument without its hyphen",
     "j",
     "-Xmx1g",
     "Xmx1g",
     {"j:15: error: REQ_JAVA_ARGS: \"Xmx1g\" is no option; Java takes it for the class, and no "
      "Java is accepted; write options alone, such as -Xmx512m"}},
    {"size that ends with a comma",
     "j",
     "-Xmx1g",
     "-Xms64m, -Xmx1g",
     {"j:15: error: REQ_JAVA_ARGS: -Xms64m, is no size that Java knows; Java refuses to start, and "
      "no Java is accepted; write a number and k, m or g, such as -Xmx512m"}},
    {"class path in one word among the arguments",
     "j",
     "-Xmx1g",
     "--class-path=extra.jar",
     {"j:15: error: REQ_JAVA_ARGS: --class-path=extra.jar takes the place of the class path; Java "
      "does not find the class that it is to run, and no Java is accepted; write the entries as "
      "JVM_CLASSPATH"}},
    {"jar among the arguments",
     "j",
     "-Xmx1g",
     "-jar app.jar",
     {"j:15: error: REQ_JAVA_ARGS: with -jar Java runs no class; no Java is accepted; leave it "
      "out"}},
    {"argument that starts nothing",
     "j",
     "-Xmx1g",
     "-version",
     {"j:15: error: REQ_JAVA_ARGS: with -version Java runs no class; no Java is accepted; leave it "
      "out"}},
    {"semicolon among the arguments",
     "j",
     "-Xmx1g",
     "-Da=b;-Dc=d",
     {"j:15: error: REQ_JAVA_ARGS: a sign such as ; or & ends the command; the class stands behind "
      "it in the command, and no Java is accepted; put the argument into double quotes"}},
    {"ampersand among the arguments",
     "j",
     "-Xmx1g",
     "-Durl=http://x/?a=1&b=2",
     {"j:15: error: REQ_JAVA_ARGS: a sign such as ; or & ends the command; the class stands behind "
      "it in the command, and no Java is accepted; put the argument into double quotes"}},
    {"parentheses among the arguments",
     "j",
     "-Xmx1g",
     "-Dname=Foo(TM)",
     {"j:15: error: REQ_JAVA_ARGS: a sign such as ; or & ends the command; the class stands behind "
      "it in the command, and no Java is accepted; put the argument into double quotes"}},
    {"comment behind the arguments",
     "j",
     "-Xmx1g",
     "-Xmx1g # more",
     {"j:15: error: REQ_JAVA_ARGS: # begins a comment of the shell; the class stands behind it in "
      "the command, and no Java is accepted; leave it out"}},
    {"blank in the class path of the Java",
     "j",
     "REQ_",
     "JVM_CLASSPATH: /opt/my lib.jar\nREQ_",
     {"j:15: error: JVM_CLASSPATH: \"/opt/my lib.jar\" holds a blank outside quotes; the shell "
      "makes several words of it, and no Java is accepted; put the path into double quotes, "
      "written as \"\"\"/opt/my lib.jar\"\"\""}},
    {"semicolon in the class path of the Java",
     "j",
     "REQ_",
     "JVM_CLASSPATH: a.jar;b.jar\nREQ_",
     {"j:15: error: JVM_CLASSPATH: \"a.jar;b.jar\" holds ; outside quotes; the shell takes it for "
      "a sign of its own, and no Java is accepted; put the path into double quotes, written as "
      "\"\"\"/opt/my lib.jar\"\"\""}},
    {"option of a jar for a class path",
     "j",
     "\"-cp \"",
     "\"-jar \"",
     {"j:11: error: CLASSPATH: \"-jar \" is no option for a class path; Java does not take it, and "
      "no Java is accepted; write CLASSPATH: \"-cp \""}},
    {"option of the class path without its hyphen",
     "j",
     "\"-cp \"",
     "\"cp \"",
     {"j:11: error: CLASSPATH: \"cp \" is no option for a class path; Java does not take it, and "
      "no Java is accepted; write CLASSPATH: \"-cp \""}},
    {"option of the class path with two hyphens",
     "j",
     "\"-cp \"",
     "\"--cp \"",
     {"j:11: error: CLASSPATH: \"--cp \" is no option for a class path; Java does not take it, and "
      "no Java is accepted; write CLASSPATH: \"-cp \""}},
    {"option of the class path with an equals sign",
     "j",
     "\"-cp \"",
     "-cp=",
     {"j:11: error: CLASSPATH: \"-cp=\" is no option for a class path; Java does not take it, and "
      "no Java is accepted; write CLASSPATH: \"-cp \""}},
    {"option of a property with two hyphens",
     "j",
     "SYSTEM: -D",
     "SYSTEM: --D",
     {"j:13: error: SYSTEM: \"--D\" sets no property; Java knows -D alone for that; write SYSTEM: "
      "-D"}},
    {"option of a property without its hyphen",
     "j",
     "SYSTEM: -D",
     "SYSTEM: D",
     {"j:13: error: SYSTEM: \"D\" sets no property; Java knows -D alone for that; write SYSTEM: "
      "-D"}},
    {"tag in a variable",
     "j",
     "A=b",
     "LIB=@JVM_HOME@/lib",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"LIB=@JVM_HOME@/lib\" holds a macro; values are taken "
      "as they stand; set the variable in COMMAND"}},
    {"variable in a variable",
     "j",
     "A=b",
     "MORE=#PATH#:/opt",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"MORE=#PATH#:/opt\" holds a macro; values are taken as "
      "they stand; set the variable in COMMAND"}},
    {"function in a variable",
     "j",
     "A=b",
     "DIR=%LAUNCHER_DIR%()",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"DIR=%LAUNCHER_DIR%()\" holds a macro; values are taken "
      "as they stand; set the variable in COMMAND"}},
    {"two variables in a line",
     "j",
     "A=b",
     "AA=1; BB=2",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"AA=1; BB=2\" sets one variable only; the rest of the "
      "line belongs to its value; write a line for each variable"}},
    {"two variables with a blank between",
     "j",
     "A=b",
     "AA=1 BB=2",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"AA=1 BB=2\" sets one variable only; the rest of the "
      "line belongs to its value; write a line for each variable"}},
    {"home folder in a variable",
     "j",
     "A=b",
     "CONFIGURATION=~/x",
     {"j:16: warning: SET_ENV_FOR_WIZARD: \"CONFIGURATION=~/x\" begins with ~; no shell reads it: "
      "it stays as it stands; set the variable in COMMAND"}},
};

TEST(JavaTagMistakes, AreFoundAtTheirLines) {
  mistakes::expectFindings(kRows);
}

}  // namespace
