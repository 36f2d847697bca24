# Our sources are held to these; generated code (moc, qmlcachegen) is not.
add_library(OrvaneWarnings INTERFACE)
target_compile_options(
    OrvaneWarnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wshadow
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wcast-align
              -Wunused
              -Wimplicit-fallthrough
              -Wno-missing-field-initializers
              # GCC 12 takes the empty side of an std::optional that is swapped for uninitialized.
              $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>
              -Werror)
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

# For a target that also holds generated code: only the hand-written sources.
function(orvane_warn_on_own_sources target)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "^[A-Za-z/]+\\.cpp$")
    set_source_files_properties(
        ${sources} PROPERTIES COMPILE_OPTIONS
                              "$<TARGET_PROPERTY:OrvaneWarnings,INTERFACE_COMPILE_OPTIONS>")
endfunction()
