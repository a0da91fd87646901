# Functions by which a folder declares its libraries and programs.
#
# orvane_add_library(name SHARED|STATIC|OBJECT [SOURCES file…] [PUBLIC_LIBS lib…] [LIBS lib…]
#                    [PRECOMPILED header…])
#   A library of this project. An include names its file from the top folder ("core/options.hpp").
#     PUBLIC_LIBS  libraries that users of this one need too
#     LIBS         libraries that only this one needs
#     PRECOMPILED  headers to parse once, where those of the standard library alone would not do
#   A SHARED library exports the names in cmake/exports/lib<name>.txt and no others, has the
#   project's version as its own, and is installed with the project; name pexa_headers or
#   orvane_headers in its PUBLIC_LIBS.
#   An OBJECT library named in another library's LIBS or PUBLIC_LIBS becomes part of that library.
#
# orvane_add_program(name SOURCES file… [LIBS lib…] [OUTPUT_NAME name] [INSTALL])
#   An executable, in C or C++. With INSTALL it is installed and finds our libraries beside it.
#
# Interface targets
#   pexa_headers    include path of pexa/*.h
#   orvane_headers  include path of orvane/*.h, and pexa_headers
#   PkgConfig::HTTPLIB, PkgConfig::LIBMD, PkgConfig::ZSTD, Threads::Threads, CycloneDDS::ddsc, EXPAT::EXPAT, fmt::fmt,
#   CLI11::CLI11, nlohmann_json::nlohmann_json, OpenSSL::Crypto, pugixml::pugixml are found at the top.

add_library(pexa_headers INTERFACE)
target_include_directories(
    pexa_headers INTERFACE "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform/include>")

add_library(orvane_headers INTERFACE)
target_include_directories(
    orvane_headers INTERFACE "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
target_link_libraries(orvane_headers INTERFACE pexa_headers)

install(TARGETS pexa_headers orvane_headers EXPORT orvane-targets
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

# Parsing the standard library takes a quarter of all time of compiling. CMake cannot share the result
# with a library that has C sources too.
set(empty "${PROJECT_BINARY_DIR}/empty.cpp")
file(CONFIGURE OUTPUT "${empty}" CONTENT "")
add_library(orvane_precompiled OBJECT "${empty}")
orvane_compile_as_ours(orvane_precompiled)
target_precompile_headers(
    orvane_precompiled PRIVATE <algorithm> <array> <chrono> <functional> <memory> <mutex> <optional>
    <string> <string_view> <vector>)

function(orvane_add_library name type)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "SOURCES;PUBLIC_LIBS;LIBS;PRECOMPILED")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "orvane_add_library(${name}): unknown ${arg_UNPARSED_ARGUMENTS}")
    endif()
    add_library(${name} ${type} ${arg_SOURCES})
    orvane_compile_as_ours(${name})
    if(arg_PRECOMPILED)
        target_precompile_headers(${name} PRIVATE ${arg_PRECOMPILED})
    elseif(arg_SOURCES AND NOT arg_SOURCES MATCHES "\\.c(;|$)")
        target_precompile_headers(${name} REUSE_FROM orvane_precompiled)
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
            # Where std::string is precompiled, moving or appending to one is said to leave its buffer.
            target_compile_options(
                ${name} PRIVATE -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow
                                -Wno-stringop-overread)
        endif()
    endif()
    target_link_libraries(${name} PUBLIC ${arg_PUBLIC_LIBS} PRIVATE ${arg_LIBS})
    if(type STREQUAL "SHARED")
        # Programs outside the layer see its exported headers only.
        target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
        orvane_make_shared(${name})
    else()
        target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    endif()
endfunction()

# Writes the list of a library's exports as a version script for the linker.
function(orvane_write_export_map name map)
    set(list "${PROJECT_SOURCE_DIR}/cmake/exports/lib${name}.txt")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list}")
    file(STRINGS "${list}" exports)
    list(JOIN exports ";\n    " exports)
    file(CONFIGURE OUTPUT "${map}" CONTENT "{\nglobal:\n    @exports@;\nlocal:\n    *;\n};\n" @ONLY)
endfunction()

function(orvane_make_shared name)
    set(map "${CMAKE_CURRENT_BINARY_DIR}/lib${name}.map")
    orvane_write_export_map(${name} "${map}")
    set_target_properties(
        ${name}
        PROPERTIES VERSION "${PROJECT_VERSION}"
                   SOVERSION "${PROJECT_VERSION_MAJOR}"
                   INSTALL_RPATH "$ORIGIN"
                   LINKER_LANGUAGE CXX
                   LINK_DEPENDS "${map}")
    # Symbols are looked up when the library is loaded, not in the middle of a first call. Nor is it
    # ever unmapped: the engine calls into our code as long as it has types and samples of ours,
    # which is as long as the domain lives, and that may be the application's.
    target_link_options(
        ${name} PRIVATE "LINKER:--version-script=${map}" "LINKER:-z,now" "LINKER:-z,nodelete")
    if(NOT ORVANE_SANITIZE)
        # With Clang the sanitizer's functions come from the executable only.
        target_link_options(${name} PRIVATE LINKER:--no-undefined)
    endif()
    install(TARGETS ${name} EXPORT orvane-targets LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
endfunction()

function(orvane_add_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "INSTALL" "OUTPUT_NAME" "SOURCES;LIBS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "orvane_add_program(${name}): unknown ${arg_UNPARSED_ARGUMENTS}")
    endif()
    add_executable(${name} ${arg_SOURCES})
    orvane_compile_as_ours(${name})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE ${arg_LIBS})
    if(ORVANE_SANITIZE)
        # Our libraries leave the C++ part of the sanitizer's runtime to the program.
        set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    endif()
    if(arg_OUTPUT_NAME)
        set_target_properties(${name} PROPERTIES OUTPUT_NAME "${arg_OUTPUT_NAME}")
    endif()
    if(arg_INSTALL)
        file(RELATIVE_PATH libraries "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
        set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
        install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
    endif()
endfunction()
