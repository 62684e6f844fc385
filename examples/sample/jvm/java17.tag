DESC: Java 17

JVM_EXE: bin/java

JVM_PROPERTIES:
  java.specification.version = 17
/:

PLATFORM_HINT:
  JAVA_HOME
  JDK_HOME
/:

PATH_HINT:
  jre
  /usr/lib/jvm/java-17-openjdk-amd64
  /usr/lib/jvm/java-17-openjdk-arm64
  /usr/lib/jvm/temurin-17-jre-amd64
  /usr/lib/jvm/temurin-17-jdk-amd64
  /usr/lib/jvm/temurin-17-jre-arm64
  /usr/lib/jvm/temurin-17-jdk-arm64
  /usr/lib/jvm/java-17-openjdk
  /usr/lib/jvm/jre-17
  /usr/lib64/jvm/jre-17-openjdk
  /usr/local/openjdk17
  /opt/java/openjdk
  /Library/Java/JavaVirtualMachines/temurin-17.jre/Contents/Home
  /Library/Java/JavaVirtualMachines/temurin-17.jdk/Contents/Home
/:

VERIFY_ARGS: "-Xint "
CLASSPATH: "@VERIFY_ARGS@-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
