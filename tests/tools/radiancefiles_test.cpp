// Panoramas in files: what is read of both formats, and what damaged files end with.

#include <gtest/gtest.h>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfOutputFile.h>
#include <ImfStdIO.h>
#include <ImfTiledOutputFile.h>

#include "tests/support/refusal.h"
#include "tools/panorama/mapinput.h"

using panorama::Light;
using panorama::RadianceMap;

namespace
{

RadianceMap ReadSky(const std::string& rFile)
{
    return panorama::ReadMap({reinterpret_cast<const BYTE*>(rFile.data()), rFile.size()}, "sky");
}

std::string RefusalOfSky(const std::string& rFile)
{
    return RefusalOf([&] { (VOID) ReadSky(rFile); });
}

/// A Radiance picture of a size such as "-Y 1 +X 2".
std::string Hdr(const std::string& rSize, const std::vector<BYTE>& rLines)
{
    const std::string header = "#?RADIANCE\nEXPOSURE=1\nFORMAT=32-bit_rle_rgbe\n\n";
    return header + rSize + "\n" + std::string(rLines.begin(), rLines.end());
}

VOID ExpectLight(const Light& rLight, FLOAT red, FLOAT green, FLOAT blue)
{
    EXPECT_EQ(rLight.red, red);
    EXPECT_EQ(rLight.green, green);
    EXPECT_EQ(rLight.blue, blue);
}

/// A file is refused wherever it ends, by one line that begins with its name.
VOID ExpectEachBeginningIsRefused(const std::string& rFile)
{
    for (size_t size = 0; size < rFile.size(); ++size)
    {
        const std::string refusal = RefusalOfSky(rFile.substr(0, size));
        EXPECT_TRUE(refusal.starts_with("sky: ")) << size << " of " << rFile.size() << refusal;
        EXPECT_EQ(refusal.find('\n'), std::string::npos) << refusal;
    }
}

TEST(HdrInput, FlatPixelsAreMantissasOfACommonExponent)
{
    const RadianceMap map = ReadSky(Hdr("-Y 1 +X 2", {128, 64, 0, 129, 255, 1, 2, 0}));
    ASSERT_EQ(map.pixels.size(), 2U);
    ExpectLight(map.pixels[0], 1.0f, 0.5f, 0.0f);
    ExpectLight(map.pixels[1], 0.0f, 0.0f, 0.0f);
}

TEST(HdrInput, OldRunsRepeatAPixelAndCountInDigits)
{
    constexpr size_t  width = 510;  // a pixel, 253 more, and 256 more
    std::vector<BYTE> lines;
    for (BYTE row = 0; row < 255; ++row)
    {
        lines.insert(lines.end(), {row, 128, 0, 129, 1, 1, 1, 253, 1, 1, 1, 1});
    }
    const RadianceMap map = ReadSky(Hdr("-Y 255 +X 510", lines));
    ExpectLight(map.pixels[3 * width], 3.0f / 128.0f, 1.0f, 0.0f);
    ExpectLight(map.pixels[4 * width - 1], 3.0f / 128.0f, 1.0f, 0.0f);
    ExpectLight(map.pixels[4 * width], 4.0f / 128.0f, 1.0f, 0.0f);
    // A run without a pixel before it, and one beyond its line.
    EXPECT_NE(RefusalOfSky(Hdr("-Y 1 +X 2", {1, 1, 1, 1, 9, 9, 9, 9})).find("does not fit"), std::string::npos);
    EXPECT_NE(RefusalOfSky(Hdr("-Y 1 +X 2", {9, 9, 9, 129, 1, 1, 1, 2})).find("does not fit"), std::string::npos);
}

TEST(HdrInput, NewRunsHoldOneKindOfBytesAfterTheOther)
{
    const std::vector<BYTE> line = {2, 2, 0, 8, 136, 128, 8, 0, 16, 32, 48, 64, 80, 96, 112, 130, 7, 134, 9, 136, 129};
    std::vector<BYTE>       lines;
    for (UINT32 row = 0; row < 4; ++row)
    {
        lines.insert(lines.end(), line.begin(), line.end());
    }
    const std::string file = Hdr("-Y 4 +X 8", lines);
    const RadianceMap map  = ReadSky(file);
    ExpectLight(map.pixels[24], 1.0f, 0.0f, 7.0f / 128.0f);
    ExpectLight(map.pixels[31], 1.0f, 112.0f / 128.0f, 9.0f / 128.0f);
    ExpectEachBeginningIsRefused(file);
}

TEST(HdrInput, WhatIsNoPanoramaIsRefused)
{
    const std::pair<std::string, const CHAR*> cases[] = {
        {"-Y 2 +X 3", "a picture of 3 by 2, expected a panorama twice as wide as high"},
        {"+Y 1 +X 2", "expected a size such as"},
        {"-Y 99999999999999999999 +X 2", "expected a size such as"},
        {"-Y 4096 +X 8192", "expected at most 16777216 pixels"},
        {"-Y 1024 +X 2048", "expected more bytes"}};
    for (const auto& [rSize, pPart] : cases)
    {
        EXPECT_NE(RefusalOfSky(Hdr(rSize, {9, 9, 9, 9})).find(pPart), std::string::npos) << rSize;
    }
    EXPECT_NE(RefusalOfSky("#?RADIANCE\nFORMAT=32-bit_rle_xyze\n\n-Y 1 +X 2\n").find("FORMAT"), std::string::npos);
    EXPECT_EQ(RefusalOfSky("P6 2 1 255"), "sky: neither an OpenEXR nor a Radiance picture");
}

/// Four by two pixels whose value is 1 to 8, in channels by these names.
std::string Exr(Imf::PixelType type, const std::string& rChannels, bool isTiled, Imf::Compression compression)
{
    std::vector<FLOAT> floats = {1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<half>  halves(floats.begin(), floats.end());
    const bool         isHalf = type == Imf::HALF;
    char*            pFirst = isHalf ? reinterpret_cast<char*>(halves.data()) : reinterpret_cast<char*>(floats.data());
    const size_t     size   = isHalf ? sizeof(half) : sizeof(FLOAT);
    Imf::Header      header(4, 2);
    Imf::FrameBuffer buffer;
    header.compression() = compression;
    for (const CHAR channel : rChannels)
    {
        header.channels().insert(std::string(1, channel), Imf::Channel(type));
        buffer.insert(std::string(1, channel), Imf::Slice(type, pFirst, size, 4 * size));
    }
    Imf::StdOSStream stream;
    if (isTiled)
    {
        header.setTileDescription(Imf::TileDescription(8, 8));
        Imf::TiledOutputFile file(stream, header);
        file.setFrameBuffer(buffer);
        file.writeTiles(0, file.numXTiles() - 1, 0, file.numYTiles() - 1);
    }
    else
    {
        Imf::OutputFile file(stream, header);
        file.setFrameBuffer(buffer);
        file.writePixels(2);
    }
    return stream.str();
}

TEST(ExrInput, HalvesAndFloatsInLinesAndTilesAreRead)
{
    for (const Imf::PixelType type : {Imf::HALF, Imf::FLOAT})
    {
        for (const bool isTiled : {false, true})
        {
            for (const CHAR* pChannels : {"RGB", "ABGR", "Y"})
            {
                const std::string file = Exr(type, pChannels, isTiled, Imf::ZIP_COMPRESSION);
                const RadianceMap map  = ReadSky(file);
                ASSERT_EQ(map.width, 4U);
                ASSERT_EQ(map.pixels.size(), 8U);
                ExpectLight(map.pixels[0], 1.0f, 1.0f, 1.0f);
                ExpectLight(map.pixels[7], 8.0f, 8.0f, 8.0f);
            }
        }
    }
}

TEST(ExrInput, DamagedFilesAreRefused)
{
    ExpectEachBeginningIsRefused(Exr(Imf::HALF, "RGB", false, Imf::PIZ_COMPRESSION));
    ExpectEachBeginningIsRefused(Exr(Imf::HALF, "RGB", true, Imf::NO_COMPRESSION));
    EXPECT_NE(RefusalOfSky(Exr(Imf::HALF, "RG", false, Imf::NO_COMPRESSION)).find("expected channels R, G and B"),
              std::string::npos);
}

/// A file with bytes changed from so many behind a text on.
std::string Changed(std::string file, const std::string& rText, size_t behind, const std::string& rBytes)
{
    return file.replace(file.find(rText) + rText.size() + behind, rBytes.size(), rBytes);
}

TEST(ExrInput, SizesThatWouldTakeAllMemoryAreRefusedBeforeTheyAreUsed)
{
    const std::string lines = Exr(Imf::HALF, "RGB", false, Imf::NO_COMPRESSION);
    const std::string tiles = Exr(Imf::HALF, "RGB", true, Imf::NO_COMPRESSION);
    const auto text = [](const CHAR* pName, const CHAR* pType) { return std::string(pName) + '\0' + pType + '\0'; };
    const std::string window = text("dataWindow", "box2i");
    const std::string huge   = "\xff\xff\xff\x7f";
    // What stands behind the texts: an attribute's size, and its numbers.
    const std::pair<std::string, const CHAR*> cases[] = {
        {Changed(lines, window, 4 + 8, huge + huge), "expected a panorama twice as wide"},
        {Changed(lines, window, 4 + 8, std::string("\xff\x1f\0\0\xff\x0f\0\0", 8)), "expected at most 16777216 pixels"},
        {Changed(lines, window, 4 + 8, std::string("\xff\x03\0\0\xff\x01\0\0", 8)), "expected more bytes"},
        {Changed(lines, text("screenWindowWidth", "float"), 0, huge), "ends within its header"},
        {Changed(lines, text("lineOrder", "lineOrder"), 0, std::string("\x02", 1)), "its attribute 'lineOrder'"},
        {Changed(lines, text("channels", "chlist"), 0, std::string("\x36", 1)), "a list of channels of another size"},
        {Changed(tiles, text("tiles", "tiledesc"), 4, std::string("\x01", 1)), "expected tiles of 8 to 512 pixels"},
        {Changed(lines, "", 5, "\x10"), "with a single part of lines or tiles"}};
    for (const auto& [rFile, pPart] : cases)
    {
        EXPECT_NE(RefusalOfSky(rFile).find(pPart), std::string::npos) << pPart << " but " << RefusalOfSky(rFile);
    }
    // What pixels do not depend on is not looked into: the library would read more than four bytes of this type.
    std::string odd = lines;
    odd.replace(odd.find("screenWindowWidth"), 17, "a preview picture");
    odd.replace(odd.find("float", odd.find("a preview picture")), 5, "box3f");
    EXPECT_EQ(RefusalOfSky(odd), "");
}

}  // namespace
