#include <OpenSG/OSGGrabForeground.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_IMPL(GrabForeground, "Foreground")

GrabForeground::GrabForeground(void) :
    Inherited(),
    _sfImage     (),
    _sfAutoResize(false)
{
}

GrabForeground::GrabForeground(const GrabForeground &source) :
    Inherited(source),
    _sfImage     (source._sfImage),
    _sfAutoResize(source._sfAutoResize)
{
}

GrabForeground::~GrabForeground(void)
{
}

void GrabForeground::dump(UInt32, const BitVector) const
{
    SLOG << "GrabForeground" << (getAutoResize() ? " (auto resize)" : "") << std::endl;
}

void GrabForeground::draw(DrawActionBase *, Viewport *port)
{
    if(!getActive() || port == NULL)
        return;

    ImagePtr image = getImage();
    if(image == NullFC)
        return;

    // No image is smaller than 2 x 2: a 1 x 1 image stands for "not yet
    // sized" and takes the viewport's size.
    UInt32 w = UInt32(osgMax<Int32>(2, port->getPixelWidth()));
    UInt32 h = UInt32(osgMax<Int32>(2, port->getPixelHeight()));
    if(image->getWidth() <= 1 || image->getHeight() <= 1 ||
       (getAutoResize() && (Int32(w) != image->getWidth() || Int32(h) != image->getHeight())))
    {
        image->set(image->getPixelFormat(), Int32(w), Int32(h));
    }

    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    if(!getAutoResize())
    {
        // A fixed image keeps its size; the viewport's lower left part that
        // fits is read into its lower left corner.
        w = UInt32(osgMin<Int32>(image->getWidth(),  port->getPixelWidth()));
        h = UInt32(osgMin<Int32>(image->getHeight(), port->getPixelHeight()));
        if(image->getWidth() != port->getPixelWidth())
            glPixelStorei(GL_PACK_ROW_LENGTH, image->getWidth());
    }

    glReadPixels(port->getPixelLeft(), port->getPixelBottom(), GLsizei(w), GLsizei(h),
                 GLenum(image->getPixelFormat()), GLenum(image->getDataType()),
                 image->editData());
    glPopClientAttrib();
}

} // namespace osg
