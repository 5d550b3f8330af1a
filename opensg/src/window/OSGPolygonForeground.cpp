#include <OpenSG/OSGPolygonForeground.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGState.h>
#include <OpenSG/OSGDrawActionBase.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_IMPL(PolygonForeground, "Foreground")

PolygonForeground::PolygonForeground(void) :
    Inherited(),
    _sfMaterial    (),
    _mfTexCoords   (),
    _mfPositions   (),
    _sfNormalizedX (true),
    _sfNormalizedY (true),
    _sfAspectHeight(0),
    _sfAspectWidth (0),
    _sfScale       (1.f),
    _sfTile        (true)
{
}

PolygonForeground::PolygonForeground(const PolygonForeground &source) :
    Inherited(source),
    _sfMaterial    (source._sfMaterial),
    _mfTexCoords   (source._mfTexCoords),
    _mfPositions   (source._mfPositions),
    _sfNormalizedX (source._sfNormalizedX),
    _sfNormalizedY (source._sfNormalizedY),
    _sfAspectHeight(source._sfAspectHeight),
    _sfAspectWidth (source._sfAspectWidth),
    _sfScale       (source._sfScale),
    _sfTile        (source._sfTile)
{
}

PolygonForeground::~PolygonForeground(void)
{
}

void PolygonForeground::dump(UInt32, const BitVector) const
{
    SLOG << "PolygonForeground with " << _mfPositions.size() << " positions"
         << std::endl;
}

// Negative values count from the right/top edge.
Real32 PolygonForeground::mapCoordinate(Real32 value, Real32 size, bool normalized) const
{
    if(value >= 0.f)
        return normalized ? value * size : value;
    return size + (value + 1.f) * (normalized ? size : 1.f);
}

void PolygonForeground::draw(DrawActionBase *action, Viewport *port)
{
    if(!getActive() || _mfPositions.empty() || port == NULL)
        return;

    Real32 width  = Real32(port->getPixelWidth());
    Real32 height = Real32(port->getPixelHeight());
    if(width < 1.f || height < 1.f)
        return;

    if(_mfPositions.size() != _mfTexCoords.size())
    {
        SWARNING << "PolygonForeground::draw: positions and texcoords differ in number"
                 << std::endl;
        return;
    }

    glPushAttrib(GL_ALL_ATTRIB_BITS);

    // An overlay: neither the scene's depth nor its lights apply.
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);

    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();

    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, width, 0, height, -1, 1);

    glMatrixMode(GL_MODELVIEW);

    Real32 scaleX = getScale() > 0.f ? getScale() : 1.f;
    Real32 scaleY = scaleX;
    if(getAspectHeight() != 0 && getAspectWidth() != 0)
        scaleX *= (height / getAspectHeight()) / (width / getAspectWidth());

    glTranslatef(width / 2.f, height / 2.f, 0.f);
    glScalef(scaleX, scaleY, 1.f);
    glTranslatef(-width / 2.f, -height / 2.f, 0.f);

    Material *mat    = getCPtr(getMaterial());
    UInt32    passes = mat != NULL ? mat->getNPasses() : 1;
    State    *prev   = NULL;

    for(UInt32 pass = 0; pass < passes; ++pass)
    {
        State *state = mat != NULL ? getCPtr(mat->getState(pass)) : NULL;
        if(state != NULL)
        {
            if(prev == NULL)
                state->activate(action);
            else
                state->changeFrom(action, prev);
            prev = state;
        }

        glBegin(GL_POLYGON);
        for(UInt32 i = 0; i < _mfPositions.size(); ++i)
        {
            glTexCoord3fv(_mfTexCoords[i].getValues());
            glVertex2f(mapCoordinate(_mfPositions[i][0], width,  getNormalizedX()),
                       mapCoordinate(_mfPositions[i][1], height, getNormalizedY()));
        }
        glEnd();
    }

    if(prev != NULL)
        prev->deactivate(action);

    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();

    glPopAttrib();
}

} // namespace osg
