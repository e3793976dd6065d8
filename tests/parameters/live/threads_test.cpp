/// The service beside all that hosts do at the same time; of use with the thread sanitizer above all.
#include <atomic>
#include <optional>

#include "parameters/live/parameterctvalue.h"
#include "tests/parameters/live/livefixture.h"
#include "tests/parameters/setmanagerfixture.h"

namespace
{

class LiveThreadsTest : public SetManagerTest
{
protected:
    /// A camera's store with more modes than stay loaded, so that frames load and evict all the time.
    VOID Load()
    {
        TuningFileMaker maker;
        const UINT32    root = maker.Table("main");
        maker.Alpha(root, 1);
        maker.Beta(root, 2);
        for (UINT16 scene = 0; scene < Scenes; ++scene)
        {
            maker.Alpha(maker.Mode(root, ModeType::Scene, scene), 100 + scene);
        }
        Options options             = Verbose(5);
        options.liveTuning          = true;
        options.activeModeCacheSize = 5;
        m_manager.emplace("cam", smallschema::Modules, options);
        ASSERT_TRUE(m_manager->LoadBinaryParameters(Write(maker.Build())));
    }

    /// Fetches and reads as a frame does; a record is given back, so that its mode can be evicted.
    VOID RunFrames()
    {
        INT64  sum   = 0;
        UINT16 scene = 0;
        while (!m_stop)
        {
            const std::lock_guard<std::mutex> lock(m_frameMutex);
            const std::vector<TuningMode>     branch = Branch({{ModeType::Scene, scene}});
            if (smallschema::AlphaType* pRecord = Alpha(*m_manager, branch))
            {
                // As a frame looks for an edit: the count first, then what it counts.
                sum += std::atomic_ref(pRecord->SymbolTableID).load(std::memory_order_acquire);
                sum += pRecord->value;
                TableModule::FromRecord(pRecord)->Release();
            }
            m_manager->SetControlValue({scene, static_cast<DOUBLE>(sum)});
            scene = static_cast<UINT16>((scene + 1) % Scenes);
        }
    }

    /// Asks for all there is, edits, and leaves, again and again.
    VOID RunClient(UINT32 rounds)
    {
        for (UINT32 round = 0; round < rounds && !m_stop; ++round)
        {
            LiveClient        client(m_manager->GetLiveTuningPort());
            const std::string path = "Default|Scene." + std::to_string(round % Scenes) + ":alpha";
            for (const Bytes& rRequest :
                 {Request(0), Request(1), Request(2), Request(3, Text("Default")), Request(4, Text(path)),
                  Request(5, Text(path)), Request(6, Text(path + ":value=" + std::to_string(round))),
                  Request(9, Text("0"))})
            {
                client.Send(rRequest);
                m_answers += client.ReceivePacket().empty() ? 0 : 1;
            }
            client.Reset();
        }
    }

    static constexpr UINT16            Scenes = 12;
    std::optional<ParameterSetManager> m_manager;
    std::mutex                         m_frameMutex;  ///< a host neither reloads nor unloads while a frame fetches
    std::atomic<bool>                  m_stop    = false;
    std::atomic<UINT32>                m_answers = 0;
};

TEST_F(LiveThreadsTest, FramesEditsReloadsAndUnloadsGoOnTogether)
{
    constexpr UINT32 rounds = 20;

    Load();
    std::thread frames([this] { RunFrames(); });
    std::thread host(
        [this]
        {
            for (UINT16 turn = 0; !m_stop; ++turn)
            {
                const std::lock_guard<std::mutex> lock(m_frameMutex);
                const std::vector<TuningMode> branch = Branch({{ModeType::Scene, static_cast<UINT16>(turn % Scenes)}});
                EXPECT_TRUE(turn % 3 == 0 ? m_manager->ReloadBinaryParameters(false)
                                          : m_manager->UnloadMode(0, branch.data(), 2));
                (VOID) m_manager->SetTriggerValues("a", "b", "c", "d", nullptr, 0);
            }
        });
    RunClient(rounds);
    m_stop = true;
    frames.join();
    host.join();
    EXPECT_EQ(m_answers, rounds * 8) << "every request has its answer";
}

TEST_F(LiveThreadsTest, TheStoreGoesWhileAClientIsBeingServed)
{
    for (INT turn = 0; turn < 4; ++turn)
    {
        m_stop = false;
        Load();
        const UINT16 port = m_manager->GetLiveTuningPort();
        std::thread  client(
            [&]
            {
                LiveClient socket(port);
                while (!m_stop && socket.Send(Request(5, Text("Default|Scene.Snow:alpha"))) &&
                       !socket.ReceivePacket().empty())
                {
                    ++m_answers;
                }
            });
        EXPECT_TRUE(WaitFor([&] { return m_answers > 0; }));
        m_manager.reset();
        m_stop = true;
        client.join();
        m_answers = 0;
    }
}

TEST_F(LiveThreadsTest, SeveralStoresLoadAndGoAtTheSameTime)
{
    std::vector<std::jthread> cameras;
    Load();
    for (INT camera = 0; camera < 3; ++camera)
    {
        cameras.emplace_back(
            [this]
            {
                for (INT turn = 0; turn < 3; ++turn)
                {
                    Options options;
                    options.liveTuning = true;
                    ParameterSetManager manager(nullptr, smallschema::Modules, options);
                    EXPECT_TRUE(manager.LoadBinaryParameters(m_path.c_str()));
                    EXPECT_NE(manager.GetLiveTuningPort(), 0);
                }
            });
    }
    cameras.clear();  // joins them
}

}  // namespace
