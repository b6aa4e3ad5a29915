# What presets ask for: warnings as errors, sanitizers, coverage. A user's build has none of it.
option(ZUTARNEX_WARNINGS "Compile with the project's warnings, as errors" OFF)
option(ZUTARNEX_VERIFY_HEADERS "Compile each public header alone, as C++17, C++20 and C++23" OFF)
option(ZUTARNEX_COVERAGE "Instrument for coverage" OFF)
set(ZUTARNEX_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize= (address,undefined or thread)")

if(ZUTARNEX_WARNINGS)
    add_compile_options(-Wall -Wextra -Wpedantic -Werror)
    # GCC 12 at -O3 warns wrongly of std::string's operator+ (its bug 105651).
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
    endif()
endif()
if(ZUTARNEX_SANITIZE)
    add_compile_options(-fsanitize=${ZUTARNEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ZUTARNEX_SANITIZE})
    # The interceptors make the sanitizer's runtime the caller of dlopen; only an old-style RPATH of the executable
    # is still searched then.
    add_link_options(-Wl,--disable-new-dtags)
    # Clang links the runtime into executables only, so that a shared library has undefined symbols by design.
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        set(ZUTARNEX_SANITIZER_RUNTIME_IN_EXECUTABLE ON)
        # ThreadSanitizer's operator new is not weak and would clash with the tests' own. Clang leaves it out when it
        # links as for C.
        if(ZUTARNEX_SANITIZE MATCHES "thread")
            add_link_options(--driver-mode=gcc)
            link_libraries(stdc++ m)
        endif()
    endif()
endif()
if(ZUTARNEX_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
