// Conversion of stored values to the types that the code wants.

#include <algorithm>
#include <concepts>
#include <cstring>

#include "parameters/parameterdefinitions.h"
#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"

using tuning::ValueType;

namespace
{

template <typename Wanted, typename Stored> Wanted ConvertValue(Stored value)
{
    if constexpr (std::floating_point<Stored> && std::integral<Wanted>)
    {
        return ParameterUtils::ToInteger<Wanted>(value);
    }
    else
    {
        return static_cast<Wanted>(value);
    }
}

/// Either side may stand at any address.
template <typename Wanted, typename Stored> VOID ConvertAll(BYTE* pDestination, const BYTE* pSource, UINT32 count)
{
    for (UINT32 index = 0; index < count; ++index)
    {
        Stored stored;
        std::memcpy(&stored, pSource + static_cast<size_t>(index) * sizeof(Stored), sizeof(Stored));
        const Wanted wanted = ConvertValue<Wanted>(stored);
        std::memcpy(pDestination + static_cast<size_t>(index) * sizeof(Wanted), &wanted, sizeof(Wanted));
    }
}

template <typename Stored> VOID ConvertFrom(BYTE* pDestination, ValueType wanted, const BYTE* pSource, UINT32 count)
{
    switch (wanted)
    {
    case ValueType::Int8:
        return ConvertAll<INT8, Stored>(pDestination, pSource, count);
    case ValueType::UInt8:
        return ConvertAll<UINT8, Stored>(pDestination, pSource, count);
    case ValueType::Int16:
        return ConvertAll<INT16, Stored>(pDestination, pSource, count);
    case ValueType::UInt16:
        return ConvertAll<UINT16, Stored>(pDestination, pSource, count);
    case ValueType::Int32:
    case ValueType::Boolean:
        return ConvertAll<INT32, Stored>(pDestination, pSource, count);
    case ValueType::UInt32:
    case ValueType::Enum:
        return ConvertAll<UINT32, Stored>(pDestination, pSource, count);
    case ValueType::Int64:
        return ConvertAll<INT64, Stored>(pDestination, pSource, count);
    case ValueType::UInt64:
        return ConvertAll<UINT64, Stored>(pDestination, pSource, count);
    case ValueType::Float:
        return ConvertAll<FLOAT, Stored>(pDestination, pSource, count);
    case ValueType::Double:
        return ConvertAll<DOUBLE, Stored>(pDestination, pSource, count);
    case ValueType::Text:
    case ValueType::Record:
        return;
    }
}

/// @return false if the stored type is no number
bool Convert(BYTE* pDestination, ValueType wanted, const BYTE* pSource, ParameterDefinitionType stored, UINT32 count)
{
    switch (stored)
    {
    case ParameterDefinitionType_Signed8Bits:
        ConvertFrom<INT8>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Unsigned8Bits:
    case ParameterDefinitionType_Hex8Bits:
        ConvertFrom<UINT8>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Signed16Bits:
        ConvertFrom<INT16>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Unsigned16Bits:
    case ParameterDefinitionType_Hex16Bits:
        ConvertFrom<UINT16>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Signed32Bits:
    case ParameterDefinitionType_Boolean:
        ConvertFrom<INT32>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Unsigned32Bits:
    case ParameterDefinitionType_Hex32Bits:
    case ParameterDefinitionType_Enum:
        ConvertFrom<UINT32>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Signed64Bits:
        ConvertFrom<INT64>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Unsigned64Bits:
    case ParameterDefinitionType_Hex64Bits:
        ConvertFrom<UINT64>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Float:
        ConvertFrom<FLOAT>(pDestination, wanted, pSource, count);
        return true;
    case ParameterDefinitionType_Double:
        ConvertFrom<DOUBLE>(pDestination, wanted, pSource, count);
        return true;
    default:
        return false;
    }
}

ParameterDefinitionType StoredTypeOf(ValueType wanted, const ParameterDefinitionElement* pElement)
{
    return (pElement != nullptr && pElement->Info.has_value()) ? pElement->Info->StoredType()
                                                               : ParameterUtils::NativeType(wanted);
}

bool IsNumber(ParameterDefinitionType type)
{
    return type >= ParameterDefinitionType_Signed8Bits && type <= ParameterDefinitionType_Enum;
}

}  // namespace

ParameterDefinitionType ParameterUtils::NativeType(ValueType wanted)
{
    switch (wanted)
    {
    case ValueType::Int8:
        return ParameterDefinitionType_Signed8Bits;
    case ValueType::UInt8:
        return ParameterDefinitionType_Unsigned8Bits;
    case ValueType::Int16:
        return ParameterDefinitionType_Signed16Bits;
    case ValueType::UInt16:
        return ParameterDefinitionType_Unsigned16Bits;
    case ValueType::Int32:
        return ParameterDefinitionType_Signed32Bits;
    case ValueType::UInt32:
        return ParameterDefinitionType_Unsigned32Bits;
    case ValueType::Int64:
        return ParameterDefinitionType_Signed64Bits;
    case ValueType::UInt64:
        return ParameterDefinitionType_Unsigned64Bits;
    case ValueType::Float:
        return ParameterDefinitionType_Float;
    case ValueType::Double:
        return ParameterDefinitionType_Double;
    case ValueType::Boolean:
        return ParameterDefinitionType_Boolean;
    case ValueType::Enum:
        return ParameterDefinitionType_Enum;
    case ValueType::Text:
        return ParameterDefinitionType_String;
    case ValueType::Record:
        break;
    }
    return ParameterDefinitionType_Structure;
}

UINT32 ParameterUtils::ValueSize(ValueType type)
{
    const ParameterDefinitionType stored = NativeType(type);
    return IsNumber(stored) ? ParameterDefinitionElementInfo::WidthOf(stored) : 0;
}

bool ParameterUtils::IsExactType(ValueType wanted, const ParameterDefinitionElement* pElement)
{
    const ParameterDefinitionType stored = StoredTypeOf(wanted, pElement);
    switch (wanted)
    {
    case ValueType::UInt32:
    case ValueType::Enum:
        return stored == ParameterDefinitionType_Unsigned32Bits || stored == ParameterDefinitionType_Hex32Bits ||
               stored == ParameterDefinitionType_Enum;
    case ValueType::Int32:
    case ValueType::Boolean:
        return stored == ParameterDefinitionType_Signed32Bits || stored == ParameterDefinitionType_Boolean;
    case ValueType::UInt16:
        return stored == ParameterDefinitionType_Unsigned16Bits || stored == ParameterDefinitionType_Hex16Bits;
    case ValueType::UInt8:
        return stored == ParameterDefinitionType_Unsigned8Bits || stored == ParameterDefinitionType_Hex8Bits;
    case ValueType::UInt64:
        return stored == ParameterDefinitionType_Unsigned64Bits || stored == ParameterDefinitionType_Hex64Bits;
    default:
        return stored == NativeType(wanted);
    }
}

bool ParameterUtils::Read(VOID* pDestination, ValueType wanted, const ParameterDefinitionElement* pElement,
                          const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 alignment,
                          const IParameterLoggingAPI* pLog)
{
    const ParameterDefinitionType stored = StoredTypeOf(wanted, pElement);
    if (!IsNumber(stored))
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "%s: Invalid read type %u\n", "Read", stored);
        return false;
    }
    BYTE value[sizeof(UINT64)] = {};
    ReadSlot(value, ParameterDefinitionElementInfo::WidthOf(stored), pBuffer, length, rPosition, alignment, pLog);
    return Convert(static_cast<BYTE*>(pDestination), wanted, value, stored, 1);
}

bool ParameterUtils::ReadArray(VOID* pDestination, ValueType wanted, const ParameterDefinitionElement* pElement,
                               const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 count, UINT32 alignment,
                               const IParameterLoggingAPI* pLog)
{
    if (IsExactType(wanted, pElement))
    {
        return ReadBuffer(pDestination, pBuffer, length, rPosition, static_cast<UINT64>(count) * ValueSize(wanted),
                          alignment, pLog);
    }

    const ParameterDefinitionType stored = StoredTypeOf(wanted, pElement);
    if (!IsNumber(stored))
    {
        ParameterLogging::Write(pLog, ParameterLogging::Warning, "%s: Invalid read type %u. XSD structure modified\n",
                                "ReadArrayNoFloat", stored);
        return false;
    }
    if (wanted == ValueType::Enum &&
        (stored == ParameterDefinitionType_Float || stored == ParameterDefinitionType_Double))
    {
        ParameterLogging::Write(pLog, ParameterLogging::Warning,
                                stored == ParameterDefinitionType_Float
                                    ? "%s: Attempt to convert a float value to an enum\n"
                                    : "%s: Attempt to convert a double value to an enum\n",
                                "ReadArrayNoFloat");
    }

    const UINT64 position = rPosition;
    const UINT64 size     = static_cast<UINT64>(count) * ParameterDefinitionElementInfo::WidthOf(stored);
    rPosition += Padded(size, alignment);
    if (pBuffer == nullptr)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "ReadBuffer called with nullptr buffer\n");
        return false;
    }
    const UINT64 available = (position < length) ? std::min(size, length - position) : 0;
    if (available < size)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "ReadBuffer failed, read %d bytes, expected %d bytes\n",
                                static_cast<INT32>(available), static_cast<INT32>(size));
        return false;
    }
    return Convert(static_cast<BYTE*>(pDestination), wanted, pBuffer + position, stored, count);
}
