DESC: Java 21

JVM_EXE: bin/java

JVM_PROPERTIES:
  java.specification.version = 21
/:

PLATFORM_HINT:
  JAVA_HOME
  JDK_HOME
/:

PATH_HINT:
  jre
  /usr/lib/jvm/java-21-openjdk-amd64
  /usr/lib/jvm/java-21-openjdk-arm64
  /usr/lib/jvm/temurin-21-jre-amd64
  /usr/lib/jvm/temurin-21-jdk-amd64
  /usr/lib/jvm/temurin-21-jre-arm64
  /usr/lib/jvm/temurin-21-jdk-arm64
  /usr/lib/jvm/java-21-openjdk
  /usr/lib/jvm/jre-21
  /usr/lib64/jvm/jre-21-openjdk
  /usr/local/openjdk21
  /opt/java/openjdk
  /Library/Java/JavaVirtualMachines/temurin-21.jre/Contents/Home
  /Library/Java/JavaVirtualMachines/temurin-21.jdk/Contents/Home
/:

VERIFY_ARGS: "-Xint "
CLASSPATH: "@VERIFY_ARGS@-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
