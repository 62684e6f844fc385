# The message catalogue: its generator, the sources that it writes, and corvane_add_catalogue.
#
# A cross build takes the generator of a native build beside it, which CORVANE_CATALOGUE_TOOL names;
# a native build may be given one, too (then it needs no libgettextpo).

set(default_tool "")
if(CMAKE_CROSSCOMPILING)
  set(default_tool ${CMAKE_SOURCE_DIR}/build/release/bin/make_catalogue)
endif()
set(CORVANE_CATALOGUE_TOOL "${default_tool}" CACHE FILEPATH
    "A make_catalogue that runs on this machine; empty: it is built")

if(CORVANE_CATALOGUE_TOOL)
  if(NOT EXISTS ${CORVANE_CATALOGUE_TOOL})
    message(FATAL_ERROR
      "The generator of the message catalogue is not at ${CORVANE_CATALOGUE_TOOL}. "
      "Build it for this machine (cmake --preset release && cmake --build --preset release "
      "--target make_catalogue), or name it with -DCORVANE_CATALOGUE_TOOL=<path>.")
  endif()
  set(catalogue_tool ${CORVANE_CATALOGUE_TOOL})
else()
  find_path(GETTEXTPO_INCLUDE_DIR gettext-po.h)
  find_library(GETTEXTPO_LIBRARY gettextpo)
  if(NOT GETTEXTPO_INCLUDE_DIR OR NOT GETTEXTPO_LIBRARY)
    message(FATAL_ERROR "libgettextpo is needed to read the translations "
                        "(Debian: apt-get install libgettextpo-dev)")
  endif()
  find_package(Iconv REQUIRED)
  add_executable(make_catalogue
    tools/catalogue/PoFile.cpp
    tools/catalogue/Encoder.cpp
    tools/catalogue/Charsets.cpp
    tools/catalogue/TextRules.cpp
    tools/catalogue/Catalogue.cpp
    tools/catalogue/Writers.cpp
    tools/make_catalogue.cpp)
  target_include_directories(make_catalogue PRIVATE src)
  target_include_directories(make_catalogue SYSTEM PRIVATE ${GETTEXTPO_INCLUDE_DIR})
  target_link_libraries(make_catalogue PRIVATE corvane_settings ${GETTEXTPO_LIBRARY} Iconv::Iconv)
  set(catalogue_tool make_catalogue)
endif()

set(catalogue_dir ${CMAKE_BINARY_DIR}/messages)
file(MAKE_DIRECTORY ${catalogue_dir})
file(GLOB catalogue_texts CONFIGURE_DEPENDS messages/*.pot messages/*.po)
foreach(variant traditional utf8 charsets)
  add_custom_command(
    OUTPUT ${catalogue_dir}/catalogue_${variant}.cpp
    COMMAND ${catalogue_tool} --${variant} messages ${catalogue_dir}/catalogue_${variant}.cpp
    DEPENDS ${catalogue_tool} ${catalogue_texts}
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
    COMMENT "Making the message catalogue (${variant})"
    VERBATIM)
  add_custom_target(catalogue_${variant} DEPENDS ${catalogue_dir}/catalogue_${variant}.cpp)
endforeach()

# corvane_add_catalogue(target traditional|utf8|charsets) adds that source to the target's own.
function(corvane_add_catalogue target variant)
  set(tables ${CMAKE_BINARY_DIR}/messages/catalogue_${variant}.cpp)
  set_source_files_properties(${tables} PROPERTIES GENERATED ON)
  target_sources(${target} PRIVATE ${tables})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src)
  add_dependencies(${target} catalogue_${variant})
endfunction()

# Brings the page of all messages up to date (a test tells when it is not).
add_custom_target(messages_page
  COMMAND ${catalogue_tool} --page messages docs/messages-all.md
  WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
  COMMENT "Writing docs/messages-all.md"
  VERBATIM)
