# Takes off what cmake --install has put from this build folder: files that are still as they were installed,
# and the folders that were made for them, once they are empty.
#   cmake -D SCRIPT=FILE -P uninstall.cmake     FILE being what installation.cmake.in has become
include("${SCRIPT}")

if(NOT EXISTS "${KL_MADE_FILES}")
    message(FATAL_ERROR "Nothing has been installed from this build folder.")
endif()

file(STRINGS "${KL_MADE_FILES}" lines)
foreach(line IN LISTS lines)
    string(REGEX MATCH "^([^ ]+) (.+)$" matched "${line}")
    set(installed ${CMAKE_MATCH_1})
    set(path "${CMAKE_MATCH_2}")
    if(NOT EXISTS "${path}" AND NOT IS_SYMLINK "${path}")
        continue()
    endif()
    kl_fingerprint(found "${path}")
    if(NOT found STREQUAL installed)
        message(STATUS "Left, for it has been changed: ${path}")
        continue()
    endif()
    message(STATUS "Removing: ${path}")
    file(REMOVE "${path}")
    if(EXISTS "${path}" OR IS_SYMLINK "${path}")
        message(FATAL_ERROR "Cannot be removed: ${path}")
    endif()
endforeach()

# From the innermost out. rmdir(1) leaves a folder alone in which there is something.
if(EXISTS "${KL_MADE_FOLDERS}")
    file(STRINGS "${KL_MADE_FOLDERS}" folders)
    list(REMOVE_DUPLICATES folders)
    list(SORT folders ORDER DESCENDING)
    foreach(folder IN LISTS folders)
        execute_process(COMMAND rmdir -- "${folder}" ERROR_QUIET)
    endforeach()
endif()
file(REMOVE "${KL_MADE_FILES}" "${KL_MADE_FOLDERS}")
