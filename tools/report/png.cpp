#include "tools/report/png.h"

#include <stdexcept>

#include <png.h>

namespace report
{

namespace
{

/// Owns what the library keeps of a picture that it writes.
class PngWriter
{
public:
    explicit PngWriter(std::vector<BYTE>& rBytes)
        : m_pPng(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Refuse, nullptr)),
          m_pInfo((m_pPng != nullptr) ? png_create_info_struct(m_pPng) : nullptr)
    {
        if (m_pInfo == nullptr)
        {
            png_destroy_write_struct(&m_pPng, nullptr);
            throw std::runtime_error("no memory for a picture");
        }
        png_set_write_fn(m_pPng, &rBytes, Append, nullptr);
    }
    ~PngWriter()
    {
        png_destroy_write_struct(&m_pPng, &m_pInfo);
    }
    PngWriter(const PngWriter&)            = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    VOID Write(UINT32 width, UINT32 height, PixelFormat format, const BYTE* pPixels, size_t rowSize)
    {
        // A report has many pictures, and noise does not become smaller by looking longer.
        constexpr int level = 3;
        png_set_compression_level(m_pPng, level);
        png_set_filter(m_pPng, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
        png_set_IHDR(m_pPng, m_pInfo, width, height, 8,
                     (format == PixelFormat::RGB) ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(m_pPng, m_pInfo);
        for (UINT32 row = 0; row < height; ++row)
        {
            png_write_row(m_pPng, pPixels + row * rowSize);
        }
        png_write_end(m_pPng, nullptr);
    }

private:
    [[noreturn]] static VOID Refuse(png_structp, png_const_charp pText)
    {
        throw std::runtime_error(pText);
    }

    static VOID Append(png_structp pPng, png_bytep pData, size_t size)
    {
        auto& rBytes = *static_cast<std::vector<BYTE>*>(png_get_io_ptr(pPng));
        rBytes.insert(rBytes.end(), pData, pData + size);
    }

    png_structp m_pPng;
    png_infop   m_pInfo;
};

}  // namespace

std::vector<BYTE> EncodePng(UINT32 width, UINT32 height, PixelFormat format, std::span<const BYTE> pixels)
{
    const size_t rowSize = width * ((format == PixelFormat::RGB) ? size_t{3} : size_t{4});
    if (pixels.size() != rowSize * height)
    {
        throw std::runtime_error("a picture does not have the pixels of its size");
    }
    std::vector<BYTE> bytes;
    PngWriter(bytes).Write(width, height, format, pixels.data(), rowSize);
    return bytes;
}

}  // namespace report
