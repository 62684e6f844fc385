# Builds the message catalogue's tables (being written: English alone).
function(corvane_add_catalogue target encoding)
  target_sources(${target} PRIVATE ${CMAKE_SOURCE_DIR}/messages/english_only.cpp)
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src)
endfunction()
