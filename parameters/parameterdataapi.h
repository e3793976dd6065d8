/// @file
/// What the live tuning service needs of a tuning store: values as text, and the modes that there are.
#pragma once

#include "parameters/parameterlogging.h"
#include "parameters/parametersync.h"
#include "parameters/plist.h"

class ParameterParserInfo;

/// Mode paths here are numeric, as in "0.0|2.1"; a module text is a module's name with a member path behind it, as in
/// "kiroconvergence.smoothADRC". Texts handed out are always terminated; one that does not fit is cut.
class IParameterDataAPI : public IParameterLoggingAPI
{
public:
    virtual UINT32 GetModeTableCount() const = 0;

    /// Appends the names of the mode tables, empty ones included. They stay valid while GetDataMutex is held.
    virtual VOID GetModeTableNames(PList<const CHAR*>& rList) const = 0;

    /// Reads values of a module as "member=value;member=value".
    /// @param pModePath   where to look for the module: as for a frame, the deepest mode on the path that has it
    /// @param pModuleText module, and the record within it to which the members belong
    /// @param pMembers    member paths joined by ","; null for all members that hold values
    /// @return false if the last of them could not be read; the text then holds the others
    virtual bool GetValue(BYTE tableIndex, const CHAR* pModePath, const CHAR* pModuleText, const CHAR* pMembers,
                          CHAR* pValue, UINT32 size) = 0;

    /// Writes one number into a record that frames may be reading at the same moment, and keeps its mode in memory for
    /// good. Modules of the core see the change at their next fetch.
    /// @return false if there is no such member or the text is not a number; the record is then as before
    virtual bool SetValue(BYTE tableIndex, const CHAR* pModePath, const CHAR* pModuleText, const CHAR* pName,
                          const CHAR* pValue) = 0;

    /// Appends a description of each member of the module, or of the record that the path behind its name leads to.
    virtual bool GetInfo(BYTE tableIndex, const CHAR* pModePath, const CHAR* pPath,
                         PList<ParameterParserInfo>& rList) = 0;

    /// Writes the named paths of at most five modes in use, joined by ";", the most recently used first.
    virtual bool GetActiveModes(BYTE tableIndex, CHAR* pText, UINT32 size) = 0;

    /// Writes the names of the modes below a path, or below the root if there is no such mode, joined by ",".
    /// @return bytes of the text with its terminator
    virtual UINT32 GetChildModes(BYTE tableIndex, const CHAR* pPath, CHAR* pText, UINT32 size) = 0;

    /// Turns a named path, as in "Default|Usecase.Video", into a numeric one.
    virtual bool GetModeShorthand(const CHAR* pPath, CHAR* pText, UINT32 size) = 0;

    /// Held while what the store holds is replaced or freed. A caller that puts several of these operations together
    /// holds it too, so that they all see the same file. Frames never take it.
    virtual ParameterMutex& GetDataMutex() = 0;
};
