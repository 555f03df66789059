# Install layout: the public headers under include/KelControls8/ (see headers.cmake), the shared
# library, a CMake package and a pkg-config file, the Designer plugin where Qt's Designer looks,
# kelform with its manual page, desktop entry and icon, and the API reference when it has been built.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Debian's Designer reads /usr/lib/<arch>/qt6/plugins/designer. Under a private prefix, point
# Designer at <prefix>/${KEL_DESIGNER_PLUGIN_DIR}/.. with QT_PLUGIN_PATH.
set(KEL_DESIGNER_PLUGIN_DIR "${QT6_INSTALL_PLUGINS}/designer" CACHE STRING
    "Where the Designer plugin is installed, relative to the install prefix")
set(KEL_INCLUDE_SUBDIR ${CMAKE_INSTALL_INCLUDEDIR}/KelControls8)

target_include_directories(KelControls8 PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
install(TARGETS KelControls8 EXPORT KelControls8Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} NAMELINK_COMPONENT Development)
foreach(_h ${KEL_PUBLIC_HEADERS})
  get_filename_component(_dir ${_h} DIRECTORY)
  install(FILES ${_h} DESTINATION ${KEL_INCLUDE_SUBDIR}/${_dir})
endforeach()
install(FILES ${KEL_FORWARDING_HEADERS} DESTINATION ${KEL_INCLUDE_SUBDIR})

set(_cmakedir ${CMAKE_INSTALL_LIBDIR}/cmake/KelControls8)
install(EXPORT KelControls8Targets NAMESPACE KelControls8:: DESTINATION ${_cmakedir})
configure_package_config_file(cmake/KelControls8Config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/KelControls8Config.cmake
  INSTALL_DESTINATION ${_cmakedir} PATH_VARS KEL_DESIGNER_PLUGIN_DIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/KelControls8ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KelControls8Config.cmake ${CMAKE_CURRENT_BINARY_DIR}/KelControls8ConfigVersion.cmake
        DESTINATION ${_cmakedir})
# Written at install time, so that it names the prefix actually installed to, as plain paths.
install(CODE "
  set(PROJECT_VERSION ${PROJECT_VERSION})
  set(KEL_PC_LIBDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}\")
  set(KEL_PC_INCLUDEDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_INCLUDEDIR}\")
  set(KEL_PC_DESIGNERDIR \"\${CMAKE_INSTALL_PREFIX}/${KEL_DESIGNER_PLUGIN_DIR}\")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/KelControls8.pc.in ${PROJECT_BINARY_DIR}/KelControls8.pc @ONLY)
  file(INSTALL ${PROJECT_BINARY_DIR}/KelControls8.pc DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig\")
")

# Installed programs find the library next to them in any prefix.
function(kel_install_rpath target from)
  file(RELATIVE_PATH _rel /${from} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${_rel}")
endfunction()
if(TARGET kelform)
  kel_install_rpath(kelform ${CMAKE_INSTALL_BINDIR})
  install(TARGETS kelform RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  # The manual page is kelform's own --help and --version, with the sections of kelform.h2m.
  find_program(KEL_HELP2MAN help2man)
  if(KEL_HELP2MAN AND NOT KEL_SANITIZE AND NOT KEL_BUILD_FUZZ)
    set(_man ${PROJECT_BINARY_DIR}/kelform.1)
    add_custom_command(OUTPUT ${_man}
      COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${KEL_HELP2MAN} --no-info
              --section=1 --include=${PROJECT_SOURCE_DIR}/apps/kelform/kelform.h2m --output=${_man} $<TARGET_FILE:kelform>
      DEPENDS kelform ${PROJECT_SOURCE_DIR}/apps/kelform/kelform.h2m VERBATIM)
    add_custom_target(kelform_man ALL DEPENDS ${_man})
    install(FILES ${_man} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
  install(FILES apps/kelform/org.kelcontrols8.kelform.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES apps/kelform/kelform.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()
if(TARGET KelControls8Designer)
  kel_install_rpath(KelControls8Designer ${KEL_DESIGNER_PLUGIN_DIR})
  install(TARGETS KelControls8Designer LIBRARY DESTINATION ${KEL_DESIGNER_PLUGIN_DIR})
endif()
# The API reference: scripts/docs (or the target docs) renders it into build/docs.
install(DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/docs/html/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/html OPTIONAL)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/docs/KelControls8.qch DESTINATION ${CMAKE_INSTALL_DATADIR}/qt6/doc OPTIONAL)
find_program(KEL_DOXYGEN doxygen)
if(KEL_DOXYGEN)
  add_custom_target(docs COMMAND ${CMAKE_COMMAND} -E env KEL_DOCS_DIR=${CMAKE_CURRENT_BINARY_DIR}/docs
                    KEL_VERSION=${PROJECT_VERSION} ${KEL_DOXYGEN} Doxyfile
                    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} COMMENT "API reference in docs/html" VERBATIM)
endif()
