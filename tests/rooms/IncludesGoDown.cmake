# Compiles one line for each edge, as a source of the lower library would be compiled.

# compiles(out folders header): whether an include of the header finds a file there.
function(compiles out folders header)
    file(WRITE ${FOLDER}/edge.cpp
        "#if !__has_include(\"${header}\")\n#error no such file\n#endif\n")
    set(flags "")
    foreach(folder ${folders})
        list(APPEND flags -I${folder})
    endforeach()
    execute_process(COMMAND ${COMPILER} -E -std=c++20 ${flags} ${FOLDER}/edge.cpp
        RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
    set(${out} ${result} PARENT_SCOPE)
endfunction()

function(check lower own higher folders)
    compiles(ownResult "${folders}" ${own})
    if(NOT ownResult EQUAL 0)
        message(SEND_ERROR "${lower} doesn't find its own ${own}")
    endif()
    compiles(higherResult "${folders}" ${higher})
    if(higherResult EQUAL 0)
        message(SEND_ERROR "${lower} can include ${higher}, which lies above it")
    endif()
endfunction()

include(${EDGES})
