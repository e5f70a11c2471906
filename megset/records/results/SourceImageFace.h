#pragma once
// A list of source images with a current one.

#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/archiveLists.h"

namespace megset {

/// The images of a trial, owned. `Image` is a record with serializezk.
template <class Image>
class SourceImageFace
{
public:
    /// Adds a copy of the image; the given one stays the caller's. With `makeCurrent`, or as the first of the list, it
    /// becomes the current image. 1, or 0 for null.
    int addSam3Dzk(const Image* image, bool makeCurrent)
    {
        if (image == nullptr)
            return 0;
        const int index = m_aImage.addCopy(*image);
        if (makeCurrent || index == 0)
            m_nCurrentImage = index;
        return 1;
    }
    /// An image by number, -1 for the current one; null outside.
    Image* getSam3Dzk(int index) const
    {
        const int at = index == -1 ? m_nCurrentImage : index;
        return at >= 0 && at < m_aImage.GetSize() ? m_aImage[at] : nullptr;
    }
    int getTotalSam3D() const { return m_aImage.GetSize(); }
    /// Empties the list. Gives 1.
    int cleanSam3D()
    {
        m_aImage.RemoveAll();
        m_nCurrentImage = -1;
        return 1;
    }
    /// The fields in a file: 1, or 0 when an image is none. Null entries are dropped when reading.
    int exchangeImages(CArchive& ar)
    {
        EXCHANGE_FIELDS(ar, m_nCurrentImage);
        if (ar.IsLoading())
            m_aImage.RemoveAll();
        return exchangePointers<std::int32_t>(ar, m_aImage, [&ar](Image& image) { return image.serializezk(ar); });
    }

    bool operator==(const SourceImageFace&) const = default;

    std::int32_t m_nCurrentImage = -1; ///< -1: none
    CTypedPtrArray<Image> m_aImage;
};

} // namespace megset
