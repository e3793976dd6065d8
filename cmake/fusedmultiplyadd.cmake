# The base instruction set of x86-64 has no fused multiply-add: every std::fma would be a call into the C library, at three
# times the price. The results are the same; the target has the instruction in its base set.
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64" AND NOT CMAKE_CROSSCOMPILING)
    include(CheckCXXSourceRuns)
    set(CMAKE_REQUIRED_FLAGS -mfma)
    check_cxx_source_runs("
        #include <cmath>
        int main(int argc, char**)
        {
            const float one = static_cast<float>(argc);
            return std::fma(one, one, -1.0f) == 0.0f ? 0 : 1;
        }" KIROCORE_FMA_RUNS)
    unset(CMAKE_REQUIRED_FLAGS)
    if(KIROCORE_FMA_RUNS)
        add_compile_options(-mfma)
    endif()
endif()
