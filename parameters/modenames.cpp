#include "parameters/modenames.h"

#include <cstdio>
#include <cstring>
#include <string_view>

TUNING_ENUM(ModeType)
ENUMERATOR(Default)
ENUMERATOR(Sensor)
ENUMERATOR(Usecase)
ENUMERATOR(Feature1)
ENUMERATOR(Feature2)
ENUMERATOR(Scene)
ENUMERATOR(Effect)
TUNING_ENUM_END

TUNING_ENUM(ModeUsecaseSubModeType)
ENUMERATOR(Preview)
ENUMERATOR(Snapshot)
ENUMERATOR(Video)
ENUMERATOR(ZSL)
ENUMERATOR(Liveshot)
ENUMERATOR(SnapshotReprocess)
ENUMERATOR(IDEALRAW)
ENUMERATOR(IdealRawReprocess)
TUNING_ENUM_END

TUNING_ENUM(ModeFeature1SubModeType)
ENUMERATOR(None)
ENUMERATOR(ISPHDR)
ENUMERATOR(ADRC)
ENUMERATOR(inSensorHDR3Exp)
ENUMERATOR(MFHDRPreFusion)
ENUMERATOR(MFHDRFusion)
ENUMERATOR(MFHDRPostFusion)
TUNING_ENUM_END

TUNING_ENUM(ModeFeature2SubModeType)
ENUMERATOR(None)
ENUMERATOR(OISCapture)
ENUMERATOR(HLG)
ENUMERATOR(HDR10)
ENUMERATOR(MFNRBlend)
ENUMERATOR(MFNRPostFilter)
ENUMERATOR(AIDenoiserMFNRBlend)
ENUMERATOR(AIDenoiserMFNRPostFilter)
ENUMERATOR(ZLLMFNRBlend)
ENUMERATOR(ZLLMFNRPostFilter)
ENUMERATOR(ZLLPostFusion)
TUNING_ENUM_END

TUNING_ENUM(ModeSceneSubModeType)
ENUMERATOR(None)
ENUMERATOR(Landscape)
ENUMERATOR(Snow)
ENUMERATOR(Beach)
ENUMERATOR(Sunset)
ENUMERATOR(Night)
ENUMERATOR(Portrait)
ENUMERATOR(BackLight)
ENUMERATOR(Sports)
ENUMERATOR(AntiShake)
ENUMERATOR(Flowers)
ENUMERATOR(CandleLight)
ENUMERATOR(Fireworks)
ENUMERATOR(Party)
ENUMERATOR(NightPortrait)
ENUMERATOR(Theater)
ENUMERATOR(Action)
ENUMERATOR(AR)
ENUMERATOR(FacePriority)
ENUMERATOR(Barcode)
ENUMERATOR(BestShot)
TUNING_ENUM_END

TUNING_ENUM(ModeEffectSubModeType)
ENUMERATOR(None)
ENUMERATOR(Mono)
ENUMERATOR(Sepia)
ENUMERATOR(Negative)
ENUMERATOR(Solarize)
ENUMERATOR(Posterize)
ENUMERATOR(Aqua)
ENUMERATOR(Emboss)
ENUMERATOR(Sketch)
ENUMERATOR(Neon)
ENUMERATOR(Blackboard)
ENUMERATOR(Whiteboard)
TUNING_ENUM_END

namespace
{

constexpr size_t MaxPathItemLength = 9;
constexpr UINT32 MaxSubMode        = 0xFFFF;

/// Reads one item "mode.subMode". @return false if it is none
bool ParsePathItem(std::string_view item, TuningMode& rMode)
{
    if (item.size() > MaxPathItemLength)
    {
        return false;
    }
    UINT32 values[2] = {0, 0};
    size_t which     = 0;
    for (const CHAR character : item)
    {
        if (character == '.' && which == 0)
        {
            which = 1;
        }
        else if (character >= '0' && character <= '9')
        {
            values[which] = values[which] * 10 + static_cast<UINT32>(character - '0');
        }
        else
        {
            return false;
        }
    }
    if (values[1] > MaxSubMode)
    {
        return false;
    }
    rMode.mode          = static_cast<ModeType>(values[0]);
    rMode.subMode.value = static_cast<UINT16>(values[1]);
    return true;
}

}  // namespace

namespace ModeNames
{

const tuning::EnumDescription& Modes()
{
    return *TuningEnumOf(ModeType{});
}

const tuning::EnumDescription* SubModes(ModeType mode)
{
    switch (mode)
    {
    case ModeType::Usecase:
        return TuningEnumOf(ModeUsecaseSubModeType{});
    case ModeType::Feature1:
        return TuningEnumOf(ModeFeature1SubModeType{});
    case ModeType::Feature2:
        return TuningEnumOf(ModeFeature2SubModeType{});
    case ModeType::Scene:
        return TuningEnumOf(ModeSceneSubModeType{});
    case ModeType::Effect:
        return TuningEnumOf(ModeEffectSubModeType{});
    default:
        return nullptr;
    }
}

const CHAR* GetSubModeName(ModeType mode, UINT32 subMode)
{
    const tuning::EnumDescription* pNames = SubModes(mode);
    return (pNames != nullptr) ? pNames->NameOf(static_cast<INT32>(subMode)) : nullptr;
}

bool GetModeBranchFromPath(const CHAR* pPath, std::vector<TuningMode>& rBranch)
{
    if (pPath == nullptr || pPath[0] == '\0')
    {
        return !rBranch.empty();
    }
    std::string_view rest(pPath);
    while (true)
    {
        const size_t bar = rest.find('|');
        TuningMode   mode{};
        if (!ParsePathItem(rest.substr(0, bar), mode))
        {
            return false;
        }
        rBranch.push_back(mode);
        if (bar == std::string_view::npos)
        {
            return true;
        }
        rest.remove_prefix(bar + 1);
    }
}

bool AppendPathItem(CHAR* pText, size_t size, UINT32 mode, UINT32 subMode)
{
    CHAR         item[24];
    const size_t used   = std::strlen(pText);
    const INT    length = std::snprintf(item, sizeof(item), (used > 0) ? "|%u.%u" : "%u.%u", mode, subMode);
    if (used + static_cast<size_t>(length) >= size)
    {
        return false;
    }
    std::memcpy(pText + used, item, static_cast<size_t>(length) + 1);
    return true;
}

}  // namespace ModeNames
