/// @file
/// Arguments of setBankData, getBankData and setDynamicBankData.
#pragma once

#include "platform/tavotypes.h"
#include "schema/kiroenums.h"

struct KIROSetBankData
{
    KIROBankIDType bankID;
    VOID*          pData;    ///< a payload of the bank; the caller keeps it alive unless the bank stores values
    INT32          nInSize;  ///< bytes, must be the size of the bank's payload
};

struct KIROGetBankData
{
    KIROBankIDType bankID;
    INT32          dataID;    ///< 0 is the entry that the context selects
    VOID*          pData;     ///< output: the payload, owned by tuning or core
    INT32          nOutSize;  ///< bytes, must be the size of the bank's payload
};

enum KIRODynamicDataOperationType : INT32
{
    DynamicDataOverride = 0,
    DynamicDataReset    = 1
};
