# Runs the example hosts of the C interface over the example devices: each prints the same, and a file that does not load
# is refused with its code. HOST runs the one in C, CTYPES the one in Python (empty where no Python can load the library),
# EXAMPLES is the folder of the devices.

cmake_minimum_required(VERSION 3.25)

function(run result output)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE _result OUTPUT_VARIABLE _output ERROR_VARIABLE _error)
    string(REPLACE "\r\n" "\n" _output "${_output}")
    set(${result} "${_result}" PARENT_SCOPE)
    set(${output} "${_output}${_error}" PARENT_SCOPE)
endfunction()

file(GLOB _devices ${EXAMPLES}/*.GS?)
if(NOT _devices)
    message(FATAL_ERROR "no devices in ${EXAMPLES}")
endif()
foreach(_device IN LISTS _devices)
    run(_result _printed ${HOST} ${_device})
    if(NOT _result EQUAL 0 OR NOT _printed MATCHES "ident number 0x[0-9A-F]+\n(module|parameter) ")
        message(SEND_ERROR "${_device}: the host in C ends with ${_result}: ${_printed}")
    endif()
    if(CTYPES)
        run(_result _same ${CTYPES} ${_device})
        if(NOT _result EQUAL 0 OR NOT _same STREQUAL _printed)
            message(SEND_ERROR "${_device}: the host in Python ends with ${_result}: ${_same}")
        endif()
    endif()
endforeach()
run(_result _printed ${HOST} ${EXAMPLES}/missing.GSD)
if(NOT _result EQUAL 1 OR NOT _printed MATCHES "cannot be opened or read. \\(-210\\)")
    message(SEND_ERROR "a missing file: ${_result}: ${_printed}")
endif()
