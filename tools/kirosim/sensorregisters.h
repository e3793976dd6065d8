/// @file
/// The registers of a sensor: what is written acts some frames later, gains and times each after their own.
#pragma once

#include <vector>

#include "host/exposurestaging.h"

namespace kirosim
{

class SensorRegisters
{
public:
    explicit SensorRegisters(const RegisterDelays& rDelays);

    /// All frames up to the next write's show this.
    VOID Begin(const SensorWrite& rWrite);

    /// A write before a frame. @return what acts in the frame
    SensorWrite Write(const SensorWrite& rWrite);

private:
    RegisterDelays           m_delays;
    std::vector<SensorWrite> m_written;  ///< oldest first; as many as the slower register keeps waiting
};

}  // namespace kirosim
