// What `check` finds in JVM_PROPERTIES.
#include "unit/authoring/Mistakes.h"

namespace {

const std::vector<mistakes::Mistake> kRows = {
    {"comparison",
     "j",
     "version = 17",
     "version >= 17",
     {"j:4: error: JVM_PROPERTIES: there is no comparison such as \">=\"; the shell that runs the "
      "candidates takes the sign for a redirection; write the beginning and three full stops, such "
      "as 17..., or a jvm file for each version"}},
    {"comparison behind the sign",
     "j",
     "version = 17",
     "version = >=17",
     {"j:4: error: JVM_PROPERTIES: there is no comparison such as \">=\"; the text is compared "
      "byte for byte, and no Java is accepted; write the beginning and three full stops, such as "
      "17..., or a jvm file for each version"}},
    {"two equals signs",
     "j",
     "version = 17",
     "version == 17",
     {"j:4: error: JVM_PROPERTIES: there is no comparison such as \"==\"; the text is compared "
      "byte for byte, and no Java is accepted; write a single = between java.specification.version "
      "and the text"}},
    {"open range",
     "j",
     "version = 17",
     "version = 17+",
     {"j:4: error: JVM_PROPERTIES: there are no ranges such as \"17+\"; the text is compared byte "
      "for byte, and no Java is accepted; write the beginning and three full stops, such as 17..., "
      "or a jvm file for each version"}},
    {"range",
     "j",
     "version = 17",
     "version = 8..17",
     {"j:4: error: JVM_PROPERTIES: there are no ranges such as \"8..17\"; the text is compared "
      "byte for byte, and no Java is accepted; write the beginning and three full stops, such as "
      "17..., or a jvm file for each version"}},
    {"range in words",
     "j",
     "version = 17",
     "version = 17 or later",
     {"j:4: error: JVM_PROPERTIES: there are no ranges such as \"17 or later\"; the text is "
      "compared byte for byte, and no Java is accepted; write the beginning and three full stops, "
      "such as 17..., or a jvm file for each version"}},
    {"list of versions",
     "j",
     "version = 17",
     "version = 17, 21",
     {"j:4: error: JVM_PROPERTIES: there are no ranges such as \"17, 21\"; the text is compared "
      "byte for byte, and no Java is accepted; write the beginning and three full stops, such as "
      "17..., or a jvm file for each version"}},
    {"alternatives",
     "j",
     "version = 17",
     "version = 17|21",
     {"j:4: error: JVM_PROPERTIES: there are no patterns such as \"17|21\"; the text is compared "
      "byte for byte, and no Java is accepted; write the beginning and three full stops, or a jvm "
      "file for each"}},
    {"pattern",
     "j",
     "version = 17",
     "version = 17*",
     {"j:4: error: JVM_PROPERTIES: there are no patterns such as \"17*\"; the text is compared "
      "byte for byte, and no Java is accepted; write the beginning and three full stops, or a jvm "
      "file for each"}},
    {"two full stops",
     "j",
     "version = 17",
     "version = 17..",
     {"j:4: error: JVM_PROPERTIES: there are no ranges such as \"17..\"; the text is compared byte "
      "for byte, and no Java is accepted; write the beginning and three full stops, such as 17..., "
      "or a jvm file for each version"}},
    {"placeholder",
     "j",
     "version = 17",
     "version = 17.x",
     {"j:4: error: JVM_PROPERTIES: there are no ranges such as \"17.x\"; the text is compared byte "
      "for byte, and no Java is accepted; write the beginning and three full stops, such as 17..., "
      "or a jvm file for each version"}},
    {"quotes around the version",
     "j",
     "version = 17",
     "version = \"17\"",
     {"j:4: error: JVM_PROPERTIES: the quotes belong to the text that is compared; no Java is "
      "accepted; leave them out"}},
    {"comment behind the version",
     "j",
     "version = 17",
     "version = 17 # the one we test",
     {"j:4: error: JVM_PROPERTIES: \"# the one we test\" is no comment; it belongs to the text "
      "that is compared, and no Java is accepted; delete it"}},
    {"colon instead of the equals sign",
     "j",
     "version = 17",
     "version: 17",
     {"j:4: warning: JVM_PROPERTIES: \"java.specification.version: 17\" has no equals sign; it is "
      "ignored; write name = value"}},
    {"old version",
     "j",
     "version = 17",
     "version = 8",
     {"j:4: error: JVM_PROPERTIES: no Java says \"8\" for java.specification.version; it is 1.8 "
      "and less up to Java 8, and a whole number from Java 9 on; write 1.8"}},
    {"update where a line is asked for",
     "j",
     "version = 17",
     "version = 17.0.2",
     {"j:4: error: JVM_PROPERTIES: no Java says \"17.0.2\" for java.specification.version; it is "
      "1.8 and less up to Java 8, and a whole number from Java 9 on; write 17, 21 and the like"}},
    {"java.version without updates",
     "j",
     "java.specification.version = 17",
     "java.version = 17",
     {"j:4: warning: JVM_PROPERTIES: java.version is to be \"17\" and nothing more; a Java with "
      "updates, such as 17.0.2, is not accepted; write 17..., or ask for "
      "java.specification.version"}},
    {"java.version 8",
     "j",
     "java.specification.version = 17",
     "java.version = 8...",
     {"j:4: error: JVM_PROPERTIES: no Java says \"8\" for java.version; it begins with 1. up to "
      "Java 8; write 1.8..."}},
    {"java.version 1.8 alone",
     "j",
     "java.specification.version = 17",
     "java.version = 1.8",
     {"j:4: warning: JVM_PROPERTIES: java.version is to be \"1.8\" and nothing more; a Java with "
      "updates, such as 1.8.0_442, is not accepted; write 1.8..., or ask for "
      "java.specification.version"}},
    {"two versions at once",
     "j",
     "version = 17\n",
     "version = 17\n  java.specification.version = 21\n",
     {"j:5: error: JVM_PROPERTIES: java.specification.version is to be \"17\" and \"21\"; all "
      "lines must hold at once, so that no Java is accepted; write a jvm file for each"}},
    {"misspelt property",
     "j",
     "java.specification",
     "java.specifcation",
     {"j:4: warning: JVM_PROPERTIES: Java has no property \"java.specifcation.version\" of its "
      "own; the answer is empty, and no Java is accepted that expects something else; did you mean "
      "java.specification.version?"}},
    {"two words as a property",
     "j",
     "java.specification.version",
     "java specification version",
     {"j:4: error: JVM_PROPERTIES: \"java specification version\" is no name of a property; its "
      "bytes go to the shell that runs the candidates, and the answers no longer belong to the "
      "lines; write one word such as java.specification.version"}},
    {"architecture",
     "j",
     "version = 17\n",
     "version = 17\n  os.arch = x64\n",
     {"j:5: error: JVM_PROPERTIES: no Java on Unix says \"x64\" for os.arch; no Java is accepted; "
      "write amd64"}},
    {"comment among the properties",
     "j",
     "  java.spec",
     "  # version = any\n  java.spec",
     {"j:4: error: JVM_PROPERTIES: \"# version\" is no comment; blocks have none; its words go to "
      "the shell that runs the candidates; delete the line"}},
    {"properties missing",
     "j",
     "JVM_PROPERTIES:\n  java.specification.version = 17\n/:\n",
     "",
     {"j: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no JVM"}},
    {"8 and three full stops",
     "j",
     "java.specification.version = 17",
     "java.specification.version = 8...",
     {"j:4: error: JVM_PROPERTIES: no Java says \"8\" for java.specification.version; it is 1.8 "
      "and less up to Java 8, and a whole number from Java 9 on; write 1.8"}},
    {"update of Java 8",
     "j",
     "java.specification.version = 17",
     "java.version = 8u...",
     {"j:4: error: JVM_PROPERTIES: no Java says \"8u\" for java.version; it begins with 1. up to "
      "Java 8; write 1.8..."}},
    {"system in small letters",
     "j",
     "java.specification.version = 17",
     "os.name = linux",
     {"j:4: error: JVM_PROPERTIES: no Java on Unix says \"linux\" for os.name; no Java is "
      "accepted; write Linux"}},
    {"another name of the system",
     "j",
     "java.specification.version = 17",
     "os.name = macOS",
     {"j:4: error: JVM_PROPERTIES: no Java on Unix says \"macOS\" for os.name; no Java is "
      "accepted; write Mac OS X"}},
    {"architecture in capitals",
     "j",
     "java.specification.version = 17",
     "os.arch = AMD64",
     {"j:4: error: JVM_PROPERTIES: no Java on Unix says \"AMD64\" for os.arch; no Java is "
      "accepted; write amd64"}},
    {"bits with a word",
     "j",
     "java.specification.version = 17",
     "sun.arch.data.model = 64-bit",
     {"j:4: error: JVM_PROPERTIES: no Java on Unix says \"64-bit\" for sun.arch.data.model; no "
      "Java is accepted; write 64"}},
    {"tag as what is expected",
     "j",
     "java.specification.version = 17",
     "java.home = @JVM_HOME@",
     {"j:4: error: JVM_PROPERTIES: nothing is filled in here: \"@JVM_HOME@\"; the text is compared "
      "byte for byte, and no Java is accepted; write the text itself"}},
    {"variable as what is expected",
     "j",
     "java.specification.version = 17",
     "java.home = $JAVA_HOME",
     {"j:4: error: JVM_PROPERTIES: nothing is filled in here: \"$JAVA_HOME\"; the text is compared "
      "byte for byte, and no Java is accepted; write the text itself"}},
    {"nothing expected",
     "j",
     "java.specification.version = 17",
     "java.vendor =",
     {"j:4: error: JVM_PROPERTIES: nothing is expected of java.vendor; Java says something there, "
      "and none is accepted; write what it is to say, or ..."}},
    {"two beginnings for one property",
     "j",
     "java.specification.version = 17",
     "java.version = 17...\n  java.version = 21...",
     {"j:5: error: JVM_PROPERTIES: java.version is to be \"17...\" and \"21...\"; all lines must "
      "hold at once, so that no Java is accepted; write a jvm file for each"}},
};

TEST(PropertyMistakes, AreFoundAtTheirLines) {
  mistakes::expectFindings(kRows);
}

}  // namespace
