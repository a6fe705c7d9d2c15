# Installs the documents, the schemas and the examples in one folder, with the target uninstall, which
# removes what the last installation from this build folder has installed.

install(FILES COPYRIGHT CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT documentation)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT documentation
  FILES_MATCHING PATTERN "*.md" PATTERN "*.json" PATTERN man EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT documentation
  USE_SOURCE_PERMISSIONS
  PATTERN CMakeLists.txt EXCLUDE)

if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall
    COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR})
endif()
