# Finds the engine, Eclipse Cyclone DDS.
#
# The port uses some of the engine's inner headers, and another release may have changed them. So it
# is built with releases that its tests have run on, and with those between them.

set(ORVANE_ENGINE_FIRST 0.10.2)
set(ORVANE_ENGINE_LAST 0.10.5)

find_package(CycloneDDS)
if(NOT CycloneDDS_FOUND)
    message(FATAL_ERROR "Eclipse Cyclone DDS ${ORVANE_ENGINE_FIRST} to ${ORVANE_ENGINE_LAST} is needed, "
                        "and none that can be used was found. In Debian it is the package cyclonedds-dev.")
endif()
if(CycloneDDS_VERSION VERSION_LESS ORVANE_ENGINE_FIRST
   OR CycloneDDS_VERSION VERSION_GREATER ORVANE_ENGINE_LAST)
    message(FATAL_ERROR "Eclipse Cyclone DDS ${ORVANE_ENGINE_FIRST} to ${ORVANE_ENGINE_LAST} is needed, "
                        "and ${CycloneDDS_DIR} has ${CycloneDDS_VERSION}.")
endif()
message(STATUS "Engine: Eclipse Cyclone DDS ${CycloneDDS_VERSION}")
