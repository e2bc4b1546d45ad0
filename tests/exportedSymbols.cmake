# Fails when the library's dynamic symbol table defines anything but what exportedSymbols.txt lists.

cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} -D -C --defined-only ${LIBRARY} OUTPUT_VARIABLE _table COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" _table "${_table}")
set(_exported)
foreach(_line IN LISTS _table)
    if(_line MATCHES "^[0-9a-f]+ [B-Z] (.*)$") # A is the version itself
        list(APPEND _exported "${CMAKE_MATCH_1}")
    endif()
endforeach()
list(REMOVE_DUPLICATES _exported) # a constructor has two symbols
list(SORT _exported)
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/exportedSymbols.txt _expected)
foreach(_symbol IN LISTS _exported)
    if(NOT _symbol IN_LIST _expected)
        message(SEND_ERROR "leaves the library: ${_symbol}")
    endif()
endforeach()
foreach(_symbol IN LISTS _expected)
    if(NOT _symbol IN_LIST _exported)
        message(SEND_ERROR "does not leave the library: ${_symbol}")
    endif()
endforeach()
