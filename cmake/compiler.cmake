# Warnings, sanitizers and the compiler cache: one place for every target.
find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(marlopad_flags INTERFACE)
target_compile_options(marlopad_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
target_compile_definitions(marlopad_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_DISABLE_DEPRECATED_BEFORE=0x060400 QT_NO_FOREACH)
target_include_directories(marlopad_flags INTERFACE ${CMAKE_SOURCE_DIR})

if(MARLOPAD_SANITIZE)
    set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(marlopad_flags INTERFACE ${sanitize} -O1 -g1)
    target_link_options(marlopad_flags INTERFACE ${sanitize})
endif()
