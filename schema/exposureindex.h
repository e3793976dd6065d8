/// @file
/// Arrays of three exposures in the table of a record.
#pragma once

#include "schema/kiroenums.h"
#include "schema/tuningrecord.h"

/// Names of the indices of such an array.
inline constexpr tuning::Enumerator AECAlgoExposureEnumerators[AECAlgoExposureCount] = {
    {"short", AECAlgoExposureShort}, {"long", AECAlgoExposureLong}, {"safe", AECAlgoExposureSafe}};

/// The same, in the form that a row points to.
inline constexpr tuning::EnumDescription AECAlgoExposureNames = {"AECAlgoExposureType", AECAlgoExposureEnumerators,
                                                                 AECAlgoExposureCount};

/// PER_EXPOSURE: an array that is indexed by AECAlgoExposureType.
template <typename Field>
constexpr tuning::RecordMember DescribePerExposure(const CHAR* pName, size_t offset)
{
    static_assert(std::extent_v<Field> == AECAlgoExposureCount);
    tuning::RecordMember member = tuning::DescribeMember<Field>(pName, offset);
    member.pIndexEnum           = &AECAlgoExposureNames;
    return member;
}

#define PER_EXPOSURE(field, ...)                                                                                       \
    tuning::MakeRow<decltype(Record::field)>(                                                                          \
        DescribePerExposure<decltype(Record::field)>(#field, offsetof(Record, field)), tuning::Words{__VA_ARGS__}),
