# What the headers themselves say.
file(STRINGS /usr/include/nlohmann/detail/abi_macros.hpp _lines REGEX "define NLOHMANN_JSON_VERSION_(MAJOR|MINOR) ")
string(REGEX REPLACE ".*MAJOR ([0-9]+).*MINOR ([0-9]+).*" "\\1.\\2" PACKAGE_VERSION "${_lines}")
if(NOT PACKAGE_VERSION VERSION_LESS PACKAGE_FIND_VERSION)
    set(PACKAGE_VERSION_COMPATIBLE TRUE)
endif()
