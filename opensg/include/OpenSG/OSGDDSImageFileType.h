#ifndef _OSGDDSIMAGEFILETYPE_H_
#define _OSGDDSIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// DirectDraw surfaces: DXT1, DXT3 and DXT5 stay compressed, uncompressed
// 8-bit BGR(A), RGB(A) and luminance are kept as stored; mip-maps and cube
// faces come from the file.
class DDSImageFileType : public ImageFileType
{
  public:
    virtual ~DDSImageFileType(void);

    static DDSImageFileType &the(void);

  protected:
    DDSImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;

  private:
    static DDSImageFileType _the;
};

} // namespace osg

#endif
