/// @file
/// A camera's live tuning without a camera, and a browser without a window.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include "host/controlvalues.h"
#include "parameters/live/verniercustomhandler.h"
#include "parameters/tuningsetmanager.h"
#include "tests/support/privatenetwork.h"
#include "tests/support/temporaryfile.h"
#include "tools/liveclient/picturecommand.h"
#include "tools/page/httpserver.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/files.h"

namespace pagetest
{

using nlohmann::json;

/// Waits for what other threads do. @return false if it has not come true for so long that it never will
inline bool Await(const std::function<bool()>& rCondition)
{
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!rCondition())
    {
        if (std::chrono::steady_clock::now() > giveUp)
        {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/// Holds the phone's tuning, publishes frame numbers as fast as it is asked, and shows three bytes as its picture.
class ServiceCamera : public IVernierCustomHandler
{
public:
    explicit ServiceCamera(const std::string& rName = "desk camera") : m_manager(rName.c_str())
    {
        static const tuningfile::Tuning tuning = tuningfile::ReadTextFile(EXAMPLES_DIR "/tunings/phone.yaml");
        const std::vector<BYTE>         bytes  = tuningfile::WriteBinary(tuning, tuningfile::NewestVersion);
        m_manager.SetLiveTuningAutostart(true);
        EXPECT_TRUE(m_manager.LoadBinaryParameters(bytes.data(), bytes.size())) << m_manager.GetErrorText();
        m_manager.SetCustomHandler(this);
        m_frames = std::thread([this] { RunFrames(); });
    }

    ~ServiceCamera() override
    {
        m_isStopping = true;
        m_frames.join();
        m_manager.SetCustomHandler(nullptr);
    }

    UINT16 Port() const
    {
        return m_manager.GetLiveTuningPort();
    }

    UINT16 ProcessCustom(const BYTE* pPayload, UINT32 payloadSize, UINT32, BYTE* pOutput, UINT32& rSize) override
    {
        constexpr BYTE Picture[] = {0xFF, 0xD8, 0xFF, 0xD9};
        if (!liveclient::IsPictureRequest({pPayload, payloadSize}))
        {
            return 0;
        }
        liveclient::EncodePictureHeader(m_frame, pOutput);
        std::copy(std::begin(Picture), std::end(Picture), pOutput + liveclient::PictureHeader);
        rSize = liveclient::PictureHeader + sizeof(Picture);
        return liveclient::PictureResult;
    }

    VOID RequestTriggerValues(const CHAR*, const CHAR*, UINT64, const CHAR*) override
    {
    }

private:
    VOID RunFrames()
    {
        PList<ParameterCTValue> values;
        while (!m_isStopping)
        {
            values.Clear();
            values.Add({controlvalues::FrameNumber, static_cast<DOUBLE>(++m_frame)});
            values.Add({controlvalues::LuxIndex, 100.0});
            m_manager.SetControlValues(values);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    TuningSetManager    m_manager;
    std::atomic<bool>   m_isStopping = false;
    std::atomic<UINT64> m_frame      = 0;
    std::thread         m_frames;
};

/// A server, and one browser that asks it.
class ServedPage
{
public:
    explicit ServedPage(UINT16 port, std::shared_ptr<const tuningfile::Tuning> pTuning = nullptr,
                        const std::string& rHost = "127.0.0.1")
        : m_server({rHost, 0}, Options(port, std::move(pTuning))), m_browser("127.0.0.1", m_server.Port())
    {
    }

    /// @return the status in front of the answer's text
    std::string Get(const std::string& rPath)
    {
        return TextOf(m_browser.Get(rPath));
    }

    json GetJson(const std::string& rPath)
    {
        const auto answer = m_browser.Get(rPath);
        return answer ? json::parse(answer->body, nullptr, false) : json();
    }

    std::string Post(const std::string& rPath, const json& rBody, const httplib::Headers& rHeaders = {})
    {
        return TextOf(m_browser.Post(rPath, rHeaders, rBody.dump(), "application/json"));
    }

    /// Sets one number. @return the status and the answer
    std::string Set(const std::string& rPath, const std::string& rValue, const json& rMore = json::object(),
                    const std::string& rClient = "me", const std::string& rModule = "kiroconvergence")
    {
        json body = {{"mode", "Default"}, {"module", rModule}, {"values", {{{"path", rPath}, {"value", rValue}}}}};
        body.update(rMore);
        return Post("/api/set", body, {{"X-Client", rClient}});
    }

    bool IsConnected()
    {
        const json state = GetJson("/api/state");
        return state.contains("camera") && state["camera"].value("connected", false);  // none while a camera goes away
    }

    httplib::Client& Browser()
    {
        return m_browser;
    }

    page::HttpServer& Server()
    {
        return m_server;
    }

private:
    static page::PageOptions Options(UINT16 port, std::shared_ptr<const tuningfile::Tuning> pTuning)
    {
        page::PageOptions options;
        options.camera.port = port;
        options.file        = (pTuning != nullptr) ? pTuning->source : "";
        options.pTuning     = std::move(pTuning);
        return options;
    }

    static std::string TextOf(const httplib::Result& rResult)
    {
        return rResult ? std::to_string(rResult->status) + ' ' + rResult->body : "no answer";
    }

    page::HttpServer m_server;
    httplib::Client  m_browser;
};

/// What a browser hears, until it leaves.
class Listener
{
public:
    Listener(UINT16 port, const std::string& rClient)
        : m_browser("127.0.0.1", port), m_thread(
                                            [this, rClient]
                                            {
                                                (VOID) m_browser.Get("/api/events?client=" + rClient,
                                                                     [this](const CHAR* pBytes, size_t size)
                                                                     {
                                                                         const std::lock_guard lock(m_mutex);
                                                                         m_text.append(pBytes, size);
                                                                         return !m_isLeaving;
                                                                     });
                                                m_isOver = true;
                                            })
    {
    }

    ~Listener()
    {
        m_isLeaving = true;
        m_browser.stop();
        m_thread.join();
    }

    bool Hears(const std::string& rText)
    {
        return Await(
            [&]
            {
                const std::lock_guard lock(m_mutex);
                return m_text.find(rText) != std::string::npos;
            });
    }

    bool IsOver() const
    {
        return m_isOver;
    }

private:
    std::mutex        m_mutex;
    std::string       m_text;
    std::atomic<bool> m_isLeaving = false;
    std::atomic<bool> m_isOver    = false;
    httplib::Client   m_browser;
    std::thread       m_thread;
};

/// Edits are kept in a folder of the test's own.
class PageTest : public testing::Test
{
protected:
    PageTest()
    {
        (VOID) PrivateNetwork::Enter();
        (VOID) setenv("XDG_STATE_HOME", m_state.path.c_str(), 1);
    }

    const TemporaryFile m_state{"state"};
};

}  // namespace pagetest
