# What an installation holds besides the libraries and the tool, which install themselves where
# they are declared: headers, package files for CMake and pkg-config, manual page, configuration, its
# schema, the format of recordings for lnav, the published types, and the Python package.
# Nothing in it names the prefix, so that an installation can be moved.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/orvane")

install(
    DIRECTORY include/orvane platform/include/pexa
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    FILES_MATCHING PATTERN "*.h")
install(
    FILES config/cyclonedds-loopback.xml config/statistics.xml docs/orvane.xsd docs/orvane-dds-xml.xsd
    DESTINATION "${CMAKE_INSTALL_DATADIR}/orvane")
install(FILES tools/recording/orvane.lnav.json DESTINATION "${CMAKE_INSTALL_DATADIR}/orvane/lnav")
install(FILES docs/orvane.idl DESTINATION "${CMAKE_INSTALL_DATADIR}/orvane/idl")
install(
    FILES docs/man/orvane.1
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
    OPTIONAL)

# Below a prefix such as /usr/local the interpreter looks in a folder of its version.
find_package(Python3 QUIET COMPONENTS Interpreter)
set(python_dir lib/python3/dist-packages)
if(Python3_Interpreter_FOUND)
    execute_process(
        COMMAND "${Python3_EXECUTABLE}" -c "import sysconfig; print(sysconfig.get_path('purelib'))"
        OUTPUT_VARIABLE purelib
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(purelib MATCHES "/(lib/python3[^/]*/[^/]+)$")
        set(python_dir "${CMAKE_MATCH_1}")
    endif()
endif()
set(ORVANE_PYTHON_DIR "${python_dir}" CACHE STRING
    "Where the Python package is installed below the prefix; empty leaves it out")
if(ORVANE_PYTHON_DIR)
    install(
        DIRECTORY python/orvane
        DESTINATION "${ORVANE_PYTHON_DIR}"
        FILES_MATCHING
        PATTERN "*.py"
        PATTERN "py.typed"
        PATTERN "__pycache__" EXCLUDE)
endif()

install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")

install(
    EXPORT orvane-targets
    NAMESPACE orvane::
    DESTINATION "${package_dir}")
configure_package_config_file(
    cmake/orvane-config.cmake.in "${PROJECT_BINARY_DIR}/orvane-config.cmake"
    INSTALL_DESTINATION "${package_dir}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/orvane-config-version.cmake" COMPATIBILITY SameMinorVersion)
install(
    FILES "${PROJECT_BINARY_DIR}/orvane-config.cmake"
          "${PROJECT_BINARY_DIR}/orvane-config-version.cmake"
    DESTINATION "${package_dir}")

file(RELATIVE_PATH ORVANE_PREFIX_FROM_PC "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
     "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" ORVANE_PREFIX_FROM_PC "${ORVANE_PREFIX_FROM_PC}")
foreach(package orvane orvane-log)
    configure_file(cmake/${package}.pc.in "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${package}.pc"
            DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
