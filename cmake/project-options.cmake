# SPDX-License-Identifier: LGPL-2.1-or-later
#
# How every target of this project is compiled: language, warnings, visibility, sanitizers.
# Link `project-options` PRIVATE, tests `test-options`; they never reach people who use the
# libraries.
add_library(language-options INTERFACE)
target_compile_features(language-options INTERFACE cxx_std_17)
target_compile_options(language-options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused -Wformat=2 -Wimplicit-fallthrough
  -Wextra-semi
  $<$<BOOL:${SUBTITLES_WERROR}>:-Werror>)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# What ships, and what is fuzzed and measured.
add_library(project-options INTERFACE)
target_link_libraries(project-options INTERFACE language-options)

# The libraries alone: what they give out can be compared with an earlier release.
add_library(library-options INTERFACE)
target_link_libraries(library-options INTERFACE project-options)
target_compile_options(library-options INTERFACE $<$<BOOL:${SUBTITLES_DEBUG_INFO}>:-g>)

# Tests: what they drive is optimised and watched for undefined behaviour, they themselves are not.
# Half of a build's time goes into them, and with both a test takes five times as long to compile.
add_library(test-options INTERFACE)
target_link_libraries(test-options INTERFACE language-options)
target_compile_options(test-options INTERFACE -O0)

# Compiles and links a target with the sanitizers of the build, but for those that are named.
function(subtitles_sanitize target)
  string(REPLACE "," ";" sanitizers "${SUBTITLES_SANITIZERS}")
  list(REMOVE_ITEM sanitizers ${ARGN} "")
  list(JOIN sanitizers "," sanitizers)
  if(sanitizers)
    target_compile_options(${target} INTERFACE
      -fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  endif()
  if(SUBTITLES_SANITIZERS)
    target_link_options(${target} INTERFACE -fsanitize=${SUBTITLES_SANITIZERS})
  endif()
endfunction()
subtitles_sanitize(project-options)
subtitles_sanitize(test-options undefined)

# What ships tells which of its lines and branches were reached. Tests are compiled as elsewhere.
if(SUBTITLES_COVERAGE)
  target_compile_options(project-options INTERFACE --coverage -O0)
  target_link_options(project-options INTERFACE --coverage)
  target_link_options(test-options INTERFACE --coverage)
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
    VERSION ${PROJECT_VERSION} SOVERSION ${SUBTITLES_SOVERSION} LINK_DEPENDS ${script})
endfunction()
