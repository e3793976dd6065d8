#include "bench/livebench.h"

#include <atomic>
#include <chrono>
#include <fmt/format.h>
#include <optional>
#include <stdexcept>
#include <thread>

#include "bench/clock.h"
#include "bench/framerig.h"
#include "host/controlvalues.h"
#include "tools/liveclient/liveclient.h"

namespace
{

constexpr auto   AskInterval    = std::chrono::milliseconds(2);  ///< 500 values per second
constexpr UINT32 AskedInTurn    = 250;                           ///< short against the moods of a machine
constexpr UINT32 TurnsPerSecond = 2;
constexpr UINT32 LostToGiveUp   = 5;  ///< what is asked afterwards counts as lost, without a wait for each

constexpr DOUBLE AnswerTimeBarNs = 1e6;
constexpr DOUBLE FrameRatioBar   = 1.05;

/// What the heavy tuning says; all differ, so that an answer to another question shows.
struct Question
{
    const CHAR* pModule;
    const CHAR* pMember;
    const CHAR* pAnswer;
};

constexpr Question Questions[] = {
    {"kirometeringstatscalculator.averageStatsCalculator", "description", "Average"},
    {"kirometeringstatscalculator.centerWeightedStatsCalculator", "description", "Centre"},
    {"kirometeringstatscalculator.darkRatioStatsCalculator", "calculatorID", "3"},
    {"kirometeringstatscalculator.brightRatioStatsCalculator", "description", "Bright"},
    {"kiroconvergence", "moduleID", "2"},
    {"kiroconvergence", "unitStepSize", "0.1000000015"},  // the float next to 0.1
    {"kiroconvergence.smoothADRC.nodes[0]", "maxNodeDRCGain", "4.0"},
    {"kirodbroi.data[0]", "dataID", "30"},
};

/// A tuning tool that asks for one value after the other and knows the answers.
class Asker
{
public:
    explicit Asker(UINT16 port) : m_port(port)
    {
        Connect();
    }

    /// Asks at fixed times from now on; what is late is asked at once.
    VOID Ask(UINT32 count)
    {
        const auto begin = Clock::now();
        for (UINT32 index = 0; index < count; ++index)
        {
            std::this_thread::sleep_until(begin + AskInterval * (index + 1));
            const Question& rQuestion = Questions[m_asked++ % std::size(Questions)];
            if (m_lost >= LostToGiveUp || !AskOne(rQuestion))
            {
                ++m_lost;
            }
        }
        m_seconds += NsSince(begin) / 1e9;
    }

    VOID AddResults(std::vector<BenchResult>& rResults)
    {
        rResults.push_back({"live/values_asked_for", "count", static_cast<DOUBLE>(m_asked), {}});
        rResults.push_back({"live/values_asked_for_rate", "per second", static_cast<DOUBLE>(m_asked) / m_seconds, {}});
        rResults.push_back({"live/wrong_answers", "count", static_cast<DOUBLE>(m_wrong), 0.0});
        rResults.push_back({"live/lost_requests", "count", static_cast<DOUBLE>(m_lost), 0.0});
        if (!m_answerNs.empty())
        {
            rResults.push_back({"live/answer_time", "ns", PercentileOf(m_answerNs, 0.5), AnswerTimeBarNs});
            rResults.push_back({"live/answer_time_p99", "ns", PercentileOf(m_answerNs, 0.99), {}});
        }
    }

private:
    VOID Connect()
    {
        m_client.emplace(liveclient::Options{.port = m_port});
    }

    /// @return false if no answer came
    bool AskOne(const Question& rQuestion)
    {
        try
        {
            if (!m_client)
            {
                Connect();
            }
            const auto start  = Clock::now();
            const auto values = m_client->Get("Default|Usecase.Video", rQuestion.pModule, {rQuestion.pMember});
            m_answerNs.push_back(NsSince(start));
            const bool isRight =
                values.size() == 1 && values[0].name == rQuestion.pMember && values[0].text == rQuestion.pAnswer;
            m_wrong += isRight ? 0U : 1U;
            return true;
        }
        catch (const liveclient::Error&)
        {
            m_client.reset();
            return false;
        }
    }

    const UINT16                      m_port;
    std::optional<liveclient::Client> m_client;
    std::vector<DOUBLE>               m_answerNs;
    UINT64                            m_asked   = 0;
    UINT64                            m_wrong   = 0;
    UINT64                            m_lost    = 0;
    DOUBLE                            m_seconds = 0.0;
};

/// A camera that runs as fast as it can and publishes its numbers.
class LiveCamera
{
public:
    LiveCamera() : m_frame(false, true), m_publisher(m_frame.Rig().Manager())
    {
    }

    UINT16 Port()
    {
        return m_frame.Rig().Manager().GetLiveTuningPort();
    }

    /// @param isOver asked after each frame @return the time of each frame in ns
    template <typename Condition> std::vector<DOUBLE> RunUntil(const Condition& isOver)
    {
        std::vector<DOUBLE> frameNs;
        do
        {
            const auto start = Clock::now();
            m_frame.Run();
            m_publisher.Publish(++m_frameID, m_frame.Rig().Host().LastFrame(), std::nullopt);
            frameNs.push_back(NsSince(start));
        } while (!isOver());
        return frameNs;
    }

private:
    HeavyFrame               m_frame;
    controlvalues::Publisher m_publisher;
    UINT64                   m_frameID = 0;
};

/// Frames while a client asks for as many values as a turn has.
std::vector<DOUBLE> RunAskedTurn(LiveCamera& rCamera, Asker& rAsker)
{
    std::atomic<bool> isDone{false};
    std::jthread      thread(
        [&]
        {
            rAsker.Ask(AskedInTurn);
            isDone = true;
        });
    return rCamera.RunUntil([&isDone] { return isDone.load(); });
}

}  // namespace

std::vector<BenchResult> MeasureLiveTuning(UINT32 seconds, program::Progress& rProgress)
{
    LiveCamera camera;
    if (camera.Port() == 0)
    {
        throw std::runtime_error("live tuning is not served: no port is free");
    }
    Asker               asker(camera.Port());
    std::vector<DOUBLE> without;
    std::vector<DOUBLE> with;
    std::vector<DOUBLE> ratios;
    for (UINT32 turn = 0; turn < seconds * TurnsPerSecond; ++turn)
    {
        rProgress.Show(fmt::format("frames beside a tuning tool, turn {} of {}", turn + 1, seconds * TurnsPerSecond));
        const auto          end     = Clock::now() + AskInterval * AskedInTurn;
        std::vector<DOUBLE> resting = camera.RunUntil([end] { return Clock::now() >= end; });
        std::vector<DOUBLE> asking  = RunAskedTurn(camera, asker);
        without.push_back(PercentileOf(resting, 0.5));
        with.push_back(PercentileOf(asking, 0.5));
        ratios.push_back(with.back() / without.back());
    }
    std::vector<BenchResult> results = {{"live/frame_without_client", "ns", PercentileOf(without, 0.5), {}},
                                        {"live/frame_with_client", "ns", PercentileOf(with, 0.5), {}},
                                        {"live/frame_ratio", "ratio", PercentileOf(ratios, 0.5), FrameRatioBar}};
    asker.AddResults(results);
    return results;
}
