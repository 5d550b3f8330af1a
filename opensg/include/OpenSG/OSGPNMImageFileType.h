#ifndef _OSGPNMIMAGEFILETYPE_H_
#define _OSGPNMIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// Binary portable any-maps (P5, P6) through stb_image; the ASCII and
// one-bit variants are refused.
class PNMImageFileType : public ImageFileType
{
  public:
    virtual ~PNMImageFileType(void);

    static PNMImageFileType &the(void);

  protected:
    PNMImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;

  private:
    static PNMImageFileType _the;
};

} // namespace osg

#endif
