# Interface targets: corvane_settings for all of our code, corvane_stub_settings for what is shipped
# to users and for the floors that it is measured beside, corvane_stub_layout for the stubs alone.
add_library(corvane_settings INTERFACE)
add_library(corvane_stub_settings INTERFACE)
add_library(corvane_stub_layout INTERFACE)

target_compile_options(corvane_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
  -Wold-style-cast -Wformat=2 -Wimplicit-fallthrough -Wundef)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # At -O3 g++ 12 sees an overlap in every "text" + std::string (its bug 105651), and uninitialised
  # strings in tables (105562); the sanitizers find the real ones.
  target_compile_options(corvane_settings INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
if(CORVANE_WERROR)
  target_compile_options(corvane_settings INTERFACE -Werror)
endif()

# Files of more than 2 GiB can be opened where a file position has 32 bits by itself.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_compile_definitions(corvane_settings INTERFACE _FILE_OFFSET_BITS=64)
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_definitions(corvane_settings INTERFACE _GLIBCXX_ASSERTIONS)
endif()

if(CORVANE_SANITIZE)
  # Of the debug information a report needs files and lines alone; the rest is a fifth of the build.
  target_compile_options(corvane_settings INTERFACE
    -fsanitize=${CORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  target_link_options(corvane_settings INTERFACE -fsanitize=${CORVANE_SANITIZE})
elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
  # Hardening; fortified functions need optimisation and do not go with the sanitizers.
  target_compile_options(corvane_settings INTERFACE
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong
    -ffunction-sections -fdata-sections)
  target_link_options(corvane_stub_settings INTERFACE
    -Wl,--gc-sections -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -s)
endif()

if(CORVANE_FUZZ)
  # The fuzzer sees which of our code an input reaches; its own main is linked by the targets.
  target_compile_options(corvane_settings INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(CORVANE_COVERAGE)
  target_compile_options(corvane_settings INTERFACE --coverage)
  target_link_options(corvane_settings INTERFACE --coverage)
endif()

if(CORVANE_STATIC)
  # A static position-independent executable where the toolchain can make one.
  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_FLAGS "-fPIE")
  set(CMAKE_REQUIRED_LINK_OPTIONS -static-pie)
  check_cxx_source_compiles("int main() { return 0; }" CORVANE_HAS_STATIC_PIE)
  unset(CMAKE_REQUIRED_FLAGS)
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
  if(CORVANE_HAS_STATIC_PIE)
    target_compile_options(corvane_settings INTERFACE -fPIE)
    target_link_options(corvane_stub_settings INTERFACE -static-pie)
    # A start relocates some 2,000 pointers; packed, their list is short. The C library has to know
    # the form, so that a program must have run.
    if(NOT CMAKE_CROSSCOMPILING)
      include(CheckCXXSourceRuns)
      set(CMAKE_REQUIRED_FLAGS "-fPIE")
      set(CMAKE_REQUIRED_LINK_OPTIONS -static-pie -Wl,-z,pack-relative-relocs)
      check_cxx_source_runs("int x; int* volatile p = &x; int main() { return p == &x ? 0 : 1; }"
                            CORVANE_HAS_PACKED_RELOCATIONS)
      unset(CMAKE_REQUIRED_FLAGS)
      unset(CMAKE_REQUIRED_LINK_OPTIONS)
    endif()
    if(CORVANE_HAS_PACKED_RELOCATIONS)
      target_link_options(corvane_stub_settings INTERFACE -Wl,-z,pack-relative-relocs)
    endif()
  else()
    target_link_options(corvane_stub_settings INTERFACE -static)
  endif()
  set(start_first ${CMAKE_SOURCE_DIR}/cmake/start-first.ld)
  set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,-T,${start_first})
  check_cxx_source_compiles("int main() { return 0; }" CORVANE_HAS_START_FIRST)
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
  if(CORVANE_HAS_START_FIRST)
    target_link_options(corvane_stub_layout INTERFACE -Wl,-T,${start_first})
    set_target_properties(corvane_stub_layout PROPERTIES INTERFACE_LINK_DEPENDS ${start_first})
  endif()
endif()
