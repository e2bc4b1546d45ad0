include(${CMAKE_CURRENT_LIST_DIR}/hostHeaders.cmake)
typdescriptor_host_headers(nlohmann_json::nlohmann_json nlohmann)
