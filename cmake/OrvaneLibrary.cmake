# The library itself, made of the folders' object libraries, and its static twin for tests.
#
#   orvane         liborvane.so, on top of libpexac.so and libpexacore.so
#   orvane_static  everything in one archive, platform included: calls between all parts can be
#                  wrapped at link time

list(TRANSFORM ORVANE_LIBRARY_FOLDERS PREPEND orvane_ OUTPUT_VARIABLE parts)

orvane_add_library(
    orvane SHARED
    PUBLIC_LIBS orvane_headers pexac pexacore
    LIBS ${parts})

orvane_add_library(
    orvane_static STATIC
    PUBLIC_LIBS ${parts} pexac_objects pexacore_objects pexa_engine orvane_headers)
