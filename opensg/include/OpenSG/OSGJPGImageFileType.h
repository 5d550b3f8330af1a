#ifndef _OSGJPGIMAGEFILETYPE_H_
#define _OSGJPGIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// JPEG through libjpeg; written by stb_image_write, quality 95 unless
// the options give "quality=N".
class JPGImageFileType : public ImageFileType
{
  public:
    virtual ~JPGImageFileType(void);

    static JPGImageFileType &the(void);

  protected:
    JPGImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;
    virtual bool encode(const ImagePtr &image, std::ostream &os,
                        std::string &error) override;

  private:
    static JPGImageFileType _the;
};

} // namespace osg

#endif
