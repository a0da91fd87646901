# Functions by which a folder declares its tests and fuzzers.
#
# orvane_add_test(name SOURCES file… [LIBS lib…] [WRAP function…] [DOMAIN n] [TIMEOUT seconds]
#                 [ARGS argument…])
#   A GoogleTest executable (its main() included) and one CTest entry of the same name, run with
#   DDS on loopback and, in sanitizer builds, with the sanitizer's options and suppressions.
#   CTest shows the entry as skipped when one of its tests was skipped and none failed.
#     WRAP     functions whose calls go to __wrap_<function>; only calls from code linked
#              statically are caught, so link orvane_static or an object library
#     DOMAIN   the DDS domain of the test, handed to its sources as ORVANE_TEST_DOMAIN and to the
#              running test by the environment variable of that name; tests of the same domain
#              never run at the same time
#     TIMEOUT  default 120; three times as long in sanitizer builds
#   ORVANE_SOURCE_DIR is defined for the test's sources as the repository's folder.
#
# orvane_add_fuzzer(name SOURCES file… [LIBS lib…])
#   Sources with an LLVMFuzzerTestOneInput. With ORVANE_FUZZING a libFuzzer executable, else a
#   test that runs the inputs of fuzz/corpus/<name>.
#
# orvane_set_test_environment(test…)
#   The environment of orvane_add_test for tests that were added by other means.

# The exit status of a test program that skipped a test.
set(ORVANE_SKIPPED 77)
set(ORVANE_TEST_MAIN "${CMAKE_CURRENT_LIST_DIR}/test_main.cpp")

set(ORVANE_CORPUS_RUNNER "${CMAKE_CURRENT_LIST_DIR}/corpus_runner.cpp")

function(orvane_set_test_environment)
    set(config "${PROJECT_SOURCE_DIR}/config")
    find_program(ORVANE_SYMBOLIZER NAMES llvm-symbolizer llvm-symbolizer-14)
    set(symbolizer "")
    if(ORVANE_SYMBOLIZER)
        set(symbolizer ":external_symbolizer_path=${ORVANE_SYMBOLIZER}")
    endif()
    set(asan detect_leaks=1 detect_stack_use_after_return=1 strict_string_checks=1
             check_initialization_order=1 allocator_may_return_null=1)
    list(JOIN asan ":" asan)
    set_property(
        TEST ${ARGN} APPEND
        PROPERTY ENVIRONMENT
                 "CYCLONEDDS_URI=file://${config}/cyclonedds-loopback.xml"
                 "ASAN_OPTIONS=${asan}${symbolizer}"
                 "LSAN_OPTIONS=suppressions=${config}/lsan.supp:print_suppressions=0"
                 "UBSAN_OPTIONS=print_stacktrace=1${symbolizer}"
                 "TSAN_OPTIONS=suppressions=${config}/tsan.supp:second_deadlock_stack=1${symbolizer}")
endfunction()

# Optimising the tests' own code would double the time to build them and test nothing more. Parsing
# GoogleTest takes longer than most tests take to compile, so that is done once.
function(orvane_compile_as_test name)
    target_compile_options(${name} PRIVATE -O0)
    if(NOT TARGET orvane_test_precompiled)
        orvane_add_library(
            orvane_test_precompiled OBJECT
            SOURCES "${PROJECT_BINARY_DIR}/empty.cpp"
            LIBS GTest::gtest
            PRECOMPILED <gtest/gtest.h> <functional> <memory> <string> <thread> <vector>)
        # As the programs that use it.
        set_target_properties(orvane_test_precompiled PROPERTIES POSITION_INDEPENDENT_CODE OFF)
        target_compile_options(orvane_test_precompiled PRIVATE -O0 -fPIE)
    endif()
    target_precompile_headers(${name} REUSE_FROM orvane_test_precompiled)
endfunction()

function(orvane_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "DOMAIN;TIMEOUT" "SOURCES;LIBS;WRAP;ARGS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "orvane_add_test(${name}): unknown ${arg_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT TARGET orvane_test_main)
        orvane_add_library(
            orvane_test_main STATIC
            SOURCES "${ORVANE_TEST_MAIN}"
            PUBLIC_LIBS GTest::gtest)
        target_compile_definitions(orvane_test_main PRIVATE "ORVANE_SKIPPED=${ORVANE_SKIPPED}")
    endif()
    orvane_add_program(${name} SOURCES ${arg_SOURCES} LIBS ${arg_LIBS} orvane_test_main)
    orvane_compile_as_test(${name})
    target_compile_definitions(${name} PRIVATE "ORVANE_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}\"")
    foreach(function IN LISTS arg_WRAP)
        target_link_options(${name} PRIVATE "LINKER:--wrap=${function}")
    endforeach()

    add_test(NAME ${name} COMMAND ${name} ${arg_ARGS})
    orvane_set_test_environment(${name})
    if(DEFINED arg_DOMAIN)
        target_compile_definitions(${name} PRIVATE "ORVANE_TEST_DOMAIN=${arg_DOMAIN}")
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK "dds-domain-${arg_DOMAIN}")
        set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT "ORVANE_TEST_DOMAIN=${arg_DOMAIN}")
    endif()
    if(NOT DEFINED arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if(ORVANE_SANITIZE)
        math(EXPR arg_TIMEOUT "3 * ${arg_TIMEOUT}")
    endif()
    # Those that may take longest begin first.
    set_tests_properties(
        ${name} PROPERTIES TIMEOUT "${arg_TIMEOUT}" COST "${arg_TIMEOUT}"
                           SKIP_RETURN_CODE "${ORVANE_SKIPPED}")
endfunction()

function(orvane_add_fuzzer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "orvane_add_fuzzer(${name}): unknown ${arg_UNPARSED_ARGUMENTS}")
    endif()
    orvane_add_program(${name} SOURCES ${arg_SOURCES} LIBS ${arg_LIBS})
    # The runner declares what the fuzzer defines.
    set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
    if(ORVANE_FUZZING)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        set_target_properties(
            ${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/fuzzers")
        if(NOT TARGET fuzzers)
            add_custom_target(fuzzers)
        endif()
        add_dependencies(fuzzers ${name})
        return()
    endif()
    target_sources(${name} PRIVATE "${ORVANE_CORPUS_RUNNER}")
    add_test(NAME ${name} COMMAND ${name} "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}")
    orvane_set_test_environment(${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endfunction()
