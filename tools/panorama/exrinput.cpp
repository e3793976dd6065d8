#include "tools/panorama/exrinput.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

#include <fmt/format.h>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputFile.h>

#include "tools/panorama/exrheader.h"
#include "tools/tuningfile/inputerror.h"

namespace panorama
{

namespace
{

constexpr std::array<BYTE, 4> ExrMagic = {0x76, 0x2f, 0x31, 0x01};

/// Bytes in memory as a file.
class MemoryStream : public Imf::IStream
{
public:
    explicit MemoryStream(std::span<const BYTE> bytes) : IStream("memory"), m_bytes(bytes)
    {
    }

    bool read(char* pTo, int count) override
    {
        const size_t left = m_bytes.size() - m_place;
        if (count < 0 || static_cast<size_t>(count) > left)
        {
            throw std::runtime_error("the file ends too early");
        }
        std::memcpy(pTo, m_bytes.data() + m_place, static_cast<size_t>(count));
        m_place += static_cast<size_t>(count);
        return m_place < m_bytes.size();
    }

    uint64_t tellg() override
    {
        return m_place;
    }

    VOID seekg(uint64_t place) override
    {
        m_place = std::min<uint64_t>(place, m_bytes.size());
    }

private:
    std::span<const BYTE> m_bytes;
    uint64_t              m_place = 0;
};

/// The channels of red, green and blue.
std::array<const char*, 3> NamesOfChannels(const Imf::ChannelList& rChannels, std::string_view name)
{
    const auto isWhole = [&rChannels](const char* pName)
    {
        const Imf::Channel* pChannel = rChannels.findChannel(pName);
        return pChannel != nullptr && pChannel->xSampling == 1 && pChannel->ySampling == 1;
    };
    if (isWhole("R") && isWhole("G") && isWhole("B"))
    {
        return {"R", "G", "B"};
    }
    if (isWhole("Y") && rChannels.findChannel("RY") == nullptr && rChannels.findChannel("BY") == nullptr)
    {
        return {"Y", "Y", "Y"};
    }
    throw tuningfile::InputError(fmt::format("{}: expected channels R, G and B, or Y alone", name));
}

/// Reads one channel into one kind of floats of all pixels.
VOID ReadChannel(Imf::InputFile& rFile, const char* pName, FLOAT* pFirst, UINT32 width)
{
    const Imath::Box2i window = rFile.header().dataWindow();
    Imf::FrameBuffer   buffer;
    buffer.insert(pName, Imf::Slice::Make(Imf::FLOAT, pFirst, window, sizeof(Light), sizeof(Light) * width));
    rFile.setFrameBuffer(buffer);
    rFile.readPixels(window.min.y, window.max.y);
}

RadianceMap ReadPixels(std::span<const BYTE> bytes, std::string_view name)
{
    MemoryStream                     stream(bytes);
    Imf::InputFile                   file(stream, 0);  // without threads
    const Imath::Box2i               window   = file.header().dataWindow();
    RadianceMap                      map      = MakeMap(static_cast<INT64>(window.max.x) - window.min.x + 1,
                                                        static_cast<INT64>(window.max.y) - window.min.y + 1, bytes.size(), name);
    const std::array<const char*, 3> channels = NamesOfChannels(file.header().channels(), name);
    ReadChannel(file, channels[0], &map.pixels[0].red, map.width);
    ReadChannel(file, channels[1], &map.pixels[0].green, map.width);
    ReadChannel(file, channels[2], &map.pixels[0].blue, map.width);
    return map;
}

/// What the library says of a file may hold bytes of the file.
std::string OneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](CHAR letter) { return letter < ' ' || letter > '~'; }, ' ');
    return text;
}

}  // namespace

bool IsExr(std::span<const BYTE> bytes)
{
    return bytes.size() >= ExrMagic.size() && std::equal(ExrMagic.begin(), ExrMagic.end(), bytes.begin());
}

RadianceMap ReadExr(std::span<const BYTE> bytes, std::string_view name)
{
    try
    {
        return ReadPixels(CheckedExr(bytes, name), name);
    }
    catch (const tuningfile::InputError&)
    {
        throw;
    }
    catch (const std::exception& rFault)
    {
        throw tuningfile::InputError(
            fmt::format("{}: no OpenEXR picture that can be read: {}", name, OneLine(rFault.what())));
    }
}

}  // namespace panorama
