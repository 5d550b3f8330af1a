#ifndef _OSGHDRIMAGEFILETYPE_H_
#define _OSGHDRIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// Radiance RGBE through stb_image, as 32-bit float RGB; written from any
// data type.
class HDRImageFileType : public ImageFileType
{
  public:
    virtual ~HDRImageFileType(void);

    static HDRImageFileType &the(void);

  protected:
    HDRImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;
    virtual bool encode(const ImagePtr &image, std::ostream &os,
                        std::string &error) override;

  private:
    static HDRImageFileType _the;
};

} // namespace osg

#endif
