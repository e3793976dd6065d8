#include "tools/report/pagedata.h"

#include <nlohmann/json.hpp>

#include "tools/report/datauri.h"

namespace report
{

namespace
{

using Json = nlohmann::ordered_json;

template <typename Range, typename ToJson> Json ListOf(const Range& rRange, ToJson&& toJson)
{
    Json list = Json::array();
    for (const auto& rItem : rRange)
    {
        list.push_back(toJson(rItem));
    }
    return list;
}

const CHAR* NameOf(Colour colour)
{
    switch (colour)
    {
    case Colour::Short:
        return "short";
    case Colour::Safe:
        return "safe";
    case Colour::Long:
        return "long";
    default:
        return "other";
    }
}

Json JsonOf(const Timeline& rTimeline)
{
    return {{"name", rTimeline.name}, {"frames", rTimeline.frames}, {"times", rTimeline.times}};
}

Json JsonOf(const Series& rSeries)
{
    return {{"name", rSeries.name},
            {"colour", NameOf(rSeries.colour)},
            {"dashed", rSeries.isDashed},
            {"timeline", rSeries.timeline},
            {"values", rSeries.values}};
}

Json JsonOf(const Chart& rChart)
{
    return {{"title", rChart.title},
            {"unit", rChart.unit},
            {"log", rChart.isLog},
            {"series", ListOf(rChart.series, [](const Series& rSeries) { return JsonOf(rSeries); })}};
}

Json JsonOf(const Band& rBand)
{
    const auto stretch = [](const Stretch& rStretch) {
        return Json::array({rStretch.from, rStretch.to, rStretch.words});
    };
    return {{"name", rBand.name}, {"stretches", ListOf(rBand.stretches, stretch)}};
}

Json JsonOf(const Box& rBox)
{
    return Json::array({rBox.x, rBox.y, rBox.dx, rBox.dy});
}

Json JsonOf(const Picture& rPicture)
{
    const auto measurement = [](const Measurement& rMeasurement) {
        return Json{{"name", rMeasurement.name}, {"box", JsonOf(rMeasurement.box)}, {"weights", rMeasurement.weights}};
    };
    return {{"frame", rPicture.frame},
            {"time", rPicture.time},
            {"caption", rPicture.caption},
            {"image", DataUri("image/png", rPicture.image)},
            {"marks", DataUri("image/png", rPicture.marks)},
            {"over", rPicture.over},
            {"under", rPicture.under},
            {"histogram", rPicture.histogram},
            {"measurements", ListOf(rPicture.measurements, measurement)},
            {"touch", rPicture.touch.has_value() ? JsonOf(*rPicture.touch) : Json()}};
}

Json JsonOf(const Table& rTable)
{
    return {{"title", rTable.title}, {"columns", rTable.columns}, {"rows", rTable.rows}};
}

}  // namespace

std::string PageData(const Page& rPage)
{
    const auto        toJson = [](const auto& rItem) { return JsonOf(rItem); };
    const Json        data   = {{"title", rPage.title},
                                {"command", rPage.command},
                                {"notes", rPage.notes},
                                {"timelines", ListOf(rPage.timelines, toJson)},
                                {"charts", ListOf(rPage.charts, toJson)},
                                {"bands", ListOf(rPage.bands, toJson)},
                                {"marks", ListOf(rPage.marks,
                                                 [](const Mark& rMark) {
                                            return Json::array({rMark.time, rMark.words});
                                        })},
                                {"weights", rPage.weights},
                                {"pictures", ListOf(rPage.pictures, toJson)},
                                {"pictureNote", rPage.pictureNote},
                                {"summary", JsonOf(rPage.summary)},
                                {"tables", ListOf(rPage.tables, toJson)}};
    const std::string json   = data.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string       text;
    text.reserve(json.size());
    for (const CHAR letter : json)
    {
        // Only texts have it, which a browser would take for the end of the script.
        (letter == '<') ? text += "\\u003c" : text += letter;
    }
    return text;
}

}  // namespace report
