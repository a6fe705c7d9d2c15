# Installs the program with its manual page and completions.

if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  # Debian's folder for zsh completions. A shared library needs no RPATH there.
  set(zsh_dir ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
else()
  set(zsh_dir ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  file(RELATIVE_PATH lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(cableinfo PROPERTIES INSTALL_RPATH $ORIGIN/${lib_from_bin})
endif()

install(TARGETS cableinfo COMPONENT program)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/man/
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
  COMPONENT program)
install(FILES completions/cableinfo.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME cableinfo
  COMPONENT program)
install(FILES completions/_cableinfo
  DESTINATION ${zsh_dir}
  COMPONENT program)
install(FILES completions/cableinfo.fish
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
  COMPONENT program)
