/// @file
/// What a page shows of a run: numbers over time, states, marks, pictures and tables. Nothing here knows where they
/// come from.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/tavotypes.h"

namespace report
{

/// The frames of one run, in ascending time.
struct Timeline
{
    std::string         name;
    std::vector<DOUBLE> frames;  ///< their numbers
    std::vector<DOUBLE> times;   ///< s
};

/// Which colour a line has: the same thing has the same one in all charts.
enum class Colour
{
    Short,
    Safe,
    Long,
    Other
};

struct Series
{
    std::string         name;
    Colour              colour   = Colour::Other;
    bool                isDashed = false;
    size_t              timeline = 0;  ///< those of a further run are thin
    std::vector<DOUBLE> values;        ///< one per frame of the timeline; NaN for none
};

struct Chart
{
    std::string         title;
    std::string         unit;   ///< of the values, at the axis
    bool                isLog;  ///< values at or below zero are not shown then
    std::vector<Series> series;
};

/// A time during which a state lasts.
struct Stretch
{
    DOUBLE      from;   ///< s
    DOUBLE      to;     ///< s, the end of its last frame
    std::string words;  ///< which state, if there are several
};

struct Band
{
    std::string          name;
    std::vector<Stretch> stretches;  ///< in ascending time
};

struct Mark
{
    DOUBLE      time;  ///< s
    std::string words;
};

/// Shares of the frame.
struct Box
{
    FLOAT x;
    FLOAT y;
    FLOAT dx;
    FLOAT dy;
};

constexpr size_t WeightSide = 16;

/// Weights of a grid over a box, row by row.
using Weights = std::array<FLOAT, WeightSide * WeightSide>;

/// What is measured of a picture.
struct Measurement
{
    std::string name;
    Box         box;
    size_t      weights;  ///< index into Page::weights
};

struct Picture
{
    DOUBLE                   frame;
    DOUBLE                   time;  ///< s
    std::string              caption;
    std::vector<BYTE>        image;      ///< PNG
    std::vector<BYTE>        marks;      ///< PNG of the same size: what is over- and underexposed, else transparent
    DOUBLE                   over;       ///< share of the samples
    DOUBLE                   under;      ///< share of the samples
    std::vector<UINT32>      histogram;  ///< counts, from dark to bright
    std::vector<Measurement> measurements;
    std::optional<Box>       touch;
};

struct Table
{
    std::string                           title;
    std::vector<std::string>              columns;  ///< their heads; none for a table without
    std::vector<std::vector<std::string>> rows;
};

struct Page
{
    std::string              title;
    std::string              command;  ///< that made it
    std::vector<std::string> notes;    ///< on how to read the page
    std::vector<Timeline>    timelines;
    std::vector<Chart>       charts;
    std::vector<Band>        bands;
    std::vector<Mark>        marks;
    std::vector<Weights>     weights;
    std::vector<Picture>     pictures;
    std::string              pictureNote;  ///< how the pictures were made
    Table                    summary;      ///< stands first
    std::vector<Table>       tables;
};

/// @return the page as HTML that needs nothing beside itself. Names are text in it, whatever they hold.
std::string WritePage(const Page& rPage);

}  // namespace report
