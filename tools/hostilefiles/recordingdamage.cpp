#include "tools/hostilefiles/recordingdamage.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <span>
#include <vector>

#include "tools/recording/chunks.h"
#include "tools/recording/layout.h"

namespace hostilefiles
{

namespace
{

constexpr CHAR   Magic[]    = {'K', 'I', 'R', 'O', 'R', 'E', 'C', '\n'};
constexpr size_t HeaderSize = sizeof(Magic) + 2 * sizeof(UINT32);
constexpr size_t PrefixSize = 2 * sizeof(UINT32);
constexpr size_t FrameSize  = PrefixSize + sizeof(UINT32);  ///< of a chunk without payload

using Bytes = std::vector<BYTE>;

UINT32 Load(const BYTE* pPlace)
{
    UINT32 value = 0;
    std::memcpy(&value, pPlace, sizeof(value));
    return value;
}

VOID Store(BYTE* pPlace, UINT32 value)
{
    std::memcpy(pPlace, &value, sizeof(value));
}

/// @return size of the chunk at the beginning of the bytes, 0 if they are no whole chunk
size_t ChunkSize(std::span<const BYTE> bytes)
{
    if (bytes.size() < FrameSize)
    {
        return 0;
    }
    const size_t size = FrameSize + Load(bytes.data() + sizeof(UINT32));
    return (size <= bytes.size()) ? size : 0;
}

std::vector<Bytes> Split(std::span<const BYTE> bytes)
{
    std::vector<Bytes> chunks;
    for (size_t size = ChunkSize(bytes); size > 0; size = ChunkSize(bytes))
    {
        chunks.emplace_back(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        bytes = bytes.subspan(size);
    }
    return chunks;
}

VOID MutatePayload(Bytes& rChunk, const BytesMutator& rMutate)
{
    constexpr size_t grown = 64;

    Bytes        payload(rChunk.begin() + PrefixSize, rChunk.end() - sizeof(UINT32));
    const size_t size = payload.size();
    payload.resize(size + grown);
    payload.resize(rMutate(payload.data(), size, payload.size()));
    rChunk.resize(PrefixSize);
    rChunk.insert(rChunk.end(), payload.begin(), payload.end());
    rChunk.resize(rChunk.size() + sizeof(UINT32));
    Store(rChunk.data() + sizeof(UINT32), static_cast<UINT32>(payload.size()));
}

}  // namespace

VOID SealRecording(BYTE* pFile, size_t size)
{
    if (size < HeaderSize)
    {
        return;
    }
    std::copy_n(Magic, sizeof(Magic), pFile);
    Store(pFile + sizeof(Magic), recording::FileVersion);
    constexpr size_t headerChecked = HeaderSize - sizeof(UINT32);
    Store(pFile + headerChecked, recording::ChecksumOf({pFile, headerChecked}));

    bool isHead = true;
    for (std::span<BYTE> rest(pFile + HeaderSize, size - HeaderSize); ChunkSize(rest) > 0;
         rest = rest.subspan(ChunkSize(rest)))
    {
        const size_t checked = ChunkSize(rest) - sizeof(UINT32);
        if (isHead && checked >= PrefixSize + sizeof(UINT32))
        {
            Store(rest.data() + checked - sizeof(UINT32), recording::LayoutChecksum());
        }
        isHead = false;
        Store(rest.data() + checked, recording::ChecksumOf(rest.first(checked)));
    }
}

size_t DamageChunk(BYTE* pFile, size_t size, size_t maxSize, UINT32 seed, const BytesMutator& rMutate)
{
    if (size < HeaderSize)
    {
        return size;
    }
    std::vector<Bytes> chunks = Split({pFile + HeaderSize, size - HeaderSize});
    if (chunks.empty())
    {
        return size;
    }
    std::minstd_rand random(seed);
    const auto       any = [&] { return std::uniform_int_distribution<size_t>(0, chunks.size() - 1)(random); };
    switch (random() % 8)
    {
    case 0:
        chunks.insert(chunks.begin() + static_cast<std::ptrdiff_t>(any()), chunks[any()]);
        break;
    case 1:
        chunks.erase(chunks.begin() + static_cast<std::ptrdiff_t>(any()));
        break;
    case 2:
        std::swap(chunks[any()], chunks[any()]);
        break;
    case 3:
        chunks.resize(any() + 1);
        break;
    default:
        MutatePayload(chunks[any()], rMutate);
        break;
    }
    size_t written = HeaderSize;
    for (const Bytes& rChunk : chunks)
    {
        if (rChunk.size() > maxSize - written)
        {
            break;
        }
        std::copy(rChunk.begin(), rChunk.end(), pFile + written);
        written += rChunk.size();
    }
    return written;
}

}  // namespace hostilefiles
