#include "tools/recording/setparams.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace recording
{

namespace
{

/// Payloads whose bytes do not say all: AddressedParam writes them.
template <typename Payload> constexpr bool HoldsAddresses()
{
    return std::is_same_v<Payload, StatsTuningData> || std::is_same_v<Payload, AECAlgoROIList> ||
           std::is_same_v<Payload, AECAlgoFlashCalibrationData> || std::is_same_v<Payload, StatsPeerInfoCombo> ||
           std::is_same_v<Payload, KIROFICBlobHead>;
}

/// Numbers and enumerations count as the record of one; payloads with addresses have none.
template <typename Payload> constexpr const tuning::RecordDescription* RecordOf()
{
    if constexpr (IsScalar<Payload>)
    {
        using Number = std::conditional_t<sizeof(Payload) == sizeof(UINT8), RecordedByte, RecordedNumber>;
        static_assert(sizeof(Payload) == sizeof(Number));
        return &tuning::DescriptionOf<Number>();
    }
    else if constexpr (HoldsAddresses<Payload>())
    {
        return nullptr;
    }
    else
    {
        constexpr const tuning::RecordDescription& record = tuning::DescriptionOf<Payload>();
        static_assert(std::all_of(record.Members().begin(), record.Members().end(),
                                  [](const tuning::RecordMember& rMember) { return rMember.IsStored(); }),
                      "a payload with addresses is written by AddressedParam");
        return &record;
    }
}

constexpr SetParamRule Rules[] = {
#define SETTING(name, Payload) {AECAlgoSetParam##name, sizeof(Payload), RecordOf<Payload>()},
#define UNSIZED(name, Payload) {AECAlgoSetParam##name, 0, RecordOf<Payload>()},
#define UNREAD(name, size)
    AEC_SET_PARAMS(SETTING, UNSIZED, UNREAD)
#undef UNREAD
#undef UNSIZED
#undef SETTING
};

}  // namespace

const SetParamRule* RuleOf(AECAlgoSetParamType type)
{
    const auto* pFound = std::find_if(std::begin(Rules), std::end(Rules),
                                      [type](const SetParamRule& rRule) { return rRule.type == type; });
    return (pFound != std::end(Rules)) ? pFound : nullptr;
}

UINT64 LearnedSize(const BYTE* pHead)
{
    constexpr UINT64 sampleSize = 16;
    constexpr UINT64 kneeSize   = 24;
    constexpr UINT64 zoneSize   = 4;

    const UINT64 samples = pHead[0] | UINT64{pHead[1]} << 8;
    return (samples == 0 || samples > KIROFICRawDataCountMax)
               ? LearnedHeadSize
               : LearnedHeadSize + sampleSize * samples + kneeSize * pHead[2] + zoneSize * pHead[3];
}

}  // namespace recording
