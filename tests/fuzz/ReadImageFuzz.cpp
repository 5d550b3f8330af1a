#include "FuzzTargets.h"

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGThread.h>

#include <iterator>
#include <sstream>
#include <string>

namespace fuzz
{

int readImage(const std::uint8_t *data, std::size_t size)
{
    static const char *const mimeTypes[] = {
        "image/png", "image/jpeg", "image/x-targa", "image/bmp", "image/gif",
        "image/x-photoshop", "image/x-portable-bitmap", "image/x-hdr", "image/tiff",
        "image/x-exr", "image/x-dds",
    };
    initQuietly();
    if(size < 1)
        return 0;

    const char *mimeType = mimeTypes[data[0] % std::size(mimeTypes)];
    std::istringstream file(std::string(reinterpret_cast<const char *>(data) + 1, size - 1));
    osg::ImagePtr image = osg::ImageFileHandler::the().read(file, mimeType);
    if(image != osg::NullFC)
    {
        // Every level the image claims must lie inside its storage.
        const osg::UInt8 *last = image->getData(osg::UInt32(image->getMipMapCount() - 1), 0,
                                                osg::UInt32(image->getSideCount() - 1));
        volatile osg::UInt8 touch = last != NULL ? last[image->getLevelSize(
                                        osg::UInt32(image->getMipMapCount() - 1)) - 1] : 0;
        (void)touch;
        osg::addRefCP(image);
        osg::subRefCP(image);
    }
    osg::Thread::getCurrentChangeList()->clearAll();
    return 0;
}

} // namespace fuzz

LUMORA_FUZZ_TARGET(readImage)
