include(${CMAKE_CURRENT_LIST_DIR}/hostHeaders.cmake)
typdescriptor_host_headers(CLI11::CLI11 CLI)
