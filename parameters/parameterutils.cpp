#include "parameters/parameterutils.h"

#include <algorithm>
#include <cstring>

#include "parameters/parameterlogging.h"
#include "platform/tavocommonutils.h"

namespace
{

constexpr UINT32 MaxComponent = 128;  ///< characters of one component of a member path
constexpr UINT32 MaxIndexText = 9;    ///< digits of an index in brackets

}  // namespace

INT32 ParameterUtils::GetStringPos(const CHAR* pText, CHAR character)
{
    if (pText != nullptr)
    {
        for (INT32 index = 0; pText[index] != '\0'; ++index)
        {
            if (pText[index] == character)
            {
                return index;
            }
        }
    }
    return -1;
}

UINT32 ParameterUtils::GetSubString(const CHAR* pText, CHAR delimiter, CHAR* pOut, UINT32 size)
{
    if (pText == nullptr || pOut == nullptr || size == 0)
    {
        return 0;
    }
    UINT32 length = 0;
    while (length < size - 1 && pText[length] != '\0' && pText[length] != delimiter)
    {
        pOut[length] = pText[length];
        ++length;
    }
    pOut[length] = '\0';
    return length;
}

UINT32 ParameterUtils::GetVariable(const CHAR* pPath, CHAR* pName, UINT32& rIndex, UINT32 nameSize)
{
    if (pPath == nullptr || pName == nullptr || nameSize == 0)
    {
        return 0;
    }
    CHAR         component[MaxComponent + 1];
    const UINT32 length  = GetSubString(pPath, '.', component, sizeof(component));
    const INT32  bracket = GetStringPos(component, '[');
    if (bracket >= 0 && static_cast<UINT32>(bracket) + 1 < length)
    {
        CHAR index[MaxIndexText + 1];
        if (GetSubString(component + bracket + 1, ']', index, sizeof(index)) > 0)
        {
            bool valid = false;
            // A negative index is like none at all: beyond every bound.
            const DOUBLE value = StringToDouble(index, valid);
            rIndex             = (value <= -1.0) ? 0xFFFFFFFF : ToInteger<UINT32>(value);
        }
        component[bracket] = '\0';
    }
    Tavo::OsUtils::StrLCpy(pName, component, nameSize);
    return length + (pPath[length] == '.' ? 1 : 0);
}

bool ParameterUtils::WriteString(const CHAR* pText, CHAR* pBuffer, UINT32 size, UINT32& rPosition,
                                 bool includeTerminator, const IParameterLoggingAPI* pLog)
{
    if (pText == nullptr)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "Insufficient space in buffer to write string\n");
        return false;
    }
    const UINT64 length = std::strlen(pText);
    const UINT64 wanted = length + (includeTerminator ? 1 : 0);
    if (pBuffer == nullptr || rPosition > size || wanted > size - rPosition)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "Insufficient space in buffer to write string: %s\n",
                                pText);
        return false;
    }
    std::memcpy(pBuffer + rPosition, pText, length);
    if (rPosition + length < size)
    {
        pBuffer[rPosition + length] = '\0';
    }
    rPosition += static_cast<UINT32>(wanted);
    return true;
}

bool ParameterUtils::HasBytes(UINT64 length, UINT64 position, UINT64 size, const IParameterLoggingAPI* pLog)
{
    if (position <= length && size <= length - position)
    {
        return true;
    }
    LogShortRead(size, position, length, pLog);
    return false;
}

VOID ParameterUtils::LogShortRead(UINT64 size, UINT64 position, UINT64 length, const IParameterLoggingAPI* pLog)
{
    ParameterLogging::Write(pLog, ParameterLogging::Error,
                            "Failed to read %lld bytes from binary file offset %d, length %d\n",
                            static_cast<INT64>(size), static_cast<INT32>(position), static_cast<INT32>(length));
}

std::string_view ParameterUtils::ReadText(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 size,
                                          UINT32 alignment)
{
    const UINT64 position = rPosition;
    rPosition += Padded(size, alignment);
    if (pBuffer == nullptr || position >= length)
    {
        return {};
    }
    const CHAR* pText = reinterpret_cast<const CHAR*>(pBuffer + position);
    return {pText, strnlen(pText, std::min<UINT64>(size, length - position))};
}

TuningText ParameterUtils::ReadString(const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT32 size,
                                      UINT32 alignment)
{
    const std::string_view text = ReadText(pBuffer, length, rPosition, size, alignment);
    if (pBuffer == nullptr)
    {
        return nullptr;
    }
    TuningText pCopy(static_cast<CHAR*>(AllocateTuningMemory(text.size() + 1)));
    if (pCopy != nullptr)
    {
        std::copy(text.begin(), text.end(), pCopy.get());
    }
    return pCopy;
}

VOID ParameterUtils::ReadString(CHAR* pDestination, const BYTE* pBuffer, UINT64 length, UINT64& rPosition,
                                UINT32 capacity, UINT32 size, UINT32 alignment, const IParameterLoggingAPI* pLog)
{
    const UINT64 position = rPosition;
    rPosition += Padded(size, alignment);
    if (pDestination == nullptr)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error,
                                "ReadBuffer failed to allocate space for a string of %d length\n", size);
        return;
    }
    if (pBuffer != nullptr && position < length)
    {
        const UINT64 available = std::min<UINT64>({size, capacity, length - position});
        std::memcpy(pDestination, pBuffer + position, available);
    }
    pDestination[capacity - 1] = '\0';
}

bool ParameterUtils::ReadBuffer(VOID* pDestination, const BYTE* pBuffer, UINT64 length, UINT64& rPosition, UINT64 size,
                                UINT32 alignment, const IParameterLoggingAPI* pLog)
{
    const UINT64 position = rPosition;
    rPosition += Padded(size, alignment);
    if (pBuffer == nullptr)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "ReadBuffer called with nullptr buffer\n");
        return false;
    }
    if (pDestination == nullptr)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "ReadBuffer called with nullptr value\n");
        return false;
    }
    const UINT64 available = (position < length) ? std::min(size, length - position) : 0;
    if (available > 0)
    {
        std::memcpy(pDestination, pBuffer + position, available);
    }
    if (available < size)
    {
        ParameterLogging::Write(pLog, ParameterLogging::Error, "ReadBuffer failed, read %d bytes, expected %d bytes\n",
                                static_cast<INT32>(available), static_cast<INT32>(size));
        return false;
    }
    return true;
}
