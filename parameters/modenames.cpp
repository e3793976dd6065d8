#include "parameters/modenames.h"

#include <cstring>
#include <string>

#include "parameters/parameterutils.h"
#include "platform/tavocommonutils.h"

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

bool IsSameName(std::string_view name, const CHAR* pName)
{
    return name.size() == std::strlen(pName) && Tavo::OsUtils::StrNICmp(name.data(), pName, name.size()) == 0;
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

ModeType GetModeIndex(std::string_view name)
{
    const tuning::EnumDescription& rModes = Modes();
    for (UINT32 index = 0; index < rModes.count; ++index)
    {
        if (IsSameName(name, rModes.pEnumerators[index].pName))
        {
            return static_cast<ModeType>(rModes.pEnumerators[index].value);
        }
    }
    return ModeType::Default;
}

UINT32 GetSubModeIndex(ModeType mode, std::string_view name)
{
    bool         isNumber = false;
    const DOUBLE number   = ParameterUtils::StringToDouble(std::string(name).c_str(), isNumber);
    if (isNumber)
    {
        return ParameterUtils::ToInteger<UINT32>(number);
    }
    UINT32 subMode = 0;
    while (const CHAR* pName = GetSubModeName(mode, subMode))
    {
        if (IsSameName(name, pName))
        {
            return subMode;
        }
        ++subMode;
    }
    return 0;
}

}  // namespace ModeNames
