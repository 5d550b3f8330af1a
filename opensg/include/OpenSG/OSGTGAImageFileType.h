#ifndef _OSGTGAIMAGEFILETYPE_H_
#define _OSGTGAIMAGEFILETYPE_H_

#include <OpenSG/OSGImageFileType.h>

namespace osg
{

// Truevision Targa through stb_image; written uncompressed.
class TGAImageFileType : public ImageFileType
{
  public:
    virtual ~TGAImageFileType(void);

    static TGAImageFileType &the(void);

  protected:
    TGAImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                     UInt16 suffixByteCount, UInt32 flags);

    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error) override;
    virtual bool encode(const ImagePtr &image, std::ostream &os,
                        std::string &error) override;

  private:
    static TGAImageFileType _the;
};

} // namespace osg

#endif
