/// @file
/// What text access tells about one member of a record.
#pragma once

#include <cstdio>

#include "parameters/parameterutils.h"
#include "platform/tavocommonutils.h"

/// One member: its name, its type, and its value or how many values it holds.
class ParameterParserInfo
{
public:
    static constexpr size_t MaxValue = 1024;  ///< bytes of a value's text, terminator included; longer ones are cut

    // The type texts. A tool takes the description of a member apart by them: any other text is no type to it.
    static constexpr const CHAR* TypeStructure = "Structure";
    static constexpr const CHAR* TypeModule    = "Module";
    static constexpr const CHAR* TypeUInt32    = "UInt32";
    static constexpr const CHAR* TypeInt32     = "Int32";
    static constexpr const CHAR* TypeUInt64    = "UInt64";
    static constexpr const CHAR* TypeFloat     = "Float";
    static constexpr const CHAR* TypeBoolean   = "Boolean";
    static constexpr const CHAR* TypeEnum      = "Enum";
    static constexpr const CHAR* TypeString    = "String";

    ParameterParserInfo() = default;

    /// Something without a value. @param pName, pType must outlive this, as in all constructors
    ParameterParserInfo(const CHAR* pName, const CHAR* pType) : Name(pName), Type(pType)
    {
    }

    /// A number. @param precision decimals at most, as for ParameterUtils::DoubleToString
    ParameterParserInfo(const CHAR* pName, const CHAR* pType, DOUBLE value, UINT32 precision) : Name(pName), Type(pType)
    {
        bool fits = false;
        (VOID) ParameterUtils::DoubleToString(value, Value, sizeof(Value), precision, fits);
    }

    /// A text; null counts as empty.
    ParameterParserInfo(const CHAR* pName, const CHAR* pType, const CHAR* pText) : Name(pName), Type(pType)
    {
        (VOID) Tavo::OsUtils::StrLCpy(Value, (pText != nullptr) ? pText : "", sizeof(Value));
    }

    /// An array.
    ParameterParserInfo(const CHAR* pName, const CHAR* pType, bool isArray, bool isVariable, UINT32 count)
        : Name(pName), Type(pType), IsArray(isArray), IsVariable(isVariable), Count(count)
    {
    }

    const CHAR* Name            = "";
    const CHAR* Type            = "";
    CHAR        Value[MaxValue] = {};
    bool        IsArray         = false;
    bool        IsVariable      = false;  ///< left false by all records of today
    UINT32      Count           = 0;      ///< values of an array
};
