# The toolkit's headers are read ahead, once for the libraries and once for the tests, which are compiled with other
# flags; and once for each of the toolkit's modules, so that what needs Qt Core alone cannot come to know more.
function(marlopad_read_ahead kind)
    foreach(module Core Gui Widgets)
        set(name read_ahead_${module}_for_${kind})
        file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/${name}.cpp CONTENT "")
        add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
        target_link_libraries(${name} PRIVATE Qt6::${module} marlopad_flags ${ARGN})
        target_precompile_headers(${name} PRIVATE <Qt${module}>)
        set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    endforeach()
endfunction()

marlopad_read_ahead(libraries marlopad_library_flags)
if(BUILD_TESTING)
    marlopad_read_ahead(tests)
endif()

# The largest of the toolkit's modules that TARGET knows through LIBRARIES is what is read ahead for it.
function(marlopad_use_read_ahead target kind libraries)
    set(known Core)
    foreach(library ${libraries})
        string(REPLACE Qt6:: "" module ${library})
        if(library MATCHES "^marlopad_")
            get_target_property(module ${library} MARLOPAD_MODULE)
        endif()
        if(module STREQUAL Widgets OR (module STREQUAL Gui AND known STREQUAL Core))
            set(known ${module})
        endif()
    endforeach()
    set_target_properties(${target} PROPERTIES MARLOPAD_MODULE ${known})
    target_precompile_headers(${target} REUSE_FROM read_ahead_${known}_for_${kind})
endfunction()

# marlopad_library(NAME SOURCES… LINK LIBS…): one room, one static library, whose headers are included as
# "room/header.h".
function(marlopad_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE marlopad_flags marlopad_library_flags)
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    marlopad_use_read_ahead(${name} libraries "${arg_LINK}")
endfunction()

# marlopad_test_under(RUNNER NAME LINK LIBS… [SOURCES…]): NAME.cpp in the calling folder becomes one CTest test, run by
# tests/RUNNER.
function(marlopad_test_under runner name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test ${arg_LINK} marlopad_flags)
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    marlopad_use_read_ahead(${name} tests "${arg_LINK}")
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
