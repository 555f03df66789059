# Install layout: headers under include/KelControls8/ (the umbrella header at its top, the others
# at their source paths), the shared library, a CMake package and a pkg-config file, the Designer
# plugin where Qt's Designer looks, kelform, and the API reference when it has been built.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Debian's Designer reads /usr/lib/<arch>/qt6/plugins/designer. Under a private prefix, point
# Designer at <prefix>/${KEL_DESIGNER_PLUGIN_DIR}/.. with QT_PLUGIN_PATH.
set(KEL_DESIGNER_PLUGIN_DIR "${QT6_INSTALL_PLUGINS}/designer" CACHE STRING
    "Where the Designer plugin is installed, relative to the install prefix")
set(KEL_INCLUDE_SUBDIR ${CMAKE_INSTALL_INCLUDEDIR}/KelControls8)

target_include_directories(KelControls8 PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
                           $<INSTALL_INTERFACE:${KEL_INCLUDE_SUBDIR}>)
install(TARGETS KelControls8 EXPORT KelControls8Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(_h ${KEL_PUBLIC_HEADERS})
  get_filename_component(_dir ${_h} DIRECTORY)
  install(FILES ${_h} DESTINATION ${KEL_INCLUDE_SUBDIR}/${_dir})
endforeach()
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/include/KelControls8/kelcontrols8.h DESTINATION ${KEL_INCLUDE_SUBDIR})

set(_cmakedir ${CMAKE_INSTALL_LIBDIR}/cmake/KelControls8)
install(EXPORT KelControls8Targets NAMESPACE KelControls8:: DESTINATION ${_cmakedir})
configure_package_config_file(cmake/KelControls8Config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/KelControls8Config.cmake
  INSTALL_DESTINATION ${_cmakedir} PATH_VARS KEL_DESIGNER_PLUGIN_DIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/KelControls8ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KelControls8Config.cmake ${CMAKE_CURRENT_BINARY_DIR}/KelControls8ConfigVersion.cmake
        DESTINATION ${_cmakedir})
file(RELATIVE_PATH KEL_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/KelControls8.pc.in ${CMAKE_CURRENT_BINARY_DIR}/KelControls8.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KelControls8.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Installed programs find the library next to them in any prefix.
function(kel_install_rpath target from)
  file(RELATIVE_PATH _rel /${from} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${_rel}")
endfunction()
kel_install_rpath(kelform ${CMAKE_INSTALL_BINDIR})
install(TARGETS kelform RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET KelControls8Designer)
  kel_install_rpath(KelControls8Designer ${KEL_DESIGNER_PLUGIN_DIR})
  install(TARGETS KelControls8Designer LIBRARY DESTINATION ${KEL_DESIGNER_PLUGIN_DIR})
endif()
find_program(KEL_DOXYGEN doxygen)
if(KEL_DOXYGEN)
  add_custom_target(docs COMMAND ${CMAKE_COMMAND} -E env KEL_DOCS_DIR=${CMAKE_CURRENT_BINARY_DIR}/docs
                    KEL_VERSION=${PROJECT_VERSION} ${KEL_DOXYGEN} Doxyfile
                    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} COMMENT "API reference in docs/html" VERBATIM)
endif()
install(DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/docs/html/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/html OPTIONAL)

# cpack: a Debian package (configure with -DCMAKE_INSTALL_PREFIX=/usr, as scripts/package does).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelcontrols8)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "KelControls8 developers <kelcontrols8@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Data-entry controls for business forms on Qt 6 Widgets, with a Qt Designer plugin")
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
include(CPack)
