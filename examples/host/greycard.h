#pragma once

#include <algorithm>
#include <iterator>

#include "interface/kirostats.h"

// Statistics of an evenly lit card, by the channel names that the tuning selects. Until the next frame the core keeps
// pointers into them.
struct GreyCard
{
    FLOAT         m_luma[256]    = {};  // 16 x 16 regions
    INT           m_bins[2][256] = {};  // histograms, and the luma that each bin stands for
    FLOAT         m_binValues[256];
    KIROStatsList m_list{};

    GreyCard()
    {
        std::generate(std::begin(m_binValues), std::end(m_binValues), [luma = 0.0f]() mutable { return luma++; });
        Add("SafeLuma", kiroglobalelements::KIROStatsGrid, {16, 16, 0, 8}).Data.pFData  = m_luma;
        Add("SafeHist", kiroglobalelements::KIROStatsHist, {0, 0, 256, 8}).Data.pIData  = m_bins[0];
        Add("ShortHist", kiroglobalelements::KIROStatsHist, {0, 0, 256, 8}).Data.pIData = m_bins[1];
    }

    KIROCoreChInfo& Add(const CHAR* pName, kiroglobalelements::KIROStatsType type,
                        kirocorestatsconfig::ResolutionType resolution)
    {
        KIROCntStatsOut& rChannel = m_list.pList[m_list.count++];
        rChannel                  = {0, type, resolution, {TRUE, const_cast<CHAR*>(pName), {}, 0, m_binValues}};
        return rChannel.channelData;
    }

    VOID Capture(DOUBLE safeLuma, DOUBLE shortLuma)
    {
        std::fill(std::begin(m_luma), std::end(m_luma), static_cast<FLOAT>(std::min(safeLuma, 255.0)));
        std::fill_n(m_bins[0], 2 * std::size(m_bins[0]), 0);
        m_bins[0][static_cast<UINT32>(std::min(safeLuma, 255.0))]  = 256;
        m_bins[1][static_cast<UINT32>(std::min(shortLuma, 255.0))] = 256;
    }
};
