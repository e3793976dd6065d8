#include "host/flashcalibration.h"

namespace flashcalibration
{

bool IsComplete(std::span<const BYTE> bytes)
{
    constexpr size_t headerSize = 4;
    constexpr size_t sampleSize = 16;
    constexpr size_t kneeSize   = 24;
    constexpr size_t zoneSize   = 4;
    if (bytes.size() < headerSize)
    {
        return false;
    }
    const size_t samples = static_cast<size_t>(bytes[0]) | static_cast<size_t>(bytes[1]) << 8;
    return bytes.size() == headerSize + sampleSize * samples + kneeSize * bytes[2] + zoneSize * bytes[3];
}

bool Enable(KiroHost& rHost, std::span<const BYTE> bytes)
{
    (VOID) rHost.SetParam(AECAlgoSetParamFlashInlineCalibrationMode, BOOL{TRUE});
    if (bytes.empty())
    {
        return true;
    }
    if (!IsComplete(bytes))
    {
        return false;
    }
    std::vector<BYTE> copy(bytes.begin(), bytes.end());
    AECAlgoSetParam param = {copy.data(), static_cast<UINT32>(copy.size()), AECAlgoSetParamFlashInlineCalibrationData};
    KIROSetInput    input{};
    input.source      = AECPEKSetParam;
    input.u.pPEKInput = &param;
    return rHost.Algo()->setInput(rHost.Algo(), &input) == 0;
}

std::vector<BYTE> Store(KiroHost& rHost)
{
    IKIROCoreAlgo*    pAlgo = rHost.Algo();
    std::vector<BYTE> bytes(pAlgo->GetFICData(pAlgo, nullptr));
    (VOID) pAlgo->GetFICData(pAlgo, bytes.data());
    return bytes;
}

}  // namespace flashcalibration
