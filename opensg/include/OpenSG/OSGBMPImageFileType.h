#ifndef _OSGBMPIMAGEFILETYPE_H_
#define _OSGBMPIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// Windows bitmaps through stb_image; written as 24-bit (32-bit with
// alpha).
class BMPImageFileType : public ImageFileType
{
  public:
    virtual ~BMPImageFileType(void);

    static BMPImageFileType &the(void);

  protected:
    BMPImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;
    virtual bool encode(const ImagePtr &image, std::ostream &os,
                        std::string &error) override;

  private:
    static BMPImageFileType _the;
};

} // namespace osg

#endif
