# SPDX-License-Identifier: LGPL-2.1-or-later
#
# subtitles_add_test(NAME SOURCES file... [LIBRARIES target...] [LABELS label...])
#
# One GoogleTest program, registered with CTest under its name. Tests see the libraries' inner
# headers and link their objects, so that what is not exported can be tested too.
# The target `thread-tests` builds those of label "threads", which run under the thread sanitizer.
find_package(GTest REQUIRED)
add_custom_target(thread-tests)

# GLib's slices pass blocks from thread to thread under locks that the thread sanitizer cannot see.
set(subtitles_thread_environment "")
if(SUBTITLES_SANITIZERS MATCHES "thread")
  set(subtitles_thread_environment
    "G_SLICE=always-malloc;TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_LIST_DIR}/tsan-suppressions.txt")
endif()

# Tests of label "pipelines" run GStreamer's elements, and libraries below them that keep what they
# have. To tell that from a leak takes stacks without holes, which cost time; a few frames are enough.
set(subtitles_pipeline_environment "")
if(SUBTITLES_SANITIZERS MATCHES "address")
  set(subtitles_pipeline_environment
    "ASAN_OPTIONS=fast_unwind_on_malloc=0:malloc_context_size=7;LSAN_OPTIONS=print_suppressions=0:suppressions=${CMAKE_CURRENT_LIST_DIR}/lsan-suppressions.txt")
endif()

function(subtitles_add_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/code/libs ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE
    ${TEST_LIBRARIES} test-support test-main test-options GTest::gmock GTest::gtest)
  if("threads" IN_LIST TEST_LABELS)
    add_dependencies(thread-tests ${name})
  endif()
  set(environment ${subtitles_thread_environment})
  if("pipelines" IN_LIST TEST_LABELS)
    list(APPEND environment ${subtitles_pipeline_environment})
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 600 LABELS "${TEST_LABELS}"
    ENVIRONMENT "G_DEBUG=fatal-criticals;SUBTITLES_SAMPLES=${PROJECT_SOURCE_DIR}/samples;SUBTITLES_TEST_DATA=${PROJECT_SOURCE_DIR}/tests/data;${environment}")
endfunction()
