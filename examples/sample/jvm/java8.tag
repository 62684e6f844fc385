DESC: Java 8

JVM_EXE: bin/java

JVM_PROPERTIES:
  java.specification.version = 1.8
/:

PLATFORM_HINT:
  JAVA_HOME
  JDK_HOME
/:

PATH_HINT:
  jre
  /usr/lib/jvm/java-8-openjdk-amd64
  /usr/lib/jvm/java-8-openjdk-arm64
  /usr/lib/jvm/temurin-8-jre-amd64
  /usr/lib/jvm/temurin-8-jdk-amd64
  /usr/lib/jvm/temurin-8-jre-arm64
  /usr/lib/jvm/temurin-8-jdk-arm64
  /usr/lib/jvm/java-8-openjdk
  /usr/lib/jvm/jre-1.8.0
  /usr/lib64/jvm/jre-1.8.0-openjdk
  /usr/local/openjdk8
  /opt/java/openjdk
  /Library/Java/JavaVirtualMachines/temurin-8.jre/Contents/Home
  /Library/Java/JavaVirtualMachines/temurin-8.jdk/Contents/Home
/:

VERIFY_ARGS: "-Xint "
CLASSPATH: "@VERIFY_ARGS@-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: "="
