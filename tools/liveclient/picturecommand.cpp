#include "tools/liveclient/picturecommand.h"

#include <algorithm>

#include "tools/liveclient/liveclient.h"

namespace liveclient
{

bool IsPictureRequest(std::span<const BYTE> payload)
{
    return std::equal(payload.begin(), payload.end(), PictureRequest.begin(), PictureRequest.end(),
                      [](BYTE byte, CHAR letter) { return byte == static_cast<BYTE>(letter); });
}

VOID EncodePictureHeader(UINT64 frame, BYTE* pOutput)
{
    for (UINT32 index = 0; index < PictureHeader; ++index)
    {
        pOutput[index] = static_cast<BYTE>(frame >> (8 * index));
    }
}

bool OffersPictures(const CustomResult& rResult)
{
    return rResult.result == PictureResult;
}

std::optional<Picture> DecodePicture(const CustomResult& rResult)
{
    const std::vector<BYTE>& rBytes = rResult.bytes;
    const bool               isJpeg =
        rBytes.size() > PictureHeader + 2 && rBytes[PictureHeader] == 0xFF && rBytes[PictureHeader + 1] == 0xD8;
    if (!OffersPictures(rResult) || !isJpeg)
    {
        return std::nullopt;
    }
    Picture picture{0, {rBytes.begin() + PictureHeader, rBytes.end()}};
    for (UINT32 index = 0; index < PictureHeader; ++index)
    {
        picture.frame |= static_cast<UINT64>(rBytes[index]) << (8 * index);
    }
    return picture;
}

}  // namespace liveclient
