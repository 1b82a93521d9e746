# Warnings are errors in every build of ours.
add_library(corvetape_options INTERFACE)
target_compile_options(corvetape_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# This version finds overlaps in "text" + std::string that are none, in the standard library's own code.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(corvetape_options INTERFACE -Wno-restrict)
endif()
if(CORVETAPE_SANITIZE)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # With the sanitizers it finds uninitialised values in the standard library's own headers.
        target_compile_options(corvetape_options INTERFACE -Wno-maybe-uninitialized)
    endif()
    target_compile_options(corvetape_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(corvetape_options INTERFACE -fsanitize=address,undefined)
endif()
if(CORVETAPE_COVERAGE)
    target_compile_options(corvetape_options INTERFACE --coverage)
    target_link_options(corvetape_options INTERFACE --coverage)
endif()
if(CORVETAPE_FUZZ)
    # The compiler's own warnings are judged by the compiler that builds the program.
    target_compile_options(corvetape_options INTERFACE -Wno-everything
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(corvetape_options INTERFACE -fsanitize=address,undefined)
endif()
