#include <OpenSG/OSGImageFileType.h>
#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGLog.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace osg
{

namespace
{

// Enough for every signature the types check.
const std::size_t SignatureBytes = 16;

} // namespace

ImageFileType::ImageFileType(const Char8 *mimeType, const Char8 *Suffixes[],
                             UInt16 suffixByteCount, UInt32 flags) :
    _options(),
    _suffixList(),
    _signatures(),
    _mimeType(mimeType != NULL ? mimeType : ""),
    _flags(flags)
{
    const UInt32 count = suffixByteCount / sizeof(const Char8 *);
    for(UInt32 i = 0; i < count; ++i)
        _suffixList.push_back(IDString(Suffixes[i]));

    ImageFileHandler::addImageFileType(*this);
}

ImageFileType::~ImageFileType(void)
{
}

void ImageFileType::setOptions(const Char8 *options)
{
    _options = options != NULL ? options : "";
}

const Char8 *ImageFileType::getMimeType(void) const
{
    return _mimeType.c_str();
}

const std::list<IDString> &ImageFileType::getSuffixList(void) const
{
    return _suffixList;
}

UInt32 ImageFileType::getFlags(void) const
{
    return _flags;
}

const Char8 *ImageFileType::getOptions(void)
{
    return _options.c_str();
}

bool ImageFileType::read(ImagePtr &image, const Char8 *fileName)
{
    const std::string name = fileName != NULL ? fileName : "(null)";
    std::ifstream is(name, std::ios::binary);
    if(!is)
    {
        SWARNING << "ImageFileType: " << name << ": cannot open the file" << std::endl;
        return false;
    }
    return readBytes(image, is, name);
}

bool ImageFileType::write(const ImagePtr &image, const Char8 *fileName)
{
    const std::string name = fileName != NULL ? fileName : "(null)";
    std::ofstream os(name, std::ios::binary);
    if(!os)
    {
        SWARNING << "ImageFileType: " << name << ": cannot create the file" << std::endl;
        return false;
    }
    return writeBytes(image, os, name);
}

bool ImageFileType::read(ImagePtr &image, std::istream &is, const std::string &)
{
    return readBytes(image, is, std::string("stream of type ") + getMimeType());
}

bool ImageFileType::write(const ImagePtr &image, std::ostream &os, const std::string &)
{
    return writeBytes(image, os, std::string("stream of type ") + getMimeType());
}

bool ImageFileType::readBytes(ImagePtr &image, std::istream &is, const std::string &source)
{
    if(image == NullFC)
    {
        SWARNING << "ImageFileType: " << source << ": no image to read into" << std::endl;
        return false;
    }
    const std::vector<UInt8> bytes((std::istreambuf_iterator<char>(is)),
                                   std::istreambuf_iterator<char>());
    std::string error;
    if(bytes.empty())
        error = "the file is empty";
    else if(decode(*image, bytes.data(), bytes.size(), error))
        return true;

    SWARNING << "ImageFileType: " << source << ": " << getMimeType() << ": "
             << (error.empty() ? "cannot be read" : error) << std::endl;
    return false;
}

bool ImageFileType::writeBytes(const ImagePtr &image, std::ostream &os,
                               const std::string &target)
{
    std::string error;
    if(image == NullFC || image->getData() == NULL)
        error = "the image has no data";
    else if((_flags & OSG_WRITE_SUPPORTED) == 0)
        error = "writing is not supported";
    else if(encode(image, os, error))
    {
        if(os)
            return true;
        error = "write error";
    }

    SWARNING << "ImageFileType: " << target << ": " << getMimeType() << ": "
             << (error.empty() ? "cannot be written" : error) << std::endl;
    return false;
}

bool ImageFileType::validateHeader(const Char8 *fileName, bool &implemented)
{
    implemented = false;
    std::ifstream is(fileName != NULL ? fileName : "", std::ios::binary);
    if(!is)
        return true;

    UInt8 head[SignatureBytes] = {};
    is.read(reinterpret_cast<char *>(head), sizeof(head));
    implemented = !_signatures.empty();
    return !implemented || matchesSignature(head, std::size_t(is.gcount()));
}

std::string ImageFileType::determineMimetypeFromStream(std::istream &is)
{
    UInt8 head[SignatureBytes] = {};
    const std::streampos start = is.tellg();
    is.read(reinterpret_cast<char *>(head), sizeof(head));
    const std::size_t got = std::size_t(is.gcount());
    is.clear();
    is.seekg(start);
    if(!_signatures.empty() && matchesSignature(head, got))
        return getMimeType();
    return std::string();
}

void ImageFileType::dump(void)
{
    PLOG << getMimeType() << ":";
    for(const IDString &suffix : _suffixList)
        PLOG << " " << suffix;
    PLOG << ((_flags & OSG_READ_SUPPORTED)  ? " read"  : "")
         << ((_flags & OSG_WRITE_SUPPORTED) ? " write" : "") << std::endl;
}

bool ImageFileType::decode(Image &, const UInt8 *, std::size_t, std::string &error)
{
    error = "reading is not supported";
    return false;
}

bool ImageFileType::encode(const ImagePtr &, std::ostream &, std::string &error)
{
    error = "writing is not supported";
    return false;
}

void ImageFileType::addSignature(const Char8 *bytes, std::size_t length)
{
    _signatures.push_back(std::string(bytes, length));
}

bool ImageFileType::matchesSignature(const UInt8 *data, std::size_t size) const
{
    for(const std::string &signature : _signatures)
    {
        if(size >= signature.size() &&
           std::memcmp(data, signature.data(), signature.size()) == 0)
            return true;
    }
    return false;
}

} // namespace osg
