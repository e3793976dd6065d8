// Pages of reports: what stands in them is what was given, and text stays text.

#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <png.h>

#include "tools/report/datauri.h"
#include "tools/report/page.h"
#include "tools/report/png.h"

namespace
{

/// The pixels of a PNG as another reader finds them.
std::vector<BYTE> DecodePng(const std::vector<BYTE>& rBytes, UINT32 format)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    EXPECT_NE(png_image_begin_read_from_memory(&image, rBytes.data(), rBytes.size()), 0) << image.message;
    image.format = format;
    std::vector<BYTE> pixels(PNG_IMAGE_SIZE(image));
    EXPECT_NE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr), 0) << image.message;
    return pixels;
}

/// The data of a page, up to where a browser takes the script for ended.
nlohmann::json DataOf(const std::string& rPage)
{
    const std::string open  = "<script type=\"application/json\" id=\"data\">";
    const size_t      begin = rPage.find(open) + open.size();
    return nlohmann::json::parse(rPage.substr(begin, rPage.find("</script>", begin) - begin));
}

size_t CountOf(const std::string& rText, const std::string& rPart)
{
    size_t count = 0;
    for (size_t place = rText.find(rPart); place != std::string::npos; place = rText.find(rPart, place + 1))
    {
        ++count;
    }
    return count;
}

}  // namespace

TEST(ReportPng, DecodesToItsPixels)
{
    const std::vector<BYTE> three = {255, 0, 0, 0, 255, 0, 0, 0, 255, 1, 2, 3, 250, 128, 7, 90, 91, 92};
    EXPECT_EQ(DecodePng(report::EncodePng(3, 2, report::PixelFormat::RGB, three), PNG_FORMAT_RGB), three);
    const std::vector<BYTE> four = {255, 10, 20, 0, 30, 40, 50, 255};
    EXPECT_EQ(DecodePng(report::EncodePng(1, 2, report::PixelFormat::RGBA, four), PNG_FORMAT_RGBA), four);
    EXPECT_THROW(report::EncodePng(2, 2, report::PixelFormat::RGBA, four), std::runtime_error);
}

TEST(ReportDataUri, FillsTheLastGroup)
{
    const std::vector<BYTE> bytes = {'M', 'a', 'n', 0xff, 0xff};
    EXPECT_EQ(report::DataUri("a/b", std::span(bytes).first(3)), "data:a/b;base64,TWFu");
    EXPECT_EQ(report::DataUri("a/b", std::span(bytes).first(2)), "data:a/b;base64,TWE=");
    EXPECT_EQ(report::DataUri("a/b", std::span(bytes).first(4)), "data:a/b;base64,TWFu/w==");
    EXPECT_EQ(report::DataUri("a/b", {}), "data:a/b;base64,");
}

TEST(ReportPage, HoldsNumbersAsTheyWereAndNullForNone)
{
    report::Page page;
    page.timelines = {{"run", {1.0, 2.0}, {0.0, 1.0 / 30.0}}};
    page.charts    = {{"chart", "EV", true, {{"line", report::Colour::Long, true, 0, {0.1, std::nan("")}}}}};
    page.bands     = {{"settled", {{0.5, 1.5, "words"}}}};
    page.pictures  = {
         {.frame = 7.0, .time = 0.25, .caption = "start", .image = {'M'}, .touch = report::Box{0.5f, 0, 1, 1}}};
    const auto data = DataOf(report::WritePage(page));
    EXPECT_EQ(data["timelines"][0]["times"][1].get<DOUBLE>(), 1.0 / 30.0);
    const auto& rLine = data["charts"][0]["series"][0];
    EXPECT_EQ(rLine["colour"], "long");
    EXPECT_EQ(rLine["values"][0].get<DOUBLE>(), 0.1);
    EXPECT_TRUE(rLine["values"][1].is_null());
    EXPECT_EQ(data["bands"][0]["stretches"][0], nlohmann::json::array({0.5, 1.5, "words"}));
    EXPECT_EQ(data["pictures"][0]["image"], "data:image/png;base64,TQ==");
    EXPECT_EQ(data["pictures"][0]["touch"][0], 0.5);
}

TEST(ReportPage, KeepsHostileNamesText)
{
    const std::string hostile  = "</script><script>alert(1)</script><!-- \" ' & \x01 \\";
    const std::string harmless = report::WritePage({});
    report::Page      page;
    page.title             = hostile;
    page.command           = hostile;
    page.marks             = {{1.0, hostile}};
    page.bands             = {{hostile, {}}};
    page.charts            = {{hostile, hostile, false, {{hostile, report::Colour::Other, false, 0, {}}}}};
    page.tables            = {{hostile, {hostile}, {{hostile}}}};
    page.notes             = {"cut in the middle of a letter: \xc3"};
    const std::string text = report::WritePage(page);
    EXPECT_EQ(CountOf(text, "<script"), CountOf(harmless, "<script"));
    EXPECT_EQ(CountOf(text, "</script"), CountOf(harmless, "</script"));
    EXPECT_EQ(CountOf(text, "<!--"), CountOf(harmless, "<!--"));
    const auto data = DataOf(text);
    EXPECT_EQ(data["title"], hostile);
    EXPECT_EQ(data["marks"][0][1], hostile);
    EXPECT_EQ(data["tables"][0]["rows"][0][0], hostile);
    EXPECT_EQ(data["notes"][0], "cut in the middle of a letter: \xef\xbf\xbd");
}

TEST(ReportPage, NeedsNothingBesideItself)
{
    const std::string text = report::WritePage({});
    for (const CHAR* pFetch : {"<link", "<script src", "<img src", "@import", "url("})
    {
        EXPECT_EQ(CountOf(text, pFetch), 0U) << pFetch;
    }
    EXPECT_NE(text.find("default-src 'none'"), std::string::npos);
    EXPECT_NE(text.find("MIT licence"), std::string::npos);
}
