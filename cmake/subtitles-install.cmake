# SPDX-License-Identifier: LGPL-2.1-or-later
#
# What `cmake --install` gives to people who use the libraries: headers, shared libraries, a package
# for CMake and one for pkg-config. A prefix can be moved as a whole: its files find each other by
# where they stand in it. (A distribution turns the search paths off: CMAKE_SKIP_INSTALL_RPATH.)
include(CMakePackageConfigHelpers)

set(SUBTITLES_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/subtitles)
set(SUBTITLES_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(package_files ${CMAKE_CURRENT_LIST_DIR}/package)

# The way from one installed folder to another.
function(subtitles_relative_path variable from to)
  cmake_path(ABSOLUTE_PATH from BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE)
  cmake_path(ABSOLUTE_PATH to BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE)
  cmake_path(RELATIVE_PATH to BASE_DIRECTORY ${from})
  string(REGEX REPLACE "/$" "" to ${to})
  set(${variable} ${to} PARENT_SCOPE)
endfunction()

subtitles_relative_path(bin_to_lib ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR})
set(SUBTITLES_RPATH_FROM_BIN "$ORIGIN/${bin_to_lib}")

# subtitles_install_library(TARGET header...)
function(subtitles_install_library target)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${target} EXPORT subtitles-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES ${ARGN} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${target})

  subtitles_relative_path(PKGCONFIG_TO_PREFIX ${SUBTITLES_PKGCONFIG_DIR} .)
  subtitles_relative_path(PREFIX_TO_LIB . ${CMAKE_INSTALL_LIBDIR})
  subtitles_relative_path(PREFIX_TO_INCLUDE . ${CMAKE_INSTALL_INCLUDEDIR})
  configure_file(${package_files}/${target}.pc.in ${PROJECT_BINARY_DIR}/${target}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${target}.pc DESTINATION ${SUBTITLES_PKGCONFIG_DIR})
endfunction()

function(subtitles_install_package_files)
  install(EXPORT subtitles-targets NAMESPACE subtitles:: DESTINATION ${SUBTITLES_CMAKE_DIR})
  configure_package_config_file(${package_files}/subtitles-config.cmake.in
    ${PROJECT_BINARY_DIR}/subtitles-config.cmake INSTALL_DESTINATION ${SUBTITLES_CMAKE_DIR})
  # Before 1.0 a new minor version may change the interface.
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/subtitles-config-version.cmake
    COMPATIBILITY SameMinorVersion)
  install(FILES
    ${PROJECT_BINARY_DIR}/subtitles-config.cmake
    ${PROJECT_BINARY_DIR}/subtitles-config-version.cmake
    DESTINATION ${SUBTITLES_CMAKE_DIR})
endfunction()
