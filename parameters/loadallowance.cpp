#include "parameters/loadallowance.h"

#include "parameters/parameterlogging.h"

namespace
{

constexpr UINT64 BaseLimit    = 4ULL * 1024 * 1024;
constexpr UINT64 LimitPerByte = 32;

}  // namespace

LoadAllowance::LoadAllowance(UINT64 fileLength, const IParameterLoggingAPI* pLog)
    : m_fileLength(fileLength), m_limit(BaseLimit + LimitPerByte * fileLength), m_pLog(pLog)
{
}

bool LoadAllowance::Charge(UINT64 bytes)
{
    const bool wasLeft = m_charged <= m_limit;
    m_charged += bytes;
    if (wasLeft && m_charged > m_limit)
    {
        ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                "Records need more than %llu bytes of work to load from a file of %llu bytes, the rest "
                                "will be 0\n",
                                m_limit, m_fileLength);
    }
    return m_charged <= m_limit;
}
