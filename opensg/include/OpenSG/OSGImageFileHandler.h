#ifndef _OSGIMAGEFILEHANDLER_H_
#define _OSGIMAGEFILEHANDLER_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGImageFileType.h>

#include <iosfwd>
#include <list>
#include <map>
#include <string>

namespace osg
{

class PathHandler;

// Reads and writes image files, choosing the file type by MIME type, else
// by suffix (case-insensitive); a file whose first bytes belong to another
// known type is read as that type, with a warning. A path handler is
// accepted but not applied.
class ImageFileHandler
{
    friend class ImageFileType;

  public:
    typedef ImagePtr (*readcbfp)(const char *fileName, const char *mimeType);

    static ImageFileHandler &the(void);

    virtual ~ImageFileHandler(void);

    virtual ImagePtr read (const char *fileName, const char *mimeType = 0);
    virtual bool     read (ImagePtr &image, const char *fileName, const char *mimeType = 0);
    virtual bool     write(const ImagePtr &image, const char *fileName,
                           const char *mimeType = 0);

    virtual ImagePtr read (std::istream &is, const std::string &mimeType);
    virtual bool     read (ImagePtr &image, std::istream &is, const std::string &mimeType);
    virtual bool     write(const ImagePtr &image, std::ostream &os,
                           const std::string &mimeType);

    // Replaces the whole of read(fileName, mimeType) when set.
    void     setReadCB(readcbfp fp);
    readcbfp getReadCB(void);

    virtual PathHandler *getPathHandler(void);
    virtual void         setPathHandler(PathHandler *pPathHandler);

    virtual bool         setOptions(const Char8 *suffix, const Char8 *options);
    virtual const Char8 *getOptions(const Char8 *suffix);

    ImageFileType *getFileType(const char *mimeType, const char *fileName = 0,
                               bool validateHeader = false);
    // The type of suffix "opensg"; this runtime has none and says so.
    ImageFileType *getDefaultType(void);
    virtual int getSuffixList(std::list<const Char8 *> &suffixList,
                              UInt32 flags = ImageFileType::OSG_READ_SUPPORTED |
                                             ImageFileType::OSG_WRITE_SUPPORTED);

    std::string determineMimetypeFromName  (const std::string &fileName);
    std::string determineMimetypeFromSuffix(const std::string &suffix);
    std::string determineMimetypeFromStream(std::istream &is);

    void dump(void);

  private:
    ImageFileHandler(void);
    ImageFileHandler(const ImageFileHandler &) = delete;
    ImageFileHandler &operator=(const ImageFileHandler &) = delete;

    static bool addImageFileType(ImageFileType &fileType);
    static void normalizeMimetype(std::string &mimetype);
    static void normalizeSuffix  (std::string &suffix);

    typedef std::map<std::string, ImageFileType *> TypeMap;

    TypeMap      _suffixTypeMap;
    TypeMap      _typeMap;
    PathHandler *_pPathHandler;
    readcbfp     _readFP;
};

typedef ImageFileHandler *ImageFileHandlerP;

} // namespace osg

#endif
