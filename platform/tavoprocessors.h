/// @file
/// Hot loops for the processor that a machine has, out of one binary.
///
/// The base instruction set of x86-64 has no fused multiply-add: each std::fma is a call into the C library, at three
/// times the price, and vectors have four floats. A marked function is compiled once more for processors that have the
/// instruction and vectors of eight (x86-64-v3), along with what it calls in its own file, and the loader chooses. The
/// results are the same. On AArch64 the base set has what is needed.
///
/// In a library only functions of one file are marked, in an unnamed namespace: others would be exported.
#pragma once

// The choice is made by glibc while a program is being loaded, before the sanitizers are ready for it; g++ 12 is the
// first compiler that marks functions in this way, and without optimisation there is nothing to gain.
#if defined(__x86_64__) && defined(__gnu_linux__) && !defined(__clang__) && __GNUC__ >= 12 && defined(__OPTIMIZE__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define TAVO_FOR_EACH_PROCESSOR [[gnu::target_clones("arch=x86-64-v3", "default"), gnu::flatten]]
#else
#define TAVO_FOR_EACH_PROCESSOR
#endif
