#ifndef _OSGGIFIMAGEFILETYPE_H_
#define _OSGGIFIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// GIF through stb_image: the first frame, as RGBA.
class GIFImageFileType : public ImageFileType
{
  public:
    virtual ~GIFImageFileType(void);

    static GIFImageFileType &the(void);

  protected:
    GIFImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;

  private:
    static GIFImageFileType _the;
};

} // namespace osg

#endif
