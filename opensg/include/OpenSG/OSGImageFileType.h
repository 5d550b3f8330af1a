#ifndef _OSGIMAGEFILETYPE_H_
#define _OSGIMAGEFILETYPE_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGImage.h>

#include <cstddef>
#include <iosfwd>
#include <list>
#include <string>

namespace osg
{

// One image file format. A concrete type registers itself with the
// ImageFileHandler from a static instance. Readers see the whole file in
// memory; a failed read or write logs a warning that names the file (or the
// MIME type, for streams) and the reason.
class ImageFileType
{
  public:
    enum
    {
        OSG_READ_SUPPORTED  = 1,
        OSG_WRITE_SUPPORTED = 2
    };

    virtual ~ImageFileType(void);

    void setOptions(const Char8 *options);

    const Char8               *getMimeType  (void) const;
    const std::list<IDString> &getSuffixList(void) const;
    virtual UInt32             getFlags     (void) const;
    const Char8               *getOptions   (void);

    virtual bool read (ImagePtr &image, const Char8 *fileName);
    virtual bool write(const ImagePtr &image, const Char8 *fileName);

    // Whether the file starts as this type's files do; `implemented` tells
    // whether the type knows its signature at all.
    virtual bool validateHeader(const Char8 *fileName, bool &implemented);

    virtual bool read (ImagePtr &image, std::istream &is, const std::string &mimetype);
    virtual bool write(const ImagePtr &image, std::ostream &os, const std::string &mimetype);

    // This type's MIME type if the stream starts with its signature, else
    // empty; the stream is left where it was.
    virtual std::string determineMimetypeFromStream(std::istream &is);

    void dump(void);

  protected:
    ImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                  UInt16 suffixByteCount, UInt32 flags = OSG_READ_SUPPORTED);

    // The format's own work: fill `image` from the file's bytes, or write it.
    // On failure they return false and say why in `error`.
    virtual bool decode(Image &image, const UInt8 *data, std::size_t size,
                        std::string &error);
    virtual bool encode(const ImagePtr &image, std::ostream &os, std::string &error);

    // The bytes files of this type start with; a type may have several, or
    // none (then any header is accepted).
    void addSignature(const Char8 *bytes, std::size_t length);
    bool matchesSignature(const UInt8 *data, std::size_t size) const;

    std::string _options;

  private:
    ImageFileType(const ImageFileType &) = delete;
    ImageFileType &operator=(const ImageFileType &) = delete;

    bool readBytes(ImagePtr &image, std::istream &is, const std::string &source);
    bool writeBytes(const ImagePtr &image, std::ostream &os, const std::string &target);

    std::list<IDString>    _suffixList;
    std::list<std::string> _signatures;
    IDString            _mimeType;
    UInt32              _flags;
};

typedef ImageFileType *ImageFileTypeP;

} // namespace osg

#endif
