# What every target of the project is compiled with; targets take it by linking selvane-options.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# These two are told to other compilers than the build's own as well.
set(SELVANE_WARNINGS -Wall -Wextra -Wconversion -Wshadow -Werror)
# A product that is added without being rounded first would make one machine's numbers differ from another's.
set(SELVANE_ARITHMETIC -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86")
    # So would the wider registers that these processors compute in otherwise.
    list(APPEND SELVANE_ARITHMETIC -msse2 -mfpmath=sse)
endif()

add_library(selvane-options INTERFACE)
target_compile_options(selvane-options INTERFACE
    ${SELVANE_WARNINGS}
    # Of sources that are compiled in one piece, that a name hides one of another source is no fault. Nor is it told
    # then when one hides a name of its own source that isn't local, or, by other compilers than GCC, any.
    $<$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>:-Wno-shadow>
    $<$<AND:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>,$<CXX_COMPILER_ID:GNU>>:-Wshadow=local>
    # GCC 12 sees overlaps in its own std::string, once it is optimised, that can't happen.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
    ${SELVANE_ARITHMETIC})
target_compile_definitions(selvane-options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)

if(SELVANE_SANITIZERS)
    add_compile_options(-fsanitize=${SELVANE_SANITIZERS} -fno-omit-frame-pointer)
    if(SELVANE_SANITIZERS MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # What the sanitizers insert makes GCC see uses of empty optionals and comparisons of endless strings that
        # can't happen, as its manual says.
        add_compile_options(-Wno-maybe-uninitialized -Wno-stringop-overread)
    endif()
    if(SELVANE_SANITIZERS MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Qt's headers hold fences, which GCC tells that its thread sanitizer doesn't follow.
        add_compile_options(-Wno-tsan)
    endif()
    add_link_options(-fsanitize=${SELVANE_SANITIZERS})
else()
    set(CMAKE_EXE_LINKER_FLAGS "${CMAKE_EXE_LINKER_FLAGS} -Wl,--as-needed")
    set(CMAKE_MODULE_LINKER_FLAGS "${CMAKE_MODULE_LINKER_FLAGS} -Wl,--as-needed")
endif()
