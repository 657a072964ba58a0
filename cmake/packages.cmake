# What is installed, and the Debian packages: kavrel-cli, which needs no Qt, and kavrel, the program with windows.
#   cmake --install BUILD [--component console|desktop]
#   cpack --config BUILD/CPackConfig.cmake

include(GNUInstallDirs)

install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kavrel COMPONENT console
  FILES_MATCHING PATTERN "*.md" PATTERN "*.txt" PATTERN "*.png")
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kavrel/examples COMPONENT console
  FILES_MATCHING PATTERN "*.kav" PATTERN "*.qfp")
set(CPACK_COMPONENTS_ALL console)

# copyright(package component libraries...): the package's file of that name, with the texts of what is linked into its program
# as this system's packages of the libraries have them.
function(copyright package component)
  file(READ packaging/copyright text)
  foreach(library ${ARGN})
    set(file /usr/share/doc/${library}/copyright)
    if(EXISTS ${file})
      file(READ ${file} found)
      string(APPEND text "\n======== ${library} ========\n\n${found}")
    endif()
  endforeach()
  file(WRITE ${PROJECT_BINARY_DIR}/copyright.${package} "${text}")
  install(FILES ${PROJECT_BINARY_DIR}/copyright.${package} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
    RENAME copyright COMPONENT ${component})
endfunction()
set(linked_in libfmt-dev nlohmann-json3-dev libeigen3-dev libboost-dev libmpfr-dev libgmp-dev)
copyright(kavrel-cli console ${linked_in} libcli11-dev libedit-dev libncurses-dev libbsd-dev libmd-dev)

if(TARGET kavrel)
  copyright(kavrel desktop ${linked_in})
  install(FILES packaging/kavrel.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT desktop)
  install(FILES packaging/kavrel.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT desktop)
  install(FILES packaging/kavrel-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
    RENAME kavrel.xml COMPONENT desktop)
  list(APPEND CPACK_COMPONENTS_ALL desktop)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kavrel)
set(CPACK_PACKAGE_CONTACT "The Kavrel developers <kavrel@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENT_CONSOLE_DESCRIPTION "The workbench without a screen: scripts, pipes, terminals; and the manual")
set(CPACK_DEBIAN_CONSOLE_PACKAGE_NAME kavrel-cli)
set(CPACK_COMPONENT_DESKTOP_DESCRIPTION "The workbench in a window")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME kavrel)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "kavrel-cli (= ${PROJECT_VERSION}), fonts-dejavu-core")
include(CPack)
