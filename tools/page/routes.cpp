#include "tools/page/routes.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include <httplib.h>

#include "tools/page/page.h"
#include "tools/page/pagejson.h"
#include "tools/page/webfiles.h"

namespace page
{

namespace
{

using httplib::Request;
using httplib::Response;

constexpr const CHAR* JsonType = "application/json";

/// A stream on which nothing happens tells that it is alive.
constexpr std::chrono::seconds StreamPeriod{10};

/// Names of browsers are cut.
constexpr size_t MaxClient = 64;

constexpr const CHAR* ContentPolicy = "default-src 'none'; script-src 'self'; style-src 'self' 'unsafe-inline'; "
                                      "img-src 'self' blob:; connect-src 'self'; "
                                      "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

VOID Fail(Response& rResponse, int status, const std::string& rError, bool isGuard = false)
{
    rResponse.status = status;
    rResponse.set_content(ErrorJson(rError, isGuard), JsonType);
}

/// Answers with what a piece of work returns, or with why it could not.
/// @param refusal status for what the camera refuses
VOID Answer(Response& rResponse, const std::function<std::string()>& rWork, int refusal = 400)
{
    try
    {
        rResponse.set_content(rWork(), JsonType);
    }
    catch (const SenselessError& rError)
    {
        Fail(rResponse, 409, rError.what(), true);
    }
    catch (const NothingLeftError& rError)
    {
        Fail(rResponse, 409, rError.what());
    }
    catch (const TooManyEditsError& rError)
    {
        Fail(rResponse, 429, rError.what());
    }
    catch (const std::invalid_argument& rError)
    {
        Fail(rResponse, 400, rError.what());
    }
    catch (const NoCameraError& rError)
    {
        Fail(rResponse, 503, rError.what());
    }
    catch (const liveclient::Error& rError)
    {
        Fail(rResponse, refusal, rError.what());
    }
    catch (const std::exception& rError)
    {
        Fail(rResponse, 500, rError.what());
    }
}

std::vector<std::string> HeaderValues(const Request& rRequest, const CHAR* pName)
{
    std::vector<std::string> values;
    const auto               range = rRequest.headers.equal_range(pName);
    std::transform(range.first, range.second, std::back_inserter(values),
                   [](const auto& rHeader) { return rHeader.second; });
    return values;
}

RequestFacts FactsOf(const Request& rRequest)
{
    RequestFacts facts{rRequest.method, rRequest.path};
    facts.hosts         = HeaderValues(rRequest, "Host");
    facts.origins       = HeaderValues(rRequest, "Origin");
    facts.contentTypes  = HeaderValues(rRequest, "Content-Type");
    facts.lengths       = HeaderValues(rRequest, "Content-Length");
    facts.isEncoded     = rRequest.has_header("Content-Encoding") || rRequest.has_header("Transfer-Encoding");
    facts.asksForRanges = rRequest.has_header("Range");
    facts.token         = rRequest.get_param_value("token");
    return facts;
}

std::string ClientOf(const Request& rRequest)
{
    return rRequest.get_header_value("X-Client").substr(0, MaxClient);
}

std::string_view TypeOf(std::string_view name)
{
    if (name.ends_with(".html"))
    {
        return "text/html; charset=utf-8";
    }
    if (name.ends_with(".css"))
    {
        return "text/css; charset=utf-8";
    }
    return name.ends_with(".svg") ? "image/svg+xml" : "text/javascript; charset=utf-8";
}

VOID AnswerFile(const std::string& rPath, Response& rResponse)
{
    const std::string          name  = (rPath == "/") ? "index.html" : rPath.substr(1);
    const webfile::File* const pFile = webfile::Find(webfile::PageFiles, name);
    if (pFile == nullptr)
    {
        Fail(rResponse, 404, "nothing of that name");
        return;
    }
    rResponse.set_content(pFile->content.data(), pFile->content.size(), std::string(TypeOf(name)));
}

VOID AnswerPicture(const Page& rPage, Response& rResponse)
{
    const std::optional<liveclient::Picture> picture = rPage.Picture();
    if (!picture.has_value())
    {
        Fail(rResponse, 404, "no picture");
        return;
    }
    rResponse.set_header("X-Frame", std::to_string(picture->frame));
    rResponse.set_content(reinterpret_cast<const CHAR*>(picture->jpeg.data()), picture->jpeg.size(), "image/jpeg");
}

VOID AnswerPatch(const std::function<std::string()>& rMake, Response& rResponse)
{
    std::string patch;
    Answer(rResponse,
           [&]
           {
               patch = rMake();
               return patch;
           });
    if (rResponse.status >= 400)
    {
        return;
    }
    if (patch.empty())
    {
        Fail(rResponse, 404, "nothing to save: nothing differs from the start");
        return;
    }
    rResponse.set_content(patch, "text/yaml; charset=utf-8");
    rResponse.set_header("Content-Disposition", "attachment; filename=\"patch.yaml\"");
}

/// Holds the connection and its thread until the browser leaves, or until the hub closes.
VOID AnswerEvents(Page& rPage, const Request& rRequest, Response& rResponse)
{
    const auto pStream = rPage.Events().Open(rRequest.get_param_value("client").substr(0, MaxClient));
    if (pStream == nullptr)
    {
        Fail(rResponse, 503, "too many browsers listen");
        return;
    }
    rResponse.set_chunked_content_provider(
        "text/event-stream",
        [pStream](size_t offset, httplib::DataSink& rSink)
        {
            std::string text;
            // The first bytes let the browser know that it is connected.
            const bool isOpen = offset == 0 || pStream->Take(StreamPeriod, text);
            text              = text.empty() ? ":\n\n" : text;
            return isOpen && rSink.is_writable() && rSink.write(text.data(), text.size());
        },
        [pStream](bool) { pStream->Close(); });
}

VOID AnswerGet(Page& rPage, const Request& rRequest, Response& rResponse)
{
    const std::string& rPath = rRequest.path;
    if (rPath == "/api/state")
    {
        Answer(rResponse, [&] { return rPage.State(); });
    }
    else if (rPath == "/api/module")
    {
        Answer(
            rResponse,
            [&] { return rPage.Module(rRequest.get_param_value("mode"), rRequest.get_param_value("module")); }, 404);
    }
    else if (rPath == "/api/changes")
    {
        Answer(rResponse, [&] { return rPage.Changes(); });
    }
    else if (rPath == "/api/patch")
    {
        AnswerPatch([&rPage] { return rPage.Patch(); }, rResponse);
    }
    else if (rPath == "/api/lost")
    {
        AnswerPatch([&rPage] { return rPage.LostPatch(); }, rResponse);
    }
    else if (rPath == "/api/picture")
    {
        AnswerPicture(rPage, rResponse);
    }
    else if (rPath == "/api/events")
    {
        AnswerEvents(rPage, rRequest, rResponse);
    }
    else
    {
        AnswerFile(rPath, rResponse);
    }
}

}  // namespace

VOID AddRoutes(httplib::Server& rServer, Page& rPage, const GuardRules& rRules)
{
    rServer.set_default_headers({{"Content-Security-Policy", ContentPolicy},
                                 {"X-Content-Type-Options", "nosniff"},
                                 {"Referrer-Policy", "no-referrer"},
                                 {"Cross-Origin-Resource-Policy", "same-origin"},
                                 {"Cache-Control", "no-store"}});
    // Before any body is read. Paths are compared here: the library matches them by regular expressions, which take a
    // stack that grows with the path.
    rServer.set_pre_routing_handler(
        [&rPage, rRules](const Request& rRequest, Response& rResponse)
        {
            const std::optional<Refusal> refusal = RefusalOf(rRules, FactsOf(rRequest));
            if (refusal.has_value())
            {
                Fail(rResponse, refusal->status, refusal->error);
                return httplib::Server::HandlerResponse::Handled;
            }
            if (rRequest.method == "POST")
            {
                return httplib::Server::HandlerResponse::Unhandled;
            }
            AnswerGet(rPage, rRequest, rResponse);
            return httplib::Server::HandlerResponse::Handled;
        });
    rServer.Post("/api/set", [&rPage](const Request& rRequest, Response& rResponse)
                 { Answer(rResponse, [&] { return rPage.Set(rRequest.body, ClientOf(rRequest)); }); });
    rServer.Post("/api/reset", [&rPage](const Request& rRequest, Response& rResponse)
                 { Answer(rResponse, [&] { return rPage.Reset(rRequest.body, ClientOf(rRequest)); }); });
    rServer.Post("/api/undo", [&rPage](const Request& rRequest, Response& rResponse)
                 { Answer(rResponse, [&] { return rPage.Undo(ClientOf(rRequest)); }); });
    rServer.Post("/api/redo", [&rPage](const Request& rRequest, Response& rResponse)
                 { Answer(rResponse, [&] { return rPage.Redo(ClientOf(rRequest)); }); });
    rServer.Post("/api/again", [&rPage](const Request& rRequest, Response& rResponse)
                 { Answer(rResponse, [&] { return rPage.SetLostAgain(ClientOf(rRequest)); }); });
    rServer.Post("/api/forget", [&rPage](const Request&, Response& rResponse)
                 { Answer(rResponse, [&] { return rPage.ForgetLost(); }); });
    rServer.set_error_handler(
        [](const Request&, Response& rResponse)
        {
            if (rResponse.body.empty())
            {
                Fail(rResponse, rResponse.status, "not served");
            }
        });
}

}  // namespace page
