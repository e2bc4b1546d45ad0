# Fails when anything else leaves a shared library than what is listed.
#
# Of LIBRARY_HOST: the names in NAMES, without parameters.
# Of LIBRARY and LIBRARY_C: the class and the C interface, and what stands for both in other languages, have the same
# operations. OPERATIONS lists them, C function and member function on a line, "-" where one has nothing beside the other;
# DECLARATIONS are files that name every C function.

cmake_minimum_required(VERSION 3.25)

function(exported_symbols library result)
    execute_process(COMMAND ${NM} -D -C --defined-only ${library} OUTPUT_VARIABLE _table COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "\n" ";" _table "${_table}")
    set(_symbols)
    foreach(_line IN LISTS _table)
        if(_line MATCHES "^[0-9a-f]+ [B-Z] (.*)$") # A is the version itself
            list(APPEND _symbols "${CMAKE_MATCH_1}")
        endif()
    endforeach()
    list(REMOVE_DUPLICATES _symbols) # a constructor has two symbols
    set(${result} "${_symbols}" PARENT_SCOPE)
endfunction()

function(compare what found expected)
    foreach(_symbol IN LISTS found)
        if(NOT _symbol IN_LIST expected)
            message(SEND_ERROR "${what} has more than the list: ${_symbol}")
        endif()
    endforeach()
    foreach(_symbol IN LISTS expected)
        if(NOT _symbol IN_LIST found)
            message(SEND_ERROR "${what} lacks ${_symbol}")
        endif()
    endforeach()
endfunction()

if(LIBRARY_HOST)
    exported_symbols(${LIBRARY_HOST} _exported)
    list(TRANSFORM _exported REPLACE "(\\[abi:cxx11\\])?\\(.*\\)( const)?" "")
    list(REMOVE_DUPLICATES _exported)
    file(STRINGS ${NAMES} _names)
    compare("the host library" "${_exported}" "${_names}")
    return()
endif()

set(_members)
set(_functions)
file(STRINGS ${OPERATIONS} _operations)
foreach(_operation IN LISTS _operations)
    string(REGEX MATCH "^([^ ]+) (.+)$" _ "${_operation}")
    list(APPEND _functions ${CMAKE_MATCH_1})
    if(NOT CMAKE_MATCH_2 STREQUAL "-")
        list(APPEND _members "${CMAKE_MATCH_2}@@TYPDESCRIPTOR_1")
    endif()
endforeach()
list(REMOVE_ITEM _functions "-")

exported_symbols(${LIBRARY} _exported)
compare("the library" "${_exported}" "${_members}")
exported_symbols(${LIBRARY_C} _exported)
compare("the C interface" "${_exported}" "${_functions}")
foreach(_file IN LISTS DECLARATIONS)
    file(READ ${_file} _text)
    string(REGEX MATCHALL "typdescriptor_[A-Za-z0-9]+\\(" _declared "${_text}")
    list(TRANSFORM _declared REPLACE "\\($" "")
    list(REMOVE_DUPLICATES _declared)
    compare("${_file}" "${_declared}" "${_functions}")
endforeach()
