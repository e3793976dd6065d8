/// @file
/// The wire format of live tuning. All numbers are little-endian.
///
///     offset 0   start tag, UINT16
///            2   command, UINT16
///            4   length of the whole packet, UINT16
///            6   Vernier ID, UINT64: a token of the service (the answer to DeviceInfo has it at 8, behind the
///                protocol version, a byte major and a byte minor)
///           14   request ID, UINT32, of the commands that have one: any number, which the answer repeats
///                payload
#pragma once

#include "platform/tavotypes.h"

namespace vernier
{

constexpr UINT16 StartTag     = 19286;
constexpr UINT16 DefaultPort  = 19286;  ///< TCP
constexpr UINT16 InternalPort = 33127;  ///< TCP or UNIX
constexpr UINT16 PortsBehind  = 64;     ///< tried one after the other when the first is taken

constexpr BYTE VersionMajor = 2;
constexpr BYTE VersionMinor = 0;

/// A packet has fewer bytes than this.
constexpr UINT32 PacketLimit = 65535;

enum class Command : UINT16
{
    DeviceInfo     = 0,
    ActiveModes    = 1,
    ControlValues  = 2,
    Modes          = 3,
    Info           = 4,
    GetValues      = 5,
    SetValues      = 6,
    TriggerValues  = 7,
    Custom         = 8,
    ModeTableIndex = 9
};

constexpr UINT16 CommandCount = 10;

constexpr UINT32 CommandOffset   = 2;
constexpr UINT32 LengthOffset    = 4;
constexpr UINT32 IDOffset        = 6;
constexpr UINT32 RequestIDOffset = 14;

constexpr UINT32 HeaderSize              = 14;  ///< without a request ID; what a service must hold to judge a request
constexpr UINT32 HeaderSizeWithRequestID = 18;

constexpr UINT32 SmallestWithPayload = 19;  ///< a header with a request ID, and a byte

/// In the answer to DeviceInfo.
constexpr UINT32 DeviceVersionOffset = 6;
constexpr UINT32 DeviceIDOffset      = 8;
constexpr UINT32 DevicePayloadOffset = 16;

constexpr bool HasRequestID(UINT16 command)
{
    switch (static_cast<Command>(command))
    {
    case Command::Modes:
    case Command::Info:
    case Command::GetValues:
    case Command::SetValues:
    case Command::Custom:
        return true;
    default:
        return false;
    }
}

/// Of requests and of all answers but that to DeviceInfo.
constexpr UINT32 PayloadOffset(UINT16 command)
{
    return HasRequestID(command) ? HeaderSizeWithRequestID : HeaderSize;
}

}  // namespace vernier
