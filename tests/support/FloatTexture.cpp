#include "support/FloatTexture.h"

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

#include <vector>

namespace testsupport
{

osg::TextureChunkPtr makeFloatTexture(int width, int height,
                                      const std::function<osg::Vec4f(int, int)> &f)
{
    using namespace osg;

    std::vector<Real32> data;
    for(int y = 0; y < height; ++y)
        for(int x = 0; x < width; ++x)
        {
            const Vec4f v = f(x, y);
            data.insert(data.end(), {v[0], v[1], v[2], v[3]});
        }

    ImagePtr image = Image::create();
    beginEditCP(image);
    image->set(Image::OSG_RGBA_PF, width, height, 1, 1, 1, 0.0,
               reinterpret_cast<const UInt8 *>(data.data()), Image::OSG_FLOAT32_IMAGEDATA);
    endEditCP(image);

    TextureChunkPtr texture = TextureChunk::create();
    addRefCP(texture);
    beginEditCP(texture);
    texture->setImage(image);
    texture->setInternalFormat(GL_RGBA32F_ARB);
    texture->setMinFilter(GL_LINEAR);
    texture->setMagFilter(GL_LINEAR);
    texture->setWrapS(GL_CLAMP_TO_EDGE);
    texture->setWrapT(GL_CLAMP_TO_EDGE);
    endEditCP(texture);
    return texture;
}

} // namespace testsupport
