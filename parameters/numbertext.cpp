// Numbers as decimal text, and back.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "parameters/parameterutils.h"

namespace
{

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

}  // namespace

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
