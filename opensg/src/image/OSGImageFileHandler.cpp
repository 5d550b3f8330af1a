#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sys/stat.h>

namespace osg
{

namespace
{

const char *orNull(const char *text)
{
    return text != NULL ? text : "(null)";
}

// The text after the last dot of the file's own name, or empty.
std::string suffixOf(const std::string &fileName)
{
    const std::string::size_type slash = fileName.find_last_of("/\\");
    const std::string::size_type dot   = fileName.rfind('.');
    if(dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return std::string();
    return fileName.substr(dot + 1);
}

} // namespace

ImageFileHandler &ImageFileHandler::the(void)
{
    static ImageFileHandler handler;
    return handler;
}

ImageFileHandler::ImageFileHandler(void) :
    _suffixTypeMap(),
    _typeMap(),
    _pPathHandler(NULL),
    _readFP(NULL)
{
}

ImageFileHandler::~ImageFileHandler(void)
{
}

void ImageFileHandler::normalizeMimetype(std::string &mimetype)
{
    // Parameters ("; charset=...") and surrounding blanks do not count.
    mimetype = mimetype.substr(0, mimetype.find(';'));
    const std::string::size_type first = mimetype.find_first_not_of(" \t\r\n");
    const std::string::size_type last  = mimetype.find_last_not_of(" \t\r\n");
    mimetype = first == std::string::npos ? std::string()
                                          : mimetype.substr(first, last - first + 1);
    std::transform(mimetype.begin(), mimetype.end(), mimetype.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
}

void ImageFileHandler::normalizeSuffix(std::string &suffix)
{
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
}

bool ImageFileHandler::addImageFileType(ImageFileType &fileType)
{
    ImageFileHandler &handler = the();
    bool added = false;
    for(const IDString &entry : fileType.getSuffixList())
    {
        std::string suffix = entry;
        normalizeSuffix(suffix);
        if(handler._suffixTypeMap.count(suffix) != 0)
        {
            SWARNING << "ImageFileHandler: suffix " << suffix
                     << " has a file type already" << std::endl;
            continue;
        }
        handler._suffixTypeMap[suffix] = &fileType;
        added = true;
    }

    std::string mimetype = fileType.getMimeType();
    normalizeMimetype(mimetype);
    if(handler._typeMap.count(mimetype) != 0)
        SWARNING << "ImageFileHandler: MIME type " << mimetype
                 << " has a file type already" << std::endl;
    else
        handler._typeMap[mimetype] = &fileType;
    return added;
}

ImageFileType *ImageFileHandler::getFileType(const char *mimeType, const char *fileName,
                                             bool validateHeader)
{
    ImageFileType *type = NULL;

    if(mimeType != NULL && *mimeType != '\0')
    {
        std::string mime = mimeType;
        normalizeMimetype(mime);
        if(mime.find('/') == std::string::npos)
            mime.insert(0, "image/");
        TypeMap::const_iterator it = _typeMap.find(mime);
        if(it != _typeMap.end())
            type = it->second;
        else
            SWARNING << "ImageFileHandler: unknown MIME type " << mimeType << std::endl;
    }

    if(type == NULL && fileName != NULL && *fileName != '\0')
    {
        std::string suffix = suffixOf(fileName);
        normalizeSuffix(suffix);
        TypeMap::const_iterator it = _suffixTypeMap.find(suffix);
        if(it != _suffixTypeMap.end())
            type = it->second;
    }

    bool implemented = false;
    if(!validateHeader || fileName == NULL || *fileName == '\0' ||
       (type != NULL && type->validateHeader(fileName, implemented)))
        return type;

    // The suffix lies or is missing: the first bytes tell.
    for(const auto &entry : _typeMap)
    {
        if(entry.second->validateHeader(fileName, implemented) && implemented)
        {
            if(type != NULL)
                SWARNING << "ImageFileHandler: " << fileName << " is not "
                         << type->getMimeType() << " but " << entry.first
                         << "; read as such" << std::endl;
            return entry.second;
        }
    }
    return type;
}

ImageFileType *ImageFileHandler::getDefaultType(void)
{
    TypeMap::const_iterator it = _suffixTypeMap.find("opensg");
    if(it != _suffixTypeMap.end())
        return it->second;
    SWARNING << "ImageFileHandler: no default (suffix opensg) image type" << std::endl;
    return NULL;
}

int ImageFileHandler::getSuffixList(std::list<const Char8 *> &suffixList, UInt32 flags)
{
    suffixList.clear();
    for(const auto &entry : _suffixTypeMap)
    {
        if(entry.second->getFlags() & flags)
            suffixList.push_back(entry.first.c_str());
    }
    return int(suffixList.size());
}

std::string ImageFileHandler::determineMimetypeFromName(const std::string &fileName)
{
    return determineMimetypeFromSuffix(suffixOf(fileName));
}

std::string ImageFileHandler::determineMimetypeFromSuffix(const std::string &suffix)
{
    std::string key = suffix;
    normalizeSuffix(key);
    TypeMap::const_iterator it = _suffixTypeMap.find(key);
    return it != _suffixTypeMap.end() ? std::string(it->second->getMimeType())
                                      : std::string();
}

std::string ImageFileHandler::determineMimetypeFromStream(std::istream &is)
{
    for(const auto &entry : _typeMap)
    {
        const std::string mime = entry.second->determineMimetypeFromStream(is);
        if(!mime.empty())
            return mime;
    }
    return std::string();
}

ImagePtr ImageFileHandler::read(const char *fileName, const char *mimeType)
{
    if(_readFP != NULL)
        return _readFP(fileName, mimeType);

    // Unreferenced, as Image::create() gives it; a failed one is destroyed.
    ImagePtr image = Image::create();
    if(!read(image, fileName, mimeType))
    {
        subRefCP(image);
        return NullFC;
    }
    return image;
}

bool ImageFileHandler::read(ImagePtr &image, const char *fileName, const char *mimeType)
{
    if(fileName == NULL || *fileName == '\0')
    {
        SWARNING << "ImageFileHandler::read: no file name given" << std::endl;
        return false;
    }
    if(image == NullFC)
    {
        SWARNING << "ImageFileHandler::read: " << fileName << ": no image to read into"
                 << std::endl;
        return false;
    }

    struct stat info;
    if(stat(fileName, &info) != 0 || !S_ISREG(info.st_mode))
    {
        SWARNING << "ImageFileHandler::read: " << fileName << ": no such file" << std::endl;
        return false;
    }

    ImageFileType *type = getFileType(mimeType, fileName, true);
    if(type == NULL || (type->getFlags() & ImageFileType::OSG_READ_SUPPORTED) == 0)
    {
        SWARNING << "ImageFileHandler::read: " << fileName
                 << ": unknown image format" << std::endl;
        return false;
    }

    // The type names the file and the reason when it fails.
    if(!type->read(image, fileName))
        return false;
    image->setName(fileName);
    return true;
}

bool ImageFileHandler::write(const ImagePtr &image, const char *fileName,
                             const char *mimeType)
{
    ImageFileType *type = getFileType(mimeType, fileName);
    if(type == NULL || (type->getFlags() & ImageFileType::OSG_WRITE_SUPPORTED) == 0)
    {
        SWARNING << "ImageFileHandler::write: " << orNull(fileName)
                 << ": no image format can write this" << std::endl;
        return false;
    }
    return type->write(image, fileName);
}

ImagePtr ImageFileHandler::read(std::istream &is, const std::string &mimeType)
{
    ImagePtr image = Image::create();
    if(!read(image, is, mimeType))
    {
        subRefCP(image);
        return NullFC;
    }
    return image;
}

bool ImageFileHandler::read(ImagePtr &image, std::istream &is, const std::string &mimeType)
{
    ImageFileType *type = getFileType(mimeType.c_str());
    if(type == NULL || (type->getFlags() & ImageFileType::OSG_READ_SUPPORTED) == 0)
    {
        SWARNING << "ImageFileHandler::read: stream of type '" << mimeType
                 << "': unknown image format" << std::endl;
        return false;
    }
    return type->read(image, is, mimeType);
}

bool ImageFileHandler::write(const ImagePtr &image, std::ostream &os,
                             const std::string &mimeType)
{
    ImageFileType *type = getFileType(mimeType.c_str());
    if(type == NULL || (type->getFlags() & ImageFileType::OSG_WRITE_SUPPORTED) == 0)
    {
        SWARNING << "ImageFileHandler::write: stream of type '" << mimeType
                 << "': no image format can write this" << std::endl;
        return false;
    }
    return type->write(image, os, mimeType);
}

void ImageFileHandler::setReadCB(readcbfp fp)
{
    _readFP = fp;
}

ImageFileHandler::readcbfp ImageFileHandler::getReadCB(void)
{
    return _readFP;
}

PathHandler *ImageFileHandler::getPathHandler(void)
{
    return _pPathHandler;
}

void ImageFileHandler::setPathHandler(PathHandler *pPathHandler)
{
    _pPathHandler = pPathHandler;
}

bool ImageFileHandler::setOptions(const Char8 *suffix, const Char8 *options)
{
    ImageFileType *type = getFileType(NULL, (std::string(".") + orNull(suffix)).c_str());
    if(type == NULL)
        return false;
    type->setOptions(options);
    return true;
}

const Char8 *ImageFileHandler::getOptions(const Char8 *suffix)
{
    ImageFileType *type = getFileType(NULL, (std::string(".") + orNull(suffix)).c_str());
    return type != NULL ? type->getOptions() : NULL;
}

void ImageFileHandler::dump(void)
{
    for(const auto &entry : _suffixTypeMap)
    {
        PLOG << entry.first << ": ";
        entry.second->dump();
    }
}

} // namespace osg
