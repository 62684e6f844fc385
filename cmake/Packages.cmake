# What is installed, and the packages that cpack makes of it: .deb and .tar.gz.
#
# A native build makes corvane-pack with the stubs for its own machine. A cross build makes the stubs
# for that machine alone, as a package that goes beside it: corvane-stubs-MACHINE.

set(corvane_stubs_dir ${CMAKE_INSTALL_LIBEXECDIR}/corvane)
if(CMAKE_CROSSCOMPILING)
  set(corvane_package corvane-stubs-${CMAKE_SYSTEM_PROCESSOR})
  string(APPEND corvane_stubs_dir /${CMAKE_SYSTEM_PROCESSOR})
else()
  set(corvane_package corvane-pack)
endif()
set(corvane_doc_dir ${CMAKE_INSTALL_DATADIR}/doc/${corvane_package})

install(TARGETS corvane-launcher corvane-launcher-any RUNTIME DESTINATION ${corvane_stubs_dir})
install(FILES LICENSE DESTINATION ${corvane_doc_dir} RENAME copyright)
install(FILES docs/licences.md DESTINATION ${corvane_doc_dir}/docs)
if(NOT CMAKE_CROSSCOMPILING)
  install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md LICENSE DESTINATION ${corvane_doc_dir})
  install(DIRECTORY docs/ DESTINATION ${corvane_doc_dir}/docs FILES_MATCHING
          PATTERN *.md PATTERN *.svg PATTERN man EXCLUDE)
  install(DIRECTORY examples DESTINATION ${corvane_doc_dir} USE_SOURCE_PERMISSIONS
          PATTERN CMakeLists.txt EXCLUDE)
  if(CORVANE_JAVA)
    install(FILES ${CORVANE_JAVA_JARS_DIR}/verify.jar ${CORVANE_JAVA_JARS_DIR}/verify-java8.jar
            DESTINATION ${CMAKE_INSTALL_DATADIR}/corvane)
  endif()
endif()

set(CPACK_PACKAGE_NAME ${corvane_package})
set(CPACK_PACKAGE_VENDOR "the Corvane launcher authors")
set(CPACK_PACKAGE_CONTACT "The Corvane launcher authors <corvane@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_STRIP_FILES ON)
if(CMAKE_CROSSCOMPILING)
  # Its files are for another machine than the one that it is installed on.
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE all)
  set(CPACK_STRIP_FILES OFF)
  set(CPACK_DEBIAN_PACKAGE_ENHANCES corvane-pack)
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Launcher stubs for ${CMAKE_SYSTEM_PROCESSOR}")
else()
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS default-jre-headless)
endif()
include(CPack)
