# What makes the frame fast in the release build of g++, beyond -O2. The results are the same to the bit. A build with
# link-time optimization of its own, by flags or by CMAKE_INTERPROCEDURAL_OPTIMIZATION(_RELEASE), is left as it is.
if(NOT (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release")
   OR CMAKE_INTERPROCEDURAL_OPTIMIZATION OR CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE
   OR "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_RELEASE}" MATCHES "-flto")
    function(optimize_small_records target)
    endfunction()
    function(optimize_as_a_whole library)
    endfunction()
    return()
endif()

# A frame clears and copies dozens of small records. The string instructions that x86-64 has for it take longer to begin
# than such a record takes to be written.
set(KIROCORE_SMALL_RECORDS
    -mmemset-strategy=unrolled_loop:128:noalign,libcall:-1:noalign
    -mmemcpy-strategy=unrolled_loop:128:noalign,libcall:-1:noalign)
include(CheckCXXCompilerFlag)
list(JOIN KIROCORE_SMALL_RECORDS " " KIROCORE_SMALL_RECORDS_FLAGS)
check_cxx_compiler_flag("${KIROCORE_SMALL_RECORDS_FLAGS}" KIROCORE_HAS_STRING_INSTRUCTIONS)
function(optimize_small_records target)
    if(KIROCORE_HAS_STRING_INSTRUCTIONS)
        target_compile_options(${target} PRIVATE ${KIROCORE_SMALL_RECORDS})
    endif()
endfunction()

# The rooms of the core call one another for a few instructions at a time: optimize_as_a_whole(<library> room...) has them
# optimized together, at -O3, when the library is linked; but the walks over grids at -O2, which leaves the sums of all
# tables in registers. The store stays out of it: vtables that it exports would go
# unless the library itself needs them. Programs that are added afterwards take the same objects as they are.
function(optimize_as_a_whole library)
    foreach(room ${ARGN})
        if(NOT room STREQUAL "kiro_core_statsprocessor")
            target_compile_options(${room} PRIVATE -O3)
        endif()
        target_compile_options(${room} PRIVATE -flto=auto -ffat-lto-objects)
    endforeach()
    target_link_options(${library} PRIVATE -flto=auto)
    add_link_options(-fno-lto)
endfunction()
