# Fails when anything but the members of cTypDescriptor is defined in the library's dynamic symbol table.

execute_process(COMMAND ${NM} --dynamic --defined-only --demangle --format=posix ${LIBRARY}
    OUTPUT_VARIABLE _symbols COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," _symbols "${_symbols}")
string(REPLACE "\n" ";" _symbols "${_symbols}")
set(_members 0)
foreach(_symbol IN LISTS _symbols)
    if(_symbol MATCHES "^cTypDescriptor::")
        math(EXPR _members "${_members} + 1")
    elseif(_symbol AND NOT _symbol MATCHES "^TYPDESCRIPTOR_1(@.*)? A ")
        message(SEND_ERROR "leaves the library: ${_symbol}")
    endif()
endforeach()
if(_members EQUAL 0)
    message(FATAL_ERROR "no member of cTypDescriptor leaves the library")
endif()
message("${_members} members of cTypDescriptor leave the library")
