DESC: Java 11

JVM_EXE: bin/java

JVM_PROPERTIES:
  java.specification.version = 11
/:

PLATFORM_HINT:
  JAVA_HOME
  JDK_HOME
/:

PATH_HINT:
  jre
  /usr/lib/jvm/java-11-openjdk-amd64
  /usr/lib/jvm/java-11-openjdk-arm64
  /usr/lib/jvm/temurin-11-jre-amd64
  /usr/lib/jvm/temurin-11-jdk-amd64
  /usr/lib/jvm/temurin-11-jre-arm64
  /usr/lib/jvm/temurin-11-jdk-arm64
  /usr/lib/jvm/java-11-openjdk
  /usr/lib/jvm/jre-11
  /usr/lib64/jvm/jre-11-openjdk
  /usr/local/openjdk11
  /opt/java/openjdk
  /Library/Java/JavaVirtualMachines/temurin-11.jre/Contents/Home
  /Library/Java/JavaVirtualMachines/temurin-11.jdk/Contents/Home
/:

VERIFY_ARGS: "-Xint "
CLASSPATH: "@VERIFY_ARGS@-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
