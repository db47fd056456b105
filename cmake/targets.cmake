# The toolkit's headers that most files read are read ahead, once for the libraries and once for the tests, which are
# compiled with other flags. What needs Qt Core alone goes without, so that it cannot come to know more.
function(marlopad_read_ahead name)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PRIVATE Qt6::Widgets Qt6::DBus Qt6::Svg marlopad_flags ${ARGN})
    target_precompile_headers(${name} PRIVATE <QtWidgets>)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
endfunction()

marlopad_read_ahead(read_ahead_for_libraries marlopad_library_flags)
if(BUILD_TESTING)
    marlopad_read_ahead(read_ahead_for_tests)
endif()

function(marlopad_use_read_ahead target name libraries)
    if(NOT libraries MATCHES "^(Qt6::Core|marlopad_text$)")
        target_precompile_headers(${target} REUSE_FROM ${name})
    endif()
endfunction()

# marlopad_library(NAME SOURCES… LINK LIBS…): one folder, one static library, whose headers are included from
# the repository's root.
function(marlopad_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE marlopad_flags marlopad_library_flags)
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
    marlopad_use_read_ahead(${name} read_ahead_for_libraries "${arg_LINK}")
endfunction()

# marlopad_test_under(RUNNER NAME LINK LIBS… [SOURCES…]): NAME.cpp in the calling folder becomes one CTest test, run by
# tests/RUNNER.
function(marlopad_test_under runner name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test ${arg_LINK} marlopad_flags)
    marlopad_use_read_ahead(${name} read_ahead_for_tests "${arg_LINK}")
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/${runner} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

macro(marlopad_test)
    marlopad_test_under(isolated ${ARGN})
endmacro()

# On a virtual X display with a window manager.
macro(marlopad_window_test)
    marlopad_test_under(underx ${ARGN})
endmacro()

# On a Wayland compositor, where no window is ever active, as there are no keys and no pointer.
macro(marlopad_wayland_test)
    marlopad_test_under(underwayland ${ARGN})
endmacro()
