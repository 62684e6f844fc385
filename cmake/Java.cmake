# The Java side of the build. Sets
#
#   CORVANE_JAVA           whether there is a JDK
#   CORVANE_JAVA_JARS_DIR  the folder that all jars are built into
#
# and offers corvane_add_jar, which does nothing without a JDK.

set(CORVANE_JAVA_JARS_DIR ${CMAKE_BINARY_DIR}/java)
set(CORVANE_JAVA OFF)
if(NOT CMAKE_CROSSCOMPILING)
  find_package(Java COMPONENTS Development QUIET)
  if(Java_Development_FOUND)
    set(CORVANE_JAVA ON)
  else()
    message(STATUS "No JDK: the verify class and the sample setup are left out, their tests "
                   "skipped (Debian: apt-get install default-jdk-headless)")
  endif()
endif()

# Sets OUT to the javac options for the oldest of the given releases that this JDK can still write;
# every JDK drops some. JDK 8 itself has no --release.
function(corvane_javac_release OUT)
  set(probe ${CMAKE_BINARY_DIR}/CMakeFiles/java-release)
  file(WRITE ${probe}/Probe.java "class Probe {}\n")
  foreach(release ${ARGN})
    set(options --release ${release})
    execute_process(
      COMMAND ${Java_JAVAC_EXECUTABLE} ${options} -d ${probe} ${probe}/Probe.java
      RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
    if(NOT failed)
      set(${OUT} ${options} PARENT_SCOPE)
      return()
    endif()
  endforeach()
  list(GET ARGN -1 newest)
  set(${OUT} -source ${newest} -target ${newest} PARENT_SCOPE)
endfunction()

# corvane_add_jar(TARGET jar RELEASES n... SOURCES file... [RESOURCES_DIR dir RESOURCES file...])
# builds ${CORVANE_JAVA_JARS_DIR}/jar for the oldest possible release, as the target TARGET.
function(corvane_add_jar TARGET JAR_NAME)
  cmake_parse_arguments(PARSE_ARGV 2 ARG "" "RESOURCES_DIR" "RELEASES;SOURCES;RESOURCES")
  if(NOT CORVANE_JAVA)
    return()
  endif()
  corvane_javac_release(release ${ARG_RELEASES})
  set(lint -Xlint:all,-options)
  if(CORVANE_WERROR)
    list(APPEND lint -Werror)
  endif()
  list(TRANSFORM ARG_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set(resource_files ${ARG_RESOURCES})
  list(TRANSFORM resource_files PREPEND ${ARG_RESOURCES_DIR}/)
  set(script ${PROJECT_SOURCE_DIR}/cmake/BuildJar.cmake)
  set(jar ${CORVANE_JAVA_JARS_DIR}/${JAR_NAME})
  add_custom_command(
    OUTPUT ${jar}
    COMMAND
      ${CMAKE_COMMAND} -DJAVAC=${Java_JAVAC_EXECUTABLE} -DJAR=${Java_JAR_EXECUTABLE}
      "-DOPTIONS=${release}" "-DLINT=${lint}" "-DSOURCES=${ARG_SOURCES}"
      -DRESOURCES_DIR=${ARG_RESOURCES_DIR} "-DRESOURCES=${ARG_RESOURCES}"
      -DCLASSES=${jar}.classes -DOUTPUT=${jar} -P ${script}
    DEPENDS ${ARG_SOURCES} ${resource_files} ${script}
    COMMENT "Building ${JAR_NAME}"
    VERBATIM)
  add_custom_target(${TARGET} ALL DEPENDS ${jar})
endfunction()

# The class that a candidate JVM is made to run: it must load in any JVM that a disk may hold.
corvane_add_jar(verify_jar verify.jar RELEASES 6 7 8 SOURCES java/Verify.java)
# The same for setups that want Java 8 or a later one: what is older cannot load it.
corvane_add_jar(verify_java8_jar verify-java8.jar RELEASES 8 SOURCES java/Verify.java)
