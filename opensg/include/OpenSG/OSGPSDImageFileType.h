#ifndef _OSGPSDIMAGEFILETYPE_H_
#define _OSGPSDIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// Photoshop files through stb_image: the merged image, 8 or 16 bits.
class PSDImageFileType : public ImageFileType
{
  public:
    virtual ~PSDImageFileType(void);

    static PSDImageFileType &the(void);

  protected:
    PSDImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;

  private:
    static PSDImageFileType _the;
};

} // namespace osg

#endif
