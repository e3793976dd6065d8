#include "parameters/parameterutils.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "parameters/parameterlogging.h"
#include "platform/tavocommonutils.h"

namespace
{

constexpr UINT32 MaxComponent = 128;  ///< characters of one component of a member path
constexpr UINT32 MaxIndexText = 9;    ///< digits of an index in brackets

/// A decimal number under construction.
class DecimalWriter
{
public:
    DecimalWriter(DOUBLE value, CHAR* pText, UINT32 size) : m_value(value), m_pText(pText), m_room(size - 1)
    {
        if (m_value < 0.0)
        {
            m_pText[m_length++] = '-';
            m_value             = -m_value;
        }
        m_firstDigit = m_length;
        while (m_value / m_weight >= 10.0)
        {
            m_weight *= 10.0;
        }
    }

    VOID WriteDigits(UINT32 precision)
    {
        UINT32 decimals = 0;
        while (m_length < m_room)
        {
            WriteDigit();
            decimals += HasPoint() ? 1 : 0;
            if (m_weight >= 1.0)
            {
                continue;
            }
            if (decimals == precision)
            {
                return;
            }
            if (!HasPoint())
            {
                if (m_room - m_length < 2)
                {
                    return;
                }
                m_point             = m_length;
                m_pText[m_length++] = '.';
            }
            if (m_value == 0.0)
            {
                return;
            }
        }
    }

    /// Rounds half up on what is left of the value.
    VOID Round()
    {
        if (!HasPoint() || m_value == 0.0 || NextDigit() < 5)
        {
            return;
        }
        const bool carriesOut = std::all_of(m_pText + m_firstDigit, m_pText + m_length,
                                            [](CHAR character) { return character == '9' || character == '.'; });
        if (carriesOut && m_length == m_room)
        {
            return;  // one digit more would not fit
        }
        UINT32 place = m_length - 1;
        while (place > m_firstDigit && (m_pText[place] == '9' || m_pText[place] == '.'))
        {
            m_pText[place] = (m_pText[place] == '.') ? '.' : '0';
            --place;
        }
        if (!carriesOut)
        {
            ++m_pText[place];
            return;
        }
        m_pText[m_firstDigit] = '0';
        std::memmove(m_pText + m_firstDigit + 1, m_pText + m_firstDigit, m_length - m_firstDigit);
        m_pText[m_firstDigit] = '1';
        ++m_length;
        ++m_point;
    }

    /// @return the length of the text, now terminated
    UINT32 Finish()
    {
        if (HasPoint())
        {
            while (m_length > m_point + 2 && m_pText[m_length - 1] == '0')
            {
                --m_length;
            }
            if (m_length == m_point + 1)
            {
                m_pText[m_length++] = '0';
            }
        }
        if (m_length == m_firstDigit)
        {
            m_length   = 1;
            m_pText[0] = '0';
        }
        m_pText[m_length] = '\0';
        return m_length;
    }

    DOUBLE LeftOver() const
    {
        return m_value;
    }

private:
    bool HasPoint() const
    {
        return m_point > 0;
    }

    /// Rounding of the weight can push a quotient to 10.
    INT32 NextDigit() const
    {
        return std::min(ParameterUtils::ToInteger<INT32>(m_value / m_weight), 9);
    }

    VOID WriteDigit()
    {
        const INT32 digit   = NextDigit();
        m_pText[m_length++] = static_cast<CHAR>('0' + digit);
        m_value             = std::max(m_value - digit * m_weight, 0.0);
        m_weight /= 10.0;
    }

    DOUBLE m_value;         ///< what is not written yet
    DOUBLE m_weight = 1.0;  ///< of the next digit
    CHAR*  m_pText;
    UINT32 m_room;  ///< characters without the terminator
    UINT32 m_length     = 0;
    UINT32 m_firstDigit = 0;
    UINT32 m_point      = 0;  ///< index of the point; 0 if there is none, since a digit always comes first
};

VOID LogShortRead(UINT64 size, UINT64 position, UINT64 length, const IParameterLoggingAPI* pLog)
{
    ParameterLogging::Write(pLog, ParameterLogging::Error,
                            "Failed to read %lld bytes from binary file offset %d, length %d\n",
                            static_cast<INT64>(size), static_cast<INT32>(position), static_cast<INT32>(length));
}

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

UINT32 ParameterUtils::DoubleToString(DOUBLE value, CHAR* pText, UINT32 size, UINT32 precision, bool& rFlag)
{
    rFlag = false;
    if (pText == nullptr || size == 0)
    {
        return 0;
    }
    if (!std::isfinite(value))
    {
        const CHAR* pName = std::isnan(value) ? "nan" : (value < 0.0 ? "-inf" : "inf");
        return GetSubString(pName, '\0', pText, size);
    }
    if (size == 1)
    {
        pText[0] = '\0';
        return 0;
    }
    DecimalWriter writer(value, pText, size);
    writer.WriteDigits(precision);
    writer.Round();
    rFlag = writer.LeftOver() <= 1.0;
    return writer.Finish();
}

DOUBLE ParameterUtils::StringToDouble(const CHAR* pText, bool& rValid)
{
    rValid = false;
    if (pText == nullptr || pText[0] == '\0')
    {
        return 0.0;
    }
    const INT32 minus = GetStringPos(pText, '-');
    const INT32 point = GetStringPos(pText, '.');
    const INT32 start = minus + 1;
    const INT32 end   = (point >= 0) ? point : static_cast<INT32>(std::strlen(pText));

    DOUBLE scale     = std::pow(10.0, end - 1 - start);
    DOUBLE value     = 0.0;
    bool   pointSeen = false;
    for (const CHAR* pNext = pText + start; *pNext != '\0'; ++pNext)
    {
        if (*pNext == '.' && !pointSeen)
        {
            pointSeen = true;
        }
        else if (*pNext >= '0' && *pNext <= '9')
        {
            value += (*pNext == '0') ? 0.0 : (*pNext - '0') * scale;
            scale /= 10.0;
        }
        else
        {
            return 0.0;
        }
    }
    rValid = true;
    return (minus >= 0) ? -value : value;
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

bool ParameterUtils::ReadSlot(VOID* pValue, UINT32 size, const BYTE* pBuffer, UINT64 length, UINT64& rPosition,
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
