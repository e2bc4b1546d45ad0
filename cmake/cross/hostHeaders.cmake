# Makes a target of headers that are the same for every machine: a link to them in the build folder, since the folder
# they are installed in holds those of the build machine as well.
function(typdescriptor_host_headers target folder)
    set(_include ${CMAKE_BINARY_DIR}/hostHeaders)
    if(NOT EXISTS /usr/include/${folder})
        message(FATAL_ERROR "No headers in /usr/include/${folder}")
    endif()
    file(MAKE_DIRECTORY ${_include})
    file(CREATE_LINK /usr/include/${folder} ${_include}/${folder} SYMBOLIC)
    if(NOT TARGET ${target})
        add_library(${target} INTERFACE IMPORTED)
        target_include_directories(${target} INTERFACE ${_include})
    endif()
endfunction()
