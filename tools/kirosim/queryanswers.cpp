#include "tools/kirosim/queryanswers.h"

#include <fmt/format.h>

#include "host/queries.h"

namespace kirosim
{

std::string QueryAnswers(IKIROCoreAlgo* pAlgo)
{
    std::string text;
    if (const auto capabilities = QueryEVCapabilities(pAlgo); capabilities.has_value())
    {
        text += fmt::format("query of EV capabilities: {} to {} EV, {} steps per EV\n", capabilities->minEV,
                            capabilities->maxEV, capabilities->stepsPerEV);
    }
    if (const AECMultiCamInfo* pInfo = QueryPeerInfo(pAlgo); pInfo != nullptr)
    {
        text += fmt::format("query of peer info: camera {}, frame {}, lux index {:.1f}, safe exposure {:.0f}, settled "
                            "{}\n",
                            pInfo->cameraID, pInfo->statsFrameId, pInfo->meteringInfo.luxIndex,
                            pInfo->exposureInfo.origExp[AECAlgoExposureSafe], pInfo->bSettle);
    }
    const SnapshotAnswer snapshot = QuerySnapshotExposure(pAlgo, KIROCoreSnapshotType::Normal);
    text += fmt::format("query of snapshot exposure: result {}, ISO {}, predictive gain {:.1f}, first exposure {} ns\n",
                        snapshot.result, snapshot.frameControl.ISOValue, snapshot.frameControl.predictiveGain,
                        snapshot.exposures.front().exposureData.exposureTime);
    text += fmt::format("query of SW version: result {}\n", QueryUnanswered(pAlgo, AECAlgoGetParamSWVersion));
    return text;
}

}  // namespace kirosim
