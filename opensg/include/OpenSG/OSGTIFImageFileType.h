#ifndef _OSGTIFIMAGEFILETYPE_H_
#define _OSGTIFIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// TIFF through libtiff: any variant libtiff can give as 8-bit RGBA,
// kept with the file's channel count.
class TIFImageFileType : public ImageFileType
{
  public:
    virtual ~TIFImageFileType(void);

    static TIFImageFileType &the(void);

  protected:
    TIFImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;

  private:
    static TIFImageFileType _the;
};

} // namespace osg

#endif
