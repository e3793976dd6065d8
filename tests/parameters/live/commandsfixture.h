/// @file
/// A store under live tuning, and a tool that asks it, byte for byte.
#pragma once

#include <algorithm>
#include <atomic>
#include <optional>
#include <string>

#include "parameters/live/verniercustomhandler.h"
#include "tests/parameters/live/livefixture.h"
#include "tests/parameters/setmanagerfixture.h"
#include "tests/support/temporaryfile.h"

inline std::string PayloadOf(const Bytes& rAnswer, size_t offset)
{
    const std::string all(rAnswer.begin(), rAnswer.end());
    return (all.size() > offset) ? std::string(all.c_str() + offset) : "no payload";
}

class TestHandler : public IVernierCustomHandler
{
public:
    UINT16 ProcessCustom(const BYTE* pPayload, UINT32 payloadSize, UINT32 capacity, BYTE* pOutput,
                         UINT32& rOutputSize) override
    {
        received.assign(pPayload, pPayload + payloadSize);
        room = capacity;
        std::copy(output.begin(), output.end(), pOutput);
        rOutputSize = static_cast<UINT32>(output.size());
        return 0xBEEF;
    }

    VOID RequestTriggerValues(const CHAR* pModePath, const CHAR* pModule, UINT64 moduleNameHash,
                              const CHAR* pPipeline) override
    {
        isHashRight = moduleNameHash == namehash::OfName("alpha");
        texts       = std::string(pModePath) + "/" + pModule + "/" + pPipeline;
        ++requests;
    }

    Bytes            received;
    Bytes            output;
    UINT32           room        = 0;
    bool             isHashRight = false;
    std::string      texts;
    std::atomic<INT> requests = 0;
};

class LiveCommandsTest : public LiveTest
{
protected:
    /// Default with alpha 1, below it Video with alpha 20, Preview with beta 5, and sensor 3.
    static ParameterFile File(bool isTwoTables)
    {
        TuningFileMaker maker;
        const UINT32    root    = maker.Table("main");
        const UINT32    video   = maker.Mode(root, ModeType::Usecase, 2);
        const UINT32    preview = maker.Mode(root, ModeType::Usecase, 0);
        maker.Mode(root, ModeType::Sensor, 3);
        maker.Alpha(root, 1);
        maker.Alpha(video, 20);
        maker.Beta(preview, 5);
        if (isTwoTables)
        {
            maker.Alpha(maker.Table("second"), 300);
        }
        return maker.Build();
    }

    VOID Load(bool isTwoTables = false)
    {
        ParameterSetManager::Options options;
        options.liveTuning = true;
        options.logDebug   = true;
        m_manager.emplace("cam", smallschema::Modules, options);
        File(isTwoTables).WriteTo(m_file.path);
        ASSERT_TRUE(m_manager->LoadBinaryParameters(m_file.path.c_str()));
        m_client.emplace(m_manager->GetLiveTuningPort());
    }

    ~LiveCommandsTest() override
    {
        m_client.reset();
        m_manager.reset();
    }

    UINT64 ID() const
    {
        return reinterpret_cast<UINT64>(static_cast<const IParameterDataAPI*>(&*m_manager));
    }

    Bytes Ask(const Bytes& rRequest)
    {
        EXPECT_TRUE(m_client->Send(rRequest));
        return m_client->ReceivePacket();
    }

    /// What a command with texts answers; the header is checked on the way.
    std::string AskText(UINT16 command, const std::string& rPayload = "")
    {
        const UINT64      id     = vernier::HasRequestID(command) ? 0x1122334455667788 : ID();
        const Bytes       answer = Ask(Request(command, Text(rPayload), id));
        const std::string text   = PayloadOf(answer, vernier::PayloadOffset(command));
        EXPECT_EQ(answer, Request(command, Text(text), id));
        return text;
    }

    /// The service's lines follow its answers.
    bool IsLogged(const std::string& rText)
    {
        return WaitFor([&] { return m_log.Has(rText); });
    }

    const TemporaryFile m_file{std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + ".bin"};
    SystemLogCapture    m_log;
    std::optional<ParameterSetManager> m_manager;
    std::optional<LiveClient>          m_client;
};
