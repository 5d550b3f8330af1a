#ifndef _OSGEXRIMAGEFILETYPE_H_
#define _OSGEXRIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// OpenEXR: RGB(A) or luminance scan-line and tiled files, kept as half
// floats, or as 32-bit floats when the file stores those.
class EXRImageFileType : public ImageFileType
{
  public:
    virtual ~EXRImageFileType(void);

    static EXRImageFileType &the(void);

  protected:
    EXRImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;

  private:
    static EXRImageFileType _the;
};

} // namespace osg

#endif
