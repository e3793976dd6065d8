# What makes the frame fast in the release build of g++, beyond -O2. The results are the same to the bit.
if(NOT (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release"))
    function(optimize_small_records target)
    endfunction()
    return()
endif()

# A frame clears and copies dozens of small records. The string instructions that x86-64 has for it take longer to begin
# than such a record takes to be written.
function(optimize_small_records target)
    if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
        target_compile_options(${target} PRIVATE
            -mmemset-strategy=unrolled_loop:256:noalign,libcall:-1:noalign
            -mmemcpy-strategy=unrolled_loop:256:noalign,libcall:-1:noalign)
    endif()
endfunction()
