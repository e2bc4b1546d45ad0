# GoogleTest for tests and fuzzers. Where the distribution's is not built for the target, it is built from its sources.
set(TYPDESCRIPTOR_GTEST_SOURCE "" CACHE PATH "Sources of GoogleTest; empty: the installed one")
if(TYPDESCRIPTOR_GTEST_SOURCE)
    set(INSTALL_GTEST OFF CACHE INTERNAL "")
    set(BUILD_GMOCK OFF CACHE INTERNAL "")
    add_subdirectory(${TYPDESCRIPTOR_GTEST_SOURCE} googletest EXCLUDE_FROM_ALL)
    target_compile_options(gtest PRIVATE -w) # its warnings are not ours to mend
    if(NOT TARGET GTest::gtest_main)
        add_library(GTest::gtest ALIAS gtest)
        add_library(GTest::gtest_main ALIAS gtest_main)
    endif()
else()
    find_package(GTest REQUIRED GLOBAL)
endif()
