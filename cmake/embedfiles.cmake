# Puts files into a program: embed_files(<target> <name> file...) adds `extern const std::span<const webfile::File> <name>`
# of tools/webfile/webfile.h to a target. What stands in a file changes the program with the next build. The target
# `embedded` writes all of them and compiles nothing.
set(EMBED_FILES_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/writeembeddedfiles.cmake)
function(embed_files target name)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/embedded/${name}.cpp)
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DOUTPUT=${output} -DNAME=${name} "-DFILES=${ARGN}" -P ${EMBED_FILES_SCRIPT}
        DEPENDS ${ARGN} ${EMBED_FILES_SCRIPT}
        VERBATIM)
    target_sources(${target} PRIVATE ${output})
    add_custom_target(embedded_${name} DEPENDS ${output})
    if(NOT TARGET embedded)
        add_custom_target(embedded)
    endif()
    add_dependencies(embedded embedded_${name})
endfunction()
