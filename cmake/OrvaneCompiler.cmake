# Language, warnings and sanitizers, for every target of the project.
#
#   ORVANE_TESTING     build the tests and run the fuzzers' corpora as tests
#   ORVANE_FUZZING     build the fuzzers with libFuzzer (Clang only)
#   ORVANE_BENCHMARKS  build the benchmarks, which need other loggers to compare with
#   ORVANE_SANITIZE    list for -fsanitize=, such as "address,undefined"
#
# orvane_compile_as_ours(target)
#   C++20 or C11 without extensions, all warnings, nothing exported by default. Warnings are errors
#   with CMake's own CMAKE_COMPILE_WARNING_AS_ERROR, which only .ci/run sets: another compiler may
#   warn of more.
#
# orvane_leave_uninstrumented(program)
#   For a program of another DDS product, whose library is not instrumented and passes C++ containers
#   through its interface, which the sanitizers would report.

option(ORVANE_TESTING "Build the tests" "${PROJECT_IS_TOP_LEVEL}")
option(ORVANE_FUZZING "Build the fuzzers with libFuzzer" OFF)
option(ORVANE_BENCHMARKS "Build the benchmarks" OFF)
set(ORVANE_SANITIZE "" CACHE STRING "Sanitizers to build everything with")

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(ORVANE_SANITIZE)
    add_compile_options(
        "-fsanitize=${ORVANE_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options("-fsanitize=${ORVANE_SANITIZE}")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # Compares function type records by address; every shared library has its own, so a call
        # through a pointer from another library would always be reported.
        add_compile_options(-fno-sanitize=function)
    endif()
endif()
if(ORVANE_FUZZING)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

function(orvane_compile_as_ours target)
    target_compile_features(${target} PRIVATE c_std_11 cxx_std_20)
    target_compile_options(
        ${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(CMAKE_UNITY_BUILD)
        # One source's names would be said to hide another's.
        target_compile_options(${target} PRIVATE -Wno-shadow)
    endif()
    set_target_properties(
        ${target}
        PROPERTIES C_EXTENSIONS OFF
                   CXX_EXTENSIONS OFF
                   C_VISIBILITY_PRESET hidden
                   CXX_VISIBILITY_PRESET hidden
                   VISIBILITY_INLINES_HIDDEN ON
                   POSITION_INDEPENDENT_CODE ON)
endfunction()

function(orvane_leave_uninstrumented target)
    if(ORVANE_SANITIZE)
        target_compile_options(${target} PRIVATE -fno-sanitize=all)
        target_link_options(${target} PRIVATE -fno-sanitize=all)
    endif()
endfunction()
