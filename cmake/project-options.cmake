# SPDX-License-Identifier: LGPL-2.1-or-later
#
# How every target of this project is compiled: language, warnings, visibility, sanitizers.
# Link `project-options` PRIVATE; it never reaches people who use the libraries.
add_library(project-options INTERFACE)
target_compile_features(project-options INTERFACE cxx_std_17)
target_compile_options(project-options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused -Wformat=2 -Wimplicit-fallthrough
  -Wextra-semi
  $<$<BOOL:${SUBTITLES_WERROR}>:-Werror>)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(SUBTITLES_SANITIZERS)
  target_compile_options(project-options INTERFACE
    -fsanitize=${SUBTITLES_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project-options INTERFACE -fsanitize=${SUBTITLES_SANITIZERS})
endif()

# Fuzz targets see the branches of the libraries too; the targets themselves add libFuzzer's main.
if(SUBTITLES_FUZZ)
  target_compile_options(project-options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(project-options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Gives a shared library its name for the linker, and lets out only what a version script names.
function(subtitles_shared_library target)
  set(script ${PROJECT_SOURCE_DIR}/cmake/lib${target}.map)
  target_link_options(${target} PRIVATE LINKER:--version-script=${script})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS ${script})
endfunction()
