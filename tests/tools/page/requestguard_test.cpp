// Which requests reach a camera: those of the server's own page, and no others.

#include <gtest/gtest.h>

#include "tools/page/requestguard.h"

namespace
{

using namespace page;

constexpr const CHAR* Token = "00112233445566778899aabbccddeeff";

const GuardRules Desk    = {{"127.0.0.1", 8080}, "desk", ""};
const GuardRules Network = {{"0.0.0.0", 8080}, "desk", Token};

RequestFacts Get(const std::string& rHost, const std::string& rPath = "/api/state")
{
    RequestFacts facts{"GET", rPath};
    facts.hosts = {rHost};
    return facts;
}

RequestFacts Post(const std::string& rHost = "127.0.0.1:8080")
{
    RequestFacts facts{"POST", "/api/set"};
    facts.hosts        = {rHost};
    facts.contentTypes = {"application/json"};
    facts.lengths      = {"2"};
    return facts;
}

/// @return the status of a refusal, 200 for none
int StatusOf(const GuardRules& rRules, const RequestFacts& rFacts)
{
    const auto refusal = RefusalOf(rRules, rFacts);
    return refusal.has_value() ? refusal->status : 200;
}

TEST(RequestGuard, ServesUnderItsOwnNamesOnly)
{
    for (const CHAR* pHost : {"127.0.0.1:8080", "localhost:8080", "LocalHost:8080", "[::1]:8080"})
    {
        EXPECT_EQ(200, StatusOf(Desk, Get(pHost))) << pHost;
    }
    // A name of somebody else's may be made to lead here.
    for (const CHAR* pHost : {"evil.example:8080", "127.0.0.1:8081", "127.0.0.1", "", "localhost.evil.example:8080",
                              "127.0.0.1:8080@evil.example", "192.168.1.20:8080", "127.0.0.1:8080 "})
    {
        EXPECT_EQ(403, StatusOf(Desk, Get(pHost))) << pHost;
        EXPECT_EQ(403, StatusOf(Desk, Get(pHost, "/"))) << pHost;
    }
    RequestFacts twice = Get("127.0.0.1:8080");
    twice.hosts.push_back("evil.example:8080");
    EXPECT_EQ(403, StatusOf(Desk, twice));
    twice.hosts.clear();
    EXPECT_EQ(403, StatusOf(Desk, twice));

    RequestFacts network = Get("192.168.1.20:8080");
    network.token        = Token;
    EXPECT_EQ(200, StatusOf(Network, network));
    network.hosts = {"desk.local:8080"};
    EXPECT_EQ(200, StatusOf(Network, network));
    network.hosts = {"evil.example:8080"};
    EXPECT_EQ(403, StatusOf(Network, network));
    EXPECT_EQ(200, StatusOf({{"127.0.0.1", 80}, "", ""}, Get("localhost"))) << "browsers leave the usual port out";
}

TEST(RequestGuard, AsksForTheTokenWhereOthersCanReachIt)
{
    RequestFacts facts = Get("192.168.1.20:8080");
    for (const std::string& rToken : {std::string(), std::string(Token).substr(1), std::string(Token) + "0",
                                      std::string("10112233445566778899aabbccddeeff")})
    {
        facts.token = rToken;
        EXPECT_EQ(403, StatusOf(Network, facts)) << rToken;
    }
    EXPECT_EQ(200, StatusOf(Network, Get("192.168.1.20:8080", "/page.js"))) << "files are no secret";
    RequestFacts edit = Post("192.168.1.20:8080");
    EXPECT_EQ(403, StatusOf(Network, edit));
    edit.token = Token;
    EXPECT_EQ(200, StatusOf(Network, edit));
}

TEST(RequestGuard, RefusesEditsOfOtherPages)
{
    EXPECT_EQ(200, StatusOf(Desk, Post()));
    const std::pair<const CHAR*, int> origins[] = {
        {"http://127.0.0.1:8080", 200},  {"http://localhost:8080", 403},  // not where the page came from
        {"https://127.0.0.1:8080", 403}, {"http://evil.example", 403},   {"null", 403}, {"", 403}};
    for (const auto& [pOrigin, status] : origins)
    {
        RequestFacts facts = Post();
        facts.origins      = {pOrigin};
        EXPECT_EQ(status, StatusOf(Desk, facts)) << pOrigin;
        RequestFacts look = Get("127.0.0.1:8080", "/api/events");
        look.origins      = {pOrigin};
        EXPECT_EQ(status, StatusOf(Desk, look)) << pOrigin;
    }
    // What a form of another page can send without asking.
    for (const CHAR* pType : {"text/plain", "application/x-www-form-urlencoded", "multipart/form-data; boundary=x", "",
                              "text/plain; application/json"})
    {
        RequestFacts facts = Post();
        facts.contentTypes = {pType};
        EXPECT_EQ(403, StatusOf(Desk, facts)) << pType;
    }
    RequestFacts typed = Post();
    typed.contentTypes = {"Application/JSON ; charset=utf-8"};
    EXPECT_EQ(200, StatusOf(Desk, typed));
}

TEST(RequestGuard, BoundsBodiesBeforeTheyAreRead)
{
    const std::pair<std::vector<std::string>, int> lengths[] = {
        {{"65536"}, 200}, {{"65537"}, 413}, {{"-1"}, 413},    {{"1e3"}, 413}, {{"99999999999999999999999"}, 413},
        {{""}, 413},      {{}, 411},        {{"2", "3"}, 411}};
    for (const auto& [rLengths, status] : lengths)
    {
        RequestFacts facts = Post();
        facts.lengths      = rLengths;
        EXPECT_EQ(status, StatusOf(Desk, facts)) << (rLengths.empty() ? "none" : rLengths[0]);
    }
    RequestFacts packed = Post();
    packed.isEncoded    = true;
    EXPECT_EQ(411, StatusOf(Desk, packed)) << "a few bytes can be unpacked to any number";
    RequestFacts parts  = Get("127.0.0.1:8080", "/");
    parts.asksForRanges = true;
    EXPECT_EQ(400, StatusOf(Desk, parts)) << "a file many times over";
    RequestFacts other = Get("127.0.0.1:8080");
    other.method       = "PUT";
    EXPECT_EQ(405, StatusOf(Desk, other));
}

TEST(PageAddress, IsReadAsAPersonWritesIt)
{
    Address address;
    ASSERT_TRUE(ParseAddress("[::1]:8080", address));
    EXPECT_EQ("::1", address.host);
    EXPECT_EQ("[::1]:8080", FormatAddress(address));
    EXPECT_TRUE(IsLoopback(address.host));
    ASSERT_TRUE(ParseAddress("camera-7.local:19286", address));
    EXPECT_EQ("camera-7.local", address.host);
    EXPECT_EQ(19286, address.port);
    for (const CHAR* pHost : {"0.0.0.0", "::", "192.168.127.0", "127.evil.example", "127.0.0.1.evil.example"})
    {
        EXPECT_FALSE(IsLoopback(pHost)) << pHost;
    }
    for (const CHAR* pText : {"", ":8080", "host", "host:", "host:0", "host:65536", "host:80x", "a:b:1", "[::1:80",
                              "[host]:80", "http://host:80", "ho st:80"})
    {
        EXPECT_FALSE(ParseAddress(pText, address)) << pText;
    }
}

}  // namespace
