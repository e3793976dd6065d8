/// @file
/// Reading of a record's members, in the way that the file stores them.
#pragma once

#include "parameters/parameterfilesymboltableentry.h"
#include "schema/tuningrecord.h"

/// Reads the members of one record, one by one.
///
/// A record that the file has as the code declares it is plain: numbers are copied from where its table says, and
/// nothing is looked up or compared for them. Whatever is found to stand elsewhere after all, and any other record, is
/// read by the readers of the entry, which take each member from where the definitions say.
class MemberLoader
{
public:
    /// @param rEntry      stands at the record
    /// @param pDefinition of the record, null if there is none
    /// @param limit       end of what may be read of the entry
    MemberLoader(const tuning::RecordDescription& rRecord, BYTE* pRecord, ParameterFileSymbolTableEntry& rEntry,
                 ParameterDefinitionElement* pDefinition, UINT32 limit);

    VOID LoadAll();

private:
    bool IsPlain(ParameterDefinitionStructure* pStructure) const;
    VOID LoadInPlace(UINT32 index, ParameterDefinitionElement* pDefinition);
    bool CopyNumbers(const tuning::RecordMember& rMember, ParameterDefinitionElement* pDefinition);
    VOID Load(UINT32 index, ParameterDefinitionElement* pDefinition);
    VOID LoadValue(const tuning::RecordMember& rMember, const ReadingSite& rSite);
    VOID LoadRecord(const tuning::RecordMember& rMember, const ReadingSite& rSite);
    VOID LoadText(const tuning::RecordMember& rMember, const ReadingSite& rSite);

    const tuning::RecordDescription& m_rRecord;
    BYTE* const                      m_pRecord;
    ParameterLoadParameters          m_parameters;
    ParameterFileSymbolTableEntry&   m_rEntry;
};
