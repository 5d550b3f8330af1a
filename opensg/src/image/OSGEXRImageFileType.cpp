#include <OpenSG/OSGEXRImageFileType.h>

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputFile.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <stdexcept>

namespace osg
{

namespace
{

const Char8 *exrSuffixes[] = { "exr" };

class MemoryStream : public Imf::IStream
{
  public:
    MemoryStream(const UInt8 *data, std::size_t size) :
        Imf::IStream("memory"), _data(data), _size(size), _position(0)
    {
    }

    bool read(char c[], int n) override
    {
        if(n < 0 || std::size_t(n) > _size - std::min(_position, _size))
            throw std::runtime_error("unexpected end of the file");
        std::memcpy(c, _data + _position, std::size_t(n));
        _position += std::size_t(n);
        return _position < _size;
    }

    uint64_t tellg() override
    {
        return _position;
    }

    void seekg(uint64_t position) override
    {
        _position = std::size_t(position);
    }

  private:
    const UInt8 *_data;
    std::size_t  _size;
    std::size_t  _position;
};

// Files larger than this are refused rather than allocated.
const Int64 MaxPixels = Int64(1) << 26;

} // namespace

EXRImageFileType EXRImageFileType::_the("image/x-exr",
                                        exrSuffixes, sizeof(exrSuffixes),
                                        OSG_READ_SUPPORTED);

EXRImageFileType &EXRImageFileType::the(void)
{
    return _the;
}

EXRImageFileType::EXRImageFileType(const Char8 *mimeType, const Char8 *exrSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, exrSuffixes, suffixByteCount, flags)
{
    addSignature("\x76\x2f\x31\x01", 4);
}

EXRImageFileType::~EXRImageFileType(void)
{
}

bool EXRImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not an OpenEXR file";
        return false;
    }

    try
    {
        MemoryStream   stream(data, size);
        Imf::InputFile file(stream);

        const Imf::ChannelList &channels = file.header().channels();
        const Imath::Box2i     &window   = file.header().dataWindow();
        const Int64 width  = Int64(window.max.x) - window.min.x + 1;
        const Int64 height = Int64(window.max.y) - window.min.y + 1;
        if(width <= 0 || height <= 0 || width * height > MaxPixels)
        {
            error = "unsupported image size";
            return false;
        }

        const char *const colour[] = { "R", "G", "B" };
        const char *const grey[]   = { "Y" };
        const bool rgb   = channels.findChannel("R") != NULL &&
                           channels.findChannel("G") != NULL &&
                           channels.findChannel("B") != NULL;
        const bool alpha = channels.findChannel("A") != NULL;
        if(!rgb && channels.findChannel("Y") == NULL)
        {
            error = "neither R, G, B nor Y channels";
            return false;
        }

        const char *const *names = rgb ? colour : grey;
        const int          count = rgb ? 3 : 1;

        // Half stays half; 32-bit float and integer channels become float.
        bool half = true;
        for(int c = 0; c < count; ++c)
            half = half && channels.findChannel(names[c])->type == Imf::HALF;
        const Imf::PixelType type = half ? Imf::HALF : Imf::FLOAT;

        static const UInt32 formats[] =
            { Image::OSG_L_PF, Image::OSG_LA_PF, Image::OSG_RGB_PF, Image::OSG_RGBA_PF };
        image.set(formats[count + (alpha ? 1 : 0) - 1], Int32(width), Int32(height),
                  1, 1, 1, 0.0, NULL,
                  half ? Image::OSG_FLOAT16_IMAGEDATA : Image::OSG_FLOAT32_IMAGEDATA);

        // The file's top row is window.min.y; the image keeps it last. The
        // slice base is where pixel (0, 0) of the file's coordinates would be.
        const std::size_t pixelBytes = image.getBpp();
        const std::size_t typeBytes  = half ? 2 : 4;
        const std::ptrdiff_t rowBytes = std::ptrdiff_t(width) * std::ptrdiff_t(pixelBytes);
        const std::intptr_t origin = reinterpret_cast<std::intptr_t>(image.editData()) +
                                     std::intptr_t(window.max.y) * rowBytes -
                                     std::intptr_t(window.min.x) * std::intptr_t(pixelBytes);

        Imf::FrameBuffer frame;
        for(int c = 0; c < count + (alpha ? 1 : 0); ++c)
        {
            const char *name = c < count ? names[c] : "A";
            frame.insert(name, Imf::Slice(type,
                                          reinterpret_cast<char *>(origin + c * typeBytes),
                                          pixelBytes, -rowBytes, 1, 1, 1.0));
        }
        file.setFrameBuffer(frame);
        file.readPixels(window.min.y, window.max.y);
    }
    catch(const std::exception &e)
    {
        error = e.what();
        return false;
    }
    return true;
}

} // namespace osg
