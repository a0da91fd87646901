# Lets the build start before every folder has its sources.
#
#   ORVANE_SKIP  list of folders to leave out, such as "tools;examples;tests/peer"

set(ORVANE_SKIP "" CACHE STRING "Folders to leave out of the build")

# orvane_add_folders(folder…)
#   add_subdirectory for each folder that has a CMakeLists.txt and is not to be skipped.
function(orvane_add_folders)
    foreach(folder IN LISTS ARGN)
        if(folder IN_LIST ORVANE_SKIP OR NOT EXISTS "${PROJECT_SOURCE_DIR}/${folder}/CMakeLists.txt")
            message(STATUS "left out: ${folder}")
        else()
            add_subdirectory("${PROJECT_SOURCE_DIR}/${folder}" "${PROJECT_BINARY_DIR}/${folder}")
        endif()
    endforeach()
endfunction()
