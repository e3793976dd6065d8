/// @file
/// Conversions between numbers and text, and reading of single fields and stored values from a buffer.
///
/// Reading functions share one rule for positions: they move past the field, padded to the packing, whether or not the
/// bytes were all there. What lies behind the end of a buffer is never touched, whatever the position.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

#include "parameters/tuningmemory.h"
#include "platform/tavotypes.h"
#include "schema/tuningrecord.h"

class IParameterLoggingAPI;
class ParameterDefinitionElement;
enum ParameterDefinitionType : UINT8;

class ParameterUtils
{
public:
    /// @return index of the first such character, -1 if there is none or pText is null
    static INT32 GetStringPos(const CHAR* pText, CHAR character);

    /// Copies up to the delimiter, the end or size - 1 characters, and terminates.
    /// @return characters copied; 0 for null arguments
    static UINT32 GetSubString(const CHAR* pText, CHAR delimiter, CHAR* pOut, UINT32 size);

    /// Takes the first component of a member path such as "trigger2Data[3].end".
    /// @param pName  receives the name without an index
    /// @param rIndex receives the index in brackets, and stays as it is if there is none
    /// @return characters consumed, the "." included
    static UINT32 GetVariable(const CHAR* pPath, CHAR* pName, UINT32& rIndex, UINT32 nameSize);

    /// Writes a number in decimal, rounded half up to at most precision decimals, without trailing zeros but with one
    /// decimal at least, as in "2.0"; without a point if precision is 0. What is not finite gives "nan", "inf", "-inf".
    /// @param rFlag false if the text had no room for all digits before the point
    /// @return length of the text
    static UINT32 DoubleToString(DOUBLE value, CHAR* pText, UINT32 size, UINT32 precision, bool& rFlag);

    /// Reads digits with at most one point. What stands before the first "-" is ignored.
    /// @return 0 if the text is not a number
    static DOUBLE StringToDouble(const CHAR* pText, bool& rValid);

    /// Appends a text at rPosition and moves rPosition past it, and past its NUL if includeTerminator is set. A text
    /// that does not fit, or a null one, is logged and leaves rPosition.
    static bool WriteString(const CHAR* pText, CHAR* pBuffer, UINT32 size, UINT32& rPosition, bool includeTerminator,
                            const IParameterLoggingAPI* pLog);

    /// Truncates towards zero and saturates at the limits of the target; NaN gives 0.
    template <typename Integer> static Integer ToInteger(DOUBLE value)
    {
        constexpr Integer lowest  = std::numeric_limits<Integer>::min();
        constexpr Integer highest = std::numeric_limits<Integer>::max();
        // Both bounds are powers of two, or 0, and exact in double.
        const DOUBLE lowerBound = static_cast<DOUBLE>(lowest);
        const DOUBLE upperBound = std::ldexp(1.0, std::numeric_limits<Integer>::digits);
        if (std::isnan(value))
        {
            return 0;
        }
        if (value >= upperBound)
        {
            return highest;
        }
        return (value <= lowerBound) ? lowest : static_cast<Integer>(value);
    }

    /// @return size rounded up to a multiple of alignment; an alignment of 0 counts as 1
    static constexpr UINT64 Padded(UINT64 size, UINT32 alignment)
    {
        return (alignment <= 1) ? size : (size + alignment - 1) / alignment * alignment;
    }

    /// @return whether size bytes stand at the position of a buffer; if not, a log says so
    static bool HasBytes(UINT64 length, UINT64 position, UINT64 size, const IParameterLoggingAPI* pLog);

    /// Reads one field from a slot of max(sizeof(T), alignment) bytes. A field that is not wholly in the buffer gives 0
    /// and is logged.
    template <typename T>
    static bool ReadField(T& rValue, const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 alignment,
                          const IParameterLoggingAPI* pLog)
    {
        return ReadSlot(&rValue, sizeof(T), pBuffer, length, rPosition, alignment, pLog);
    }

    /// @return the text at the position without a copy: up to a NUL, size bytes or the end of the buffer
    static std::string_view ReadText(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 size,
                                     UINT32 alignment);

    /// The same as a copy that is terminated. @return null for a null buffer, and when there is no memory
    static TuningText ReadString(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 size, UINT32 alignment);

    /// Copies size bytes as far as they are there, and terminates at capacity - 1.
    /// @param capacity bytes of pDestination, at least 1
    static VOID ReadString(CHAR* pDestination, const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 capacity,
                           UINT32 size, UINT32 alignment, const IParameterLoggingAPI* pLog);

    /// Copies size bytes as far as they are there. @return whether they all were; if not, a log says so
    static bool ReadBuffer(VOID* pDestination, const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT64 size,
                           UINT32 alignment, const IParameterLoggingAPI* pLog);

    /// Reads one stored value as the wanted type.
    /// @param pDestination one value of the wanted type, at any address
    /// @param pElement     says how the value is stored; null, or without Info, if it is stored as wanted
    /// @return false for a stored type that is no number. A value that is not wholly there gives 0 and counts as read
    static bool Read(VOID* pDestination, tuning::ValueType wanted, const ParameterDefinitionElement* pElement,
                     const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 alignment,
                     const IParameterLoggingAPI* pLog);

    /// Reads count stored values as the wanted type. They are packed at their own width.
    /// @return whether all were there and their type is a number
    static bool ReadArray(VOID* pDestination, tuning::ValueType wanted, const ParameterDefinitionElement* pElement,
                          const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 count, UINT32 alignment,
                          const IParameterLoggingAPI* pLog);

    /// @return whether values of the element need no conversion to the wanted type
    static bool IsExactType(tuning::ValueType wanted, const ParameterDefinitionElement* pElement);

    /// @return the type of stored values that need no conversion
    static ParameterDefinitionType NativeType(tuning::ValueType type);

    /// @return bytes of one value in memory; 0 for texts and records
    static UINT32 ValueSize(tuning::ValueType type);

private:
    static bool ReadSlot(VOID* pValue, UINT32 size, const BYTE* pBuffer, UINT64 length, UINT64& rPosition,
                         UINT32 alignment, const IParameterLoggingAPI* pLog)
    {
        const UINT64 position = rPosition;
        rPosition += std::max(size, alignment);
        if (pBuffer == nullptr || position > length || size > length - position)
        {
            LogShortRead(size, position, length, pLog);
            std::memset(pValue, 0, size);
            return false;
        }
        std::memcpy(pValue, pBuffer + position, size);
        return true;
    }

    static VOID LogShortRead(UINT64 size, UINT64 position, UINT64 length, const IParameterLoggingAPI* pLog);
};
