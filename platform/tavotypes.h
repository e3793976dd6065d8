/// @file
/// Scalar type names of the camera framework. All widths are fixed on every supported machine.
#pragma once

#include <cstddef>
#include <cstdint>

typedef void               VOID;
typedef char               CHAR;
typedef unsigned char      BYTE;
typedef int                INT;
typedef unsigned int       UINT;
typedef signed char        INT8;
typedef unsigned char      UINT8;
typedef short              INT16;
typedef unsigned short     UINT16;
typedef int                INT32;
typedef unsigned int       UINT32;
typedef long long          INT64;
typedef unsigned long long UINT64;
typedef float              FLOAT;
typedef double             DOUBLE;

/// Truth is the value 1; any 32-bit value can arrive from a host or from tuning data.
typedef INT32  BOOL;
constexpr BOOL TRUE  = 1;
constexpr BOOL FALSE = 0;

/// Result codes of the core and of its host interface, on one scale:
/// 0 success, 1 general failure, 2 unsupported query, 3 not in follow mode, 4 invalid argument,
/// 6 not found, 8 out of memory, 10 not applicable to this frame, 11 no usable statistics.
typedef INT32 KiroResult;
typedef INT32 MNKResult;

static_assert(sizeof(INT16) == 2 && sizeof(INT32) == 4 && sizeof(INT64) == 8 && sizeof(FLOAT) == 4 &&
              sizeof(DOUBLE) == 8);
