/// @file
/// Small pictures as PNG.
#pragma once

#include <span>
#include <vector>

#include "platform/tavotypes.h"

namespace report
{

enum class PixelFormat
{
    RGB,
    RGBA
};

/// @param pixels 8 bits per channel, row by row from the upper left
/// @throws std::runtime_error if the library refuses
std::vector<BYTE> EncodePng(UINT32 width, UINT32 height, PixelFormat format, std::span<const BYTE> pixels);

}  // namespace report
