#ifndef _OSGPNGIMAGEFILETYPE_H_
#define _OSGPNGIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// PNG through libpng: 8-bit grey, grey and alpha, RGB and RGBA, written
// as they are stored (other data types are scaled to 8 bits).
class PNGImageFileType : public ImageFileType
{
  public:
    virtual ~PNGImageFileType(void);

    static PNGImageFileType &the(void);

  protected:
    PNGImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;
    virtual bool encode(const ImagePtr &image, std::ostream &os,
                        std::string &error) override;

  private:
    static PNGImageFileType _the;
};

} // namespace osg

#endif
