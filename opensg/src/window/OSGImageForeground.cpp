#include <OpenSG/OSGImageForeground.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_IMPL(ImageForeground, "Foreground")

ImageForeground::ImageForeground(void) :
    Inherited(),
    _mfImages   (),
    _mfPositions()
{
}

ImageForeground::ImageForeground(const ImageForeground &source) :
    Inherited(source),
    _mfImages   (source._mfImages),
    _mfPositions(source._mfPositions)
{
}

ImageForeground::~ImageForeground(void)
{
}

void ImageForeground::dump(UInt32, const BitVector) const
{
    SLOG << "ImageForeground with " << _mfImages.size() << " images" << std::endl;
}

void ImageForeground::draw(DrawActionBase *, Viewport *port)
{
    if(!getActive() || port == NULL)
        return;

    const UInt32 count = UInt32(osgMin(_mfImages.size(), _mfPositions.size()));
    UInt32 first = 0;
    while(first < count && _mfImages[first] == NullFC)
        ++first;
    if(first == count)
        return;

    const Real32 width  = Real32(port->getPixelWidth());
    const Real32 height = Real32(port->getPixelHeight());
    if(width < 1.f || height < 1.f)
        return;

    glPushAttrib(GL_POLYGON_BIT | GL_DEPTH_BUFFER_BIT | GL_LIGHTING_BIT |
                 GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_COLOR_MATERIAL);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_BLEND);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);

    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, 1, 0, 1, 0, 1);

    for(UInt32 i = first; i < count; ++i)
    {
        ImagePtr image = _mfImages[i];
        if(image == NullFC)
            continue;

        const Pnt2f &p = _mfPositions[i];
        if(p[0] >= 1.f || p[1] >= 1.f)
            glRasterPos2f(p[0] / width, p[1] / height);
        else
            glRasterPos2f(p[0], p[1]);

        glDrawPixels(image->getWidth(), image->getHeight(), GLenum(image->getPixelFormat()),
                     GL_UNSIGNED_BYTE, image->getData());
    }

    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();

    glPopClientAttrib();
    glPopAttrib();
}

} // namespace osg
