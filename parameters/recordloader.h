/// @file
/// Loading and unloading of tuning records by their tables.
#pragma once

#include "parameters/parameterfilesymboltableentry.h"
#include "schema/tuningrecord.h"

class ParameterFileSymbolTable;

/// Walks the table of a record and reads each member in the way that fits it. A record is the plain struct that the
/// table describes; texts and arrays that its members point to are tuning memory owned by the record, unless the symbol
/// table shares them between records.
class RecordLoader
{
public:
    /// Reads the record of a module. The record must not own memory; members that a file does not hold (SymbolTableID)
    /// keep their values, all others are overwritten.
    /// @param rEntry found by the module's ID; an empty one gives a zero record
    /// @param nameHash of the module
    static VOID LoadModule(const tuning::RecordDescription& rRecord, VOID* pRecord,
                           ParameterFileSymbolTableEntry& rEntry, UINT64 nameHash);

    /// Reads a record at the position of the entry. Its memory must be zero: that of members that are not read stays.
    static VOID Load(const tuning::RecordDescription& rRecord, VOID* pRecord,
                     const ParameterLoadParameters& rParameters);

    /// Reads count records that follow one another, likewise. Does nothing if pItems is null.
    static VOID LoadArray(const tuning::RecordDescription& rRecord, VOID* pItems, UINT32 count,
                          const ParameterLoadParameters& rParameters);

    /// Gives back all memory that the record owns and clears the pointers to it.
    /// @param pTable the table that the record was loaded from. Null frees everything, also what others share
    static VOID Unload(const tuning::RecordDescription& rRecord, VOID* pRecord, ParameterFileSymbolTable* pTable);
};
