// What browsers are told without asking.

#include <deque>

#include <gmock/gmock.h>

#include "tests/tools/page/pagecamera.h"
#include "tools/page/eventhub.h"

namespace
{

using namespace pagetest;
using testing::HasSubstr;
using testing::StartsWith;

class PageStreams : public PageTest
{
};

TEST_F(PageStreams, TenBrowsersSeeValuesPicturesAndEditsOfOneAnother)
{
    ServiceCamera        camera;
    ServedPage           served(camera.Port());
    std::deque<Listener> listeners;
    for (int browser = 0; browser < 10; ++browser)
    {
        listeners.emplace_back(served.Server().Port(), "b" + std::to_string(browser));
    }
    for (Listener& rListener : listeners)
    {
        EXPECT_TRUE(rListener.Hears("event: values\ndata: [{\"t\":"));
        EXPECT_TRUE(rListener.Hears("event: picture\ndata: {\"frame\":"));
    }
    const auto picture = served.Browser().Get("/api/picture");
    ASSERT_TRUE(picture);
    EXPECT_EQ("image/jpeg", picture->get_header_value("Content-Type"));
    EXPECT_GT(std::stoul(picture->get_header_value("X-Frame")), 0U);
    EXPECT_EQ("\xFF\xD8\xFF\xD9", picture->body);

    EXPECT_THAT(served.Set("unitStepSize", "0.5", json::object(), "b3"), StartsWith("200 "));
    for (int browser = 0; browser < 10; ++browser)
    {
        EXPECT_TRUE(listeners[browser].Hears(browser == 3 ? "\"by\":\"this\"" : "\"by\":\"other\"")) << browser;
        EXPECT_TRUE(listeners[browser].Hears("\"path\":\"unitStepSize\",\"value\":\"0.5\"")) << browser;
    }
}

TEST_F(PageStreams, ALostCameraIsToldAndFoundAgain)
{
    auto         pCamera = std::make_unique<ServiceCamera>();
    const UINT16 port    = pCamera->Port();
    ServedPage   served(port);
    Listener     listener(served.Server().Port(), "me");
    ASSERT_TRUE(listener.Hears("event: values"));
    EXPECT_THAT(served.Set("unitStepSize", "0.5"), StartsWith("200 "));

    pCamera.reset();
    EXPECT_TRUE(listener.Hears("\"connected\":false"));
    EXPECT_THAT(served.Set("unitStepSize", "0.6"), StartsWith("503 "));
    EXPECT_THAT(served.Get("/api/picture"), StartsWith("404 "));

    // Started anew, it holds nothing that was set, and there is nothing to take back.
    pCamera = std::make_unique<ServiceCamera>("another camera");
    if (pCamera->Port() != port)
    {
        GTEST_SKIP() << "somebody has taken the port";
    }
    EXPECT_TRUE(listener.Hears("another camera"));
    EXPECT_TRUE(Await([&] { return served.IsConnected(); }));
    EXPECT_THAT(served.Post("/api/undo", json::object()), StartsWith("409 "));
    EXPECT_TRUE(served.GetJson("/api/changes")["changes"].empty());
}

TEST_F(PageStreams, EndWithTheServer)
{
    ServiceCamera             camera;
    auto                      pServed = std::make_unique<ServedPage>(camera.Port());
    std::unique_ptr<Listener> pListener(new Listener(pServed->Server().Port(), "me"));
    EXPECT_TRUE(pListener->Hears("event: values"));
    pServed.reset();
    EXPECT_TRUE(Await([&] { return pListener->IsOver(); }));
}

TEST(EventHub, ASlowBrowserLosesSamplesAndHoldsNobodyUp)
{
    page::EventHub hub;
    const auto     pSlow = hub.Open("slow");
    for (size_t sample = 0; sample < 10 * page::EventStream::MaxSamples; ++sample)
    {
        hub.PublishSample(std::to_string(sample));
    }
    std::string text;
    ASSERT_TRUE(pSlow->Take(std::chrono::milliseconds(0), text));
    EXPECT_THAT(text, StartsWith("event: values\ndata: [1152,1153,"));
    EXPECT_THAT(text, HasSubstr(",1279]\n\n"));
    ASSERT_TRUE(pSlow->Take(std::chrono::milliseconds(0), text));
    EXPECT_EQ("", text);

    // Edits are not lost: it has to connect anew.
    for (size_t edit = 0; edit <= page::EventStream::MaxEvents; ++edit)
    {
        hub.Publish("edit", "{}");
    }
    EXPECT_FALSE(pSlow->Take(std::chrono::milliseconds(0), text));
    EXPECT_FALSE(hub.IsListenedTo());
}

TEST(EventHub, TakesSoManyBrowsersAndNoMore)
{
    page::EventHub                                  hub;
    std::vector<std::shared_ptr<page::EventStream>> streams;
    for (size_t browser = 0; browser < page::EventHub::MaxStreams; ++browser)
    {
        streams.push_back(hub.Open(""));
        ASSERT_NE(nullptr, streams.back());
    }
    EXPECT_EQ(nullptr, hub.Open(""));
    streams.pop_back();
    EXPECT_NE(nullptr, hub.Open(""));
    hub.Close();
    EXPECT_EQ(nullptr, hub.Open(""));
}

}  // namespace
