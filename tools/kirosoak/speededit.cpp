#include "tools/kirosoak/speededit.h"

#include <algorithm>

#include <fmt/format.h>

namespace kirosoak
{

namespace
{

constexpr const CHAR* Module = "kirodbconvbase";

/// Places where a tuning may have speeds: what is moved of the way that is left, and at most of what the picture is
/// off.
constexpr UINT32 EntriesMax  = 4;
constexpr UINT32 TriggersMax = 8;

/// The service answers within a frame or two; a busy machine may let it wait.
constexpr std::chrono::milliseconds Patience{30000};

}  // namespace

SpeedEdit::SpeedEdit(UINT16 port)
{
    m_options.port    = port;
    m_options.timeout = Patience;
}

size_t SpeedEdit::Make(const std::string& rModePath)
{
    m_path = rModePath;
    m_before.clear();
    liveclient::Client             client(m_options);
    std::vector<liveclient::Value> halves;
    for (UINT32 place = 0; place < EntriesMax * TriggersMax; ++place)
    {
        const std::string speeds =
            fmt::format("data[{}].value.trigger1Data[{}].trigger2Data[0].trigger3Data[0].triggerData.",
                        place / TriggersMax, place % TriggersMax);
        for (const liveclient::Value& rValue :
             client.Get(m_path, Module, {speeds + "baseSpeed", speeds + "baseCapping"}))
        {
            m_before.push_back(rValue);
            halves.push_back({rValue.name, fmt::format("{}", std::stod(rValue.text) / 2.0)});
        }
    }
    return client.Set(m_path, Module, halves).size();
}

bool SpeedEdit::Undo()
{
    liveclient::Client client(m_options);
    const auto         now    = client.Set(m_path, Module, m_before);
    const auto         isSame = [](const liveclient::Value& rOne, const liveclient::Value& rOther)
    { return rOne.name == rOther.name && rOne.text == rOther.text; };
    return std::equal(now.begin(), now.end(), m_before.begin(), m_before.end(), isSame);
}

}  // namespace kirosoak
