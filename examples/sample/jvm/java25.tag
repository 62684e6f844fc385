DESC: Java 25

JVM_EXE: bin/java

JVM_PROPERTIES:
  java.specification.version = 25
/:

PLATFORM_HINT:
  JAVA_HOME
  JDK_HOME
/:

PATH_HINT:
  jre
  /usr/lib/jvm/java-25-openjdk-amd64
  /usr/lib/jvm/java-25-openjdk-arm64
  /usr/lib/jvm/temurin-25-jre-amd64
  /usr/lib/jvm/temurin-25-jdk-amd64
  /usr/lib/jvm/temurin-25-jre-arm64
  /usr/lib/jvm/temurin-25-jdk-arm64
  /usr/lib/jvm/java-25-openjdk
  /usr/lib/jvm/jre-25
  /usr/lib64/jvm/jre-25-openjdk
  /usr/local/openjdk25
  /opt/java/openjdk
  /Library/Java/JavaVirtualMachines/temurin-25.jre/Contents/Home
  /Library/Java/JavaVirtualMachines/temurin-25.jdk/Contents/Home
/:

VERIFY_ARGS: "-Xint "
CLASSPATH: "@VERIFY_ARGS@-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
