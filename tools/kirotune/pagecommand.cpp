#include "tools/kirotune/pagecommand.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include <fmt/format.h>

#include "tools/kirotune/livecamera.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/kirotune/stopsignals.h"
#include "tools/page/address.h"
#include "tools/page/httpserver.h"

namespace kirotune
{

namespace
{

struct PageArguments
{
    std::string camera = fmt::format("127.0.0.1:{}", vernier::DefaultPort);
    std::string listen = "127.0.0.1:8080";
    std::string tuning;
};

std::string AddressFault(const std::string& rText)
{
    page::Address address;
    return page::ParseAddress(rText, address) ? "" : "expected HOST:PORT, such as 127.0.0.1:8080";
}

/// Serves until a signal asks to stop.
int ServePage(const PageArguments& rArguments)
{
    page::Address     camera;
    page::Address     listen;
    page::PageOptions options;
    (VOID) page::ParseAddress(rArguments.camera, camera);  // both have been checked
    (VOID) page::ParseAddress(rArguments.listen, listen);
    options.camera.host = camera.host;
    options.camera.port = camera.port;
    options.file        = rArguments.tuning;
    if (!rArguments.tuning.empty())
    {
        options.pTuning = std::make_shared<const tuningfile::Tuning>(ReadTuning(rArguments.tuning));
    }
    options.tell = [](const std::string& rLine) { fmt::print(stderr, "{}\n", Clean(rLine)); };
    const StopSignals      signals;  // before there are threads, which would take them
    const page::HttpServer server(listen, options);
    fmt::print("waiting for the camera at {}, to show it at {}\n", rArguments.camera, server.Url());
    (VOID) std::fflush(stdout);
    while (!signals.CameUntil(std::chrono::steady_clock::now() + std::chrono::hours(1)))
    {
    }
    return 0;
}

}  // namespace

VOID AddPageCommand(CLI::App& rApp, std::function<int()>& rRun)
{
    const auto pArguments = std::make_shared<PageArguments>();
    CLI::App*  pPage      = rApp.add_subcommand("page", "show a running camera in a browser, and tune it there");
    pPage->add_option("--camera", pArguments->camera, "host and port of its live tuning")
        ->check(AddressFault)
        ->capture_default_str();
    pPage
        ->add_option("--listen", pArguments->listen,
                     "address and port of the page; whoever can reach it can tune the camera, so that others than this "
                     "machine need the token that is printed")
        ->check(AddressFault)
        ->capture_default_str();
    pPage
        ->add_option("--file", pArguments->tuning,
                     "text tuning (.yaml) or parameter file that the camera was given, to compare with it")
        ->check(program::FileName);
    pPage->callback([pArguments, &rRun] { rRun = [pArguments] { return ServePage(*pArguments); }; });
}

}  // namespace kirotune
