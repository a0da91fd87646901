# The library itself, made of the folders' object libraries, and its static twin for tests.
#
#   orvane         liborvane.so, on top of libpexac.so and libpexacore.so
#   orvane_static  all object files, platform included: calls between all parts can be wrapped at
#                  link time

list(TRANSFORM ORVANE_LIBRARY_FOLDERS PREPEND orvane_ OUTPUT_VARIABLE parts)

orvane_add_library(
    orvane SHARED
    PUBLIC_LIBS orvane_headers pexac pexacore
    LIBS ${parts})

add_library(orvane_static INTERFACE)
foreach(part IN LISTS parts ITEMS pexac_objects pexacore_objects)
    target_sources(orvane_static INTERFACE "$<TARGET_OBJECTS:${part}>")
endforeach()
target_include_directories(orvane_static INTERFACE "${PROJECT_SOURCE_DIR}")
target_link_libraries(
    orvane_static INTERFACE orvane_headers pexa_engine EXPAT::EXPAT PkgConfig::LIBMD Threads::Threads)
