#include "tools/kirosim/livepicture.h"

#include <algorithm>
#include <span>

#include <turbojpeg.h>

#include "parameters/tuningsetmanager.h"
#include "tools/kirosim/camera.h"
#include "tools/liveclient/picturecommand.h"

namespace kirosim
{

namespace
{

// Of the JPEG, from the first to the last that is tried.
constexpr int BestQuality  = 92;
constexpr int LeastQuality = 12;
constexpr int QualityStep  = 20;

}  // namespace

LivePicture::LivePicture(TuningSetManager& rManager)
    : m_rManager(rManager), m_jpeg(tjBufSize(GridWidth, GridHeight, TJSAMP_444))
{
    m_rManager.SetCustomHandler(this);
}

LivePicture::~LivePicture()
{
    m_rManager.SetCustomHandler(nullptr);
}

VOID LivePicture::Offer(UINT64 frame, const Camera& rCamera)
{
    if (!m_isAskedFor.load(std::memory_order_relaxed))
    {
        return;
    }
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (lock.owns_lock())
    {
        rCamera.View(m_view);
        m_frame      = frame;
        m_isAskedFor = false;
    }
}

/// Takes what was handed over, and asks for more. @return false if nothing was
bool LivePicture::TakeView(UINT64& rFrame)
{
    const std::lock_guard lock(m_mutex);
    m_shown      = m_view;
    rFrame       = m_frame;
    m_isAskedFor = true;
    return m_frame != 0;
}

/// @return bytes of the JPEG, 0 if it does not fit
UINT32 LivePicture::Compress(std::span<BYTE> output)
{
    const tjhandle handle = tjInitCompress();
    UINT32         size   = 0;
    for (int quality = BestQuality; handle != nullptr && size == 0 && quality >= LeastQuality; quality -= QualityStep)
    {
        BYTE*         pJpeg = m_jpeg.data();
        unsigned long bytes = m_jpeg.size();
        const int     error = tjCompress2(handle, m_pixels.data(), GridWidth, 0, GridHeight, TJPF_RGB, &pJpeg, &bytes,
                                          TJSAMP_444, quality, TJFLAG_NOREALLOC);
        size                = (error == 0 && bytes <= output.size()) ? static_cast<UINT32>(bytes) : 0;
    }
    std::copy_n(m_jpeg.begin(), size, output.begin());
    if (handle != nullptr)
    {
        (VOID) tjDestroy(handle);
    }
    return size;
}

UINT16 LivePicture::ProcessCustom(const BYTE* pPayload, UINT32 payloadSize, UINT32 capacity, BYTE* pOutput,
                                  UINT32& rOutputSize)
{
    if (!liveclient::IsPictureRequest({pPayload, payloadSize}))
    {
        return 0;
    }
    UINT64 frame = 0;
    if (TakeView(frame) && capacity > liveclient::PictureHeader)
    {
        DevelopRegions(m_shown, m_pixels);
        const UINT32 size = Compress(std::span(pOutput, capacity).subspan(liveclient::PictureHeader));
        liveclient::EncodePictureHeader(frame, pOutput);
        rOutputSize = (size > 0) ? liveclient::PictureHeader + size : 0;
    }
    return liveclient::PictureResult;
}

/// This camera collects none.
VOID LivePicture::RequestTriggerValues(const CHAR*, const CHAR*, UINT64, const CHAR*)
{
}

}  // namespace kirosim
