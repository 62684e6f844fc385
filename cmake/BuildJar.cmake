# Compiles Java sources and packs them (run with cmake -P by corvane_add_jar, see Java.cmake).
#
#   JAVAC JAR    the programs
#   OPTIONS      the options that say which class files to write
#   LINT         the options for warnings
#   SOURCES      what to compile
#   RESOURCES_DIR RESOURCES   files to pack beside the classes, by their names below that folder
#   CLASSES      a folder of ours alone, emptied first
#   OUTPUT       the jar
#
# The same sources and the same JDK give the same bytes: the names are sorted, and the entries bear
# a fixed date where this jar program can set one (JDK 17 and later; 11 in its later updates).

file(REMOVE_RECURSE "${CLASSES}")
file(MAKE_DIRECTORY "${CLASSES}")

execute_process(
  COMMAND ${JAVAC} ${OPTIONS} -encoding UTF-8 ${LINT} -d ${CLASSES} ${SOURCES}
  RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "javac failed (${failed})")
endif()

foreach(resource ${RESOURCES})
  configure_file("${RESOURCES_DIR}/${resource}" "${CLASSES}/${resource}" COPYONLY)
endforeach()

# Without a manifest: it would name the JDK, and nobody reads it.
execute_process(COMMAND ${JAR} --help OUTPUT_VARIABLE help ERROR_VARIABLE help)
set(create -cfM ${OUTPUT})
if(help MATCHES "--date")
  set(create --create --no-manifest --date=1980-01-01T00:00:02Z --file=${OUTPUT})
endif()

file(GLOB_RECURSE names RELATIVE "${CLASSES}" "${CLASSES}/*")
file(REMOVE "${OUTPUT}")
execute_process(
  COMMAND ${JAR} ${create} ${names}
  WORKING_DIRECTORY "${CLASSES}" RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "jar failed (${failed})")
endif()
