# Shared build helpers: warnings, sanitizers, the Wine test emulator, and the
# functions every subsystem uses to declare core libraries and tests.

set(VELMORA_ROOT ${CMAKE_CURRENT_LIST_DIR}/..)

# Everything a Windows user gets lands in one folder, DLLs beside the programs;
# test programs sit there too so they load the DLLs under test.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

set(VELMORA_WARNINGS -Wall -Wextra -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  list(APPEND VELMORA_WARNINGS -Wshadow=local)
endif()
if(VELMORA_WERROR)
  list(APPEND VELMORA_WARNINGS -Werror)
endif()

if(WIN32)
  add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  # Test programs are started by CTest through Wine on the private display.
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VELMORA_ROOT}/tools/wine-run.sh)
elseif(VELMORA_FUZZ)
  # The core libraries get coverage instrumentation; the fuzz programs add the
  # driver. Undefined behaviour in the code under test must end the run, not
  # just be printed, or a fuzz test passes over it.
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(VELMORA_SANITIZE AND NOT VELMORA_BENCH)
  # The library's own checks as well: an index past a vector's end or a read
  # of an empty optional stops the run even where the memory happens to exist.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
                      -D_GLIBCXX_ASSERTIONS)
  add_link_options(-fsanitize=address,undefined)
endif()

# velmora_core_library(name SOURCES ... [DEPS ...]) — portable code, built in every tree.
function(velmora_core_library name)
  cmake_parse_arguments(A "" "" "SOURCES;DEPS" ${ARGN})
  add_library(${name} STATIC ${A_SOURCES})
  target_include_directories(${name} PUBLIC ${VELMORA_ROOT})
  target_compile_options(${name} PRIVATE ${VELMORA_WARNINGS})
  if(A_DEPS)
    target_link_libraries(${name} PUBLIC ${A_DEPS})
  endif()
endfunction()

# velmora_test(name SOURCES ... [DEPS ...] [LABELS ...] [SCREEN]) — a GoogleTest
# program registered with CTest, linked with the test-support library (tests/). In the Windows tree CTest runs it under Wine.
# SCREEN: it reads pixels off the shared display or shows windows that may
# come to the front (message boxes, tips); such tests run one at a time, so
# one test's window never lands in another's grab.
function(velmora_test name)
  cmake_parse_arguments(A "SCREEN" "TIMEOUT" "SOURCES;DEPS;LABELS" ${ARGN})
  if(VELMORA_FUZZ)
    return()
  endif()
  add_executable(${name} ${A_SOURCES})
  target_compile_options(${name} PRIVATE ${VELMORA_WARNINGS})
  target_include_directories(${name} PRIVATE ${VELMORA_ROOT})
  target_link_libraries(${name} PRIVATE ${A_DEPS} velmora_test_support GTest::gtest_main GTest::gmock)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  if(NOT A_TIMEOUT)
    set(A_TIMEOUT 600)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${A_TIMEOUT}
    ENVIRONMENT "VELMORA_SOURCE_DIR=${VELMORA_ROOT};VELMORA_BIN_DIR=${CMAKE_BINARY_DIR}/bin")
  if(A_LABELS)
    set_tests_properties(${name} PROPERTIES LABELS "${A_LABELS}")
  endif()
  if(A_SCREEN)
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK velmora_screen)
  endif()
endfunction()

# velmora_fuzz_target(name SOURCES ... DEPS ... CORPUS dir) — libFuzzer program,
# run for a bounded time as a CTest test of the fuzz tree.
function(velmora_fuzz_target name)
  cmake_parse_arguments(A "" "CORPUS;SECONDS" "SOURCES;DEPS" ${ARGN})
  if(NOT VELMORA_FUZZ)
    return()
  endif()
  if(NOT A_SECONDS)
    set(A_SECONDS 30)
  endif()
  add_executable(${name} ${A_SOURCES})
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined)
  target_link_libraries(${name} PRIVATE ${A_DEPS})
  set(work ${CMAKE_BINARY_DIR}/fuzz-corpus/${name})
  file(MAKE_DIRECTORY ${work})
  add_test(NAME ${name}
    COMMAND $<TARGET_FILE:${name}> -max_total_time=${A_SECONDS} -print_final_stats=1 ${work} ${A_CORPUS})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
