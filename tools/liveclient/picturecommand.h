/// @file
/// The custom command by which a camera shows a picture: what a tool sends, and what the camera answers.
///
///     request    the bytes of PictureRequest, nothing behind them
///     result     PictureResult; a camera without pictures answers anything else, mostly 0
///     answer     nothing as long as there is no picture, otherwise
///                offset 0   number of the frame, UINT64, little-endian
///                       8   a JPEG
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/tavotypes.h"

namespace liveclient
{

struct CustomResult;

/// Long enough not to be taken for a device's own command.
inline constexpr std::string_view PictureRequest = "kirocore picture 1";

constexpr UINT16 PictureResult = 0x5049;

/// Bytes before the JPEG.
constexpr UINT32 PictureHeader = 8;

struct Picture
{
    UINT64            frame;
    std::vector<BYTE> jpeg;
};

/// Whether a custom command asks for a picture.
bool IsPictureRequest(std::span<const BYTE> payload);

/// Writes what stands before the JPEG. @param pOutput PictureHeader bytes
VOID EncodePictureHeader(UINT64 frame, BYTE* pOutput);

/// Whether the camera that has answered knows the command.
bool OffersPictures(const CustomResult& rResult);

/// @return nothing if the answer holds no picture
std::optional<Picture> DecodePicture(const CustomResult& rResult);

}  // namespace liveclient
