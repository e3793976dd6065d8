// A tuning tool at a camera that runs: what an edit does to the frames behind it, and frames and edits side by side.

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <turbojpeg.h>

#include "host/controlvalues.h"
#include "tests/kirosim/loop.h"
#include "tests/kirosim/simulationrun.h"
#include "tests/parameters/live/livefixture.h"
#include "tests/support/refusal.h"
#include "tools/kirosim/livepicture.h"
#include "tools/liveclient/liveclient.h"
#include "tools/liveclient/picturecommand.h"
#include "tools/tuningfile/inputerror.h"

using namespace kirosim;

namespace
{

constexpr const CHAR* NearSpeed = "data[2].value.trigger1Data[1].trigger2Data[0].trigger3Data[0].triggerData.baseSpeed";
constexpr const CHAR* FarSpeed  = "data[2].value.trigger1Data[2].trigger2Data[0].trigger3Data[0].triggerData.baseSpeed";

/// A camera that can be tuned while it runs a scene of steps.
struct LiveCamera : Loop
{
    LiveCamera() : Loop(SimulationRun::Example("step-loop"), true)
    {
    }

    liveclient::Options Port()
    {
        liveclient::Options options;
        options.port = m_tuning.Manager().GetLiveTuningPort();
        return options;
    }
};

TEST(LiveTuning, AnEditOfASpeedChangesTheFramesToSettle)
{
    LiveCamera          camera;
    std::vector<UINT32> frames;
    camera.Run({3, {}},
               [&](const RunSummary& rRound)
               {
                   const StepResult& rStepUp = rRound.steps.at(rRound.steps.size() - 2);
                   frames.push_back(rStepUp.framesToSettle.value_or(0));
                   const size_t round = frames.size();
                   if (round > 2)
                   {
                       return;
                   }
                   // Down, and back to where it was.
                   liveclient::Client client(camera.Port());
                   const bool         isFirst = round == 1;
                   const auto         set =
                       client.Set("Default", "kirodbconvbase",
                                  {{NearSpeed, isFirst ? "0.1" : "0.625"}, {FarSpeed, isFirst ? "0.1" : "0.59"}});
                   EXPECT_EQ(set.size(), 2U);
                   const std::vector<liveclient::ControlValue> watched = client.ControlValues();
                   ASSERT_FALSE(watched.empty());
                   EXPECT_EQ(watched[0].id, controlvalues::FrameNumber);
                   EXPECT_EQ(watched[0].value, 240.0 * static_cast<DOUBLE>(round));
               });
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_GE(frames[1], 2 * frames[0]);
    EXPECT_EQ(frames[2], frames[0]);
}

TEST(LiveTuning, FramesAndEditsGoOnSideBySide)
{
    LiveCamera        camera;
    std::atomic<bool> isOver = false;
    UINT32            rounds = 0;
    std::thread       tool(
        [&]
        {
            liveclient::Client client(camera.Port());
            while (!isOver || rounds == 0)
            {
                const std::string speed = (rounds % 2 == 0) ? "0.5" : "0.25";
                const auto        set   = client.Set("Default", "kirodbconvbase", {{NearSpeed, speed}});
                ASSERT_EQ(set.size(), 1U);
                EXPECT_EQ(std::stod(set[0].text), std::stod(speed));
                EXPECT_EQ(client.Set("Default", "kiroconvergence", {{"unitStepSize", speed}}).size(), 1U);
                EXPECT_FALSE(client.Info("Default", "kirodbconvbase.data[2]").empty());
                EXPECT_FALSE(client.Get("Default", "kiroconvergence", {}).empty());
                (VOID) client.ActiveModes();
                (VOID) client.ControlValues();
                ++rounds;
            }
        });
    camera.Run({1, {}});
    isOver = true;
    tool.join();
    EXPECT_GT(rounds, 0U);
}

TEST(LiveTuning, ShowsTheFrameBehindTheLastQuestion)
{
    LiveCamera         camera;
    LivePicture        picture(camera.m_tuning.Manager());
    liveclient::Client client(camera.Port());
    const auto         ask = [&client]
    {
        const auto* pRequest = reinterpret_cast<const BYTE*>(liveclient::PictureRequest.data());
        return client.Custom({pRequest, liveclient::PictureRequest.size()});
    };
    const auto runRound = [&]
    {
        camera.m_simulation.Run([&](const FrameRecord& rRecord)
                                { picture.Offer(rRecord.frame, camera.m_simulation.MainCamera()); });
    };
    const BYTE other = 'x';
    EXPECT_FALSE(liveclient::OffersPictures(client.Custom({&other, 1})));
    runRound();  // of which nobody has asked to see anything
    EXPECT_TRUE(liveclient::OffersPictures(ask()));
    EXPECT_FALSE(liveclient::DecodePicture(ask()).has_value());
    runRound();
    const auto shown = liveclient::DecodePicture(ask());
    ASSERT_TRUE(shown.has_value());
    EXPECT_EQ(shown->frame, 241U);  // the first of its round
    int            width  = 0;
    int            height = 0;
    int            form   = 0;
    int            space  = 0;
    const tjhandle reader = tjInitDecompress();
    EXPECT_EQ(0, tjDecompressHeader3(reader, shown->jpeg.data(), shown->jpeg.size(), &width, &height, &form, &space));
    EXPECT_EQ(0, tjDestroy(reader));
    EXPECT_EQ(static_cast<UINT32>(width), GridWidth);
    EXPECT_EQ(static_cast<UINT32>(height), GridHeight);
}

TEST(RegionPicture, ShowsGreyAsGreyAndCutsWhatIsClipped)
{
    RegionView view{};
    view.light = {0.5, 0.25};
    view.level.fill(0.18f);
    view.rg.fill(0.5f);
    view.bg.fill(0.25f);
    view.level[1] = 2.0f;
    view.rg[2]    = 1.0f;  // twice as red as the light, at the same luminance: green is 0.18 / 1.2126
    RegionPixels pixels{};
    DevelopRegions(view, pixels);
    const std::vector<INT> first(pixels.begin(), pixels.begin() + 9);
    EXPECT_EQ(first, (std::vector<INT>{118, 118, 118, 255, 255, 255, 148, 107, 107}));
}

TEST(LiveTuning, IsReachedAtItsAddressAlone)
{
    // Where the camera listens, and where a tool looks for it.
    const std::tuple<const CHAR*, const CHAR*, bool> cases[] = {{LoadedTuning::LiveAddress, "127.0.0.1", true},
                                                                {LoadedTuning::LiveAddress, "127.0.0.2", false},
                                                                {"127.0.0.2", "127.0.0.2", true},
                                                                {"0.0.0.0", "127.0.0.2", true}};
    for (const auto& [pAddress, pHost, isReached] : cases)
    {
        LoadedTuning        tuning(EXAMPLES_DIR "/tunings/minimal.yaml", true, LoadedTuning::Source::Copy, pAddress);
        liveclient::Options options;
        options.host = pHost;
        options.port = tuning.Manager().GetLiveTuningPort();
        std::string name;
        (VOID) RefusalOf([&] { name = liveclient::Client(options).Device().name; });
        EXPECT_EQ(name, isReached ? "kirosim;BinaryTag=minimal" : "") << pAddress << " from " << pHost;
    }
    EXPECT_THROW(LoadedTuning(EXAMPLES_DIR "/tunings/minimal.yaml", true, LoadedTuning::Source::Copy, "localhost"),
                 tuningfile::InputError);
}

/// What a client that never reads goes on sending.
Bytes RequestFor(UINT16 command, const std::string& rText)
{
    Bytes request = Packet(static_cast<UINT32>(vernier::PayloadOffset(command) + rText.size() + 1), command);
    std::copy(rText.begin(), rText.end(), request.end() - 1 - static_cast<std::ptrdiff_t>(rText.size()));
    request.back() = 0;
    return request;
}

TEST(LiveTuning, WhateverAClientLeftTheNextIsServed)
{
    LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml", true);
    const UINT16 port = tuning.Manager().GetLiveTuningPort();

    const Bytes longest = Packet(65534, 5);
    const auto  first   = [&](size_t count) { return Bytes(longest.begin(), longest.begin() + count); };
    const Bytes edit    = RequestFor(6, "Default:kiroconvergence:unitStepSize=0.75");
    struct Case
    {
        const CHAR* pName;
        Bytes       bytes;
        bool        isFlood;
        bool        isReset;  ///< else the client leaves in an orderly way
    };
    const Case cases[] = {
        {"a byte", first(1), false, true},
        {"less than a header", first(13), false, true},
        {"most of a request", first(65500), false, true},
        {"60 bytes too few", first(65534 - 60), false, true},
        {"a header with a length that nothing fills", first(14), false, true},
        {"half a value", Bytes(edit.begin(), edit.end() - 2), false, true},
        {"a refused request", WithLength(Packet(14, 10), 60000), false, true},
        {"a length of zero", WithLength(Packet(14), 0), false, true},
        {"questions", RequestFor(5, "Default:kiroconvergence"), true, true},
        {"requests without an answer", Packet(14, 7), true, false},
        {"edits", edit, true, true},
        {"edits to the end", edit, true, false},
    };
    for (const Case& rCase : cases)
    {
        // A flood leaves megabytes on their way, which a sanitizer works off slowly.
        const liveclient::Options options = {.port = port, .timeout = std::chrono::seconds(rCase.isFlood ? 20 : 2)};
        LiveClient                bad(port);
        if (rCase.isFlood)
        {
            EXPECT_GT(bad.Flood(rCase.bytes, size_t{8} << 20), 1000U) << rCase.pName;
        }
        else
        {
            EXPECT_TRUE(bad.Send(rCase.bytes)) << rCase.pName;
        }
        rCase.isReset ? bad.Reset() : bad.Close();
        EXPECT_NO_THROW({
            liveclient::Client next(options);
            EXPECT_EQ(next.Device().major, 2);
            const auto value = next.Get("Default", "kiroconvergence", {"unitStepSize"});
            ASSERT_EQ(value.size(), 1U);
            EXPECT_EQ(value[0].text, rCase.bytes == edit ? "0.75" : "0.1000000015") << rCase.pName;
        }) << rCase.pName;
    }
}

}  // namespace
