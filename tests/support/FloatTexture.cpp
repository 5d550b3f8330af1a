#include "support/FloatTexture.h"

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

#include <vector>

namespace testsupport
{

osg::TextureChunkPtr makeFloatTexture(int width, int height,
                                      const std::function<osg::Vec4f(int, int)> &f,
                                      osg::UInt32 filter)
{
    std::vector<osg::Real32> data;
    data.reserve(std::size_t(width) * std::size_t(height) * 4);
    for(int y = 0; y < height; ++y)
        for(int x = 0; x < width; ++x)
        {
            const osg::Vec4f v = f(x, y);
            data.insert(data.end(), {v[0], v[1], v[2], v[3]});
        }

    osg::ImagePtr image = osg::Image::create();
    osg::beginEditCP(image);
    image->set(osg::Image::OSG_RGBA_PF, width, height, 1, 1, 1, 0.0,
               reinterpret_cast<const osg::UInt8 *>(data.data()),
               osg::Image::OSG_FLOAT32_IMAGEDATA);
    osg::endEditCP(image);

    osg::TextureChunkPtr texture = osg::TextureChunk::create();
    osg::addRefCP(texture);
    osg::beginEditCP(texture);
    texture->setImage(image);
    texture->setInternalFormat(GL_RGBA32F_ARB);
    texture->setMinFilter(filter);
    texture->setMagFilter(filter);
    texture->setWrapS(GL_CLAMP_TO_EDGE);
    texture->setWrapT(GL_CLAMP_TO_EDGE);
    osg::endEditCP(texture);
    return texture;
}

} // namespace testsupport
