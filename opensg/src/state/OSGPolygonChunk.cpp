#include <OpenSG/OSGPolygonChunk.h>

#include <vector>

namespace osg
{

OSG_FC_IMPL(PolygonChunk, "StateChunk")

PolygonChunk::PolygonChunk(void) :
    Inherited(),
    _sfCullFace    (GL_NONE),
    _sfFrontFace   (GL_CCW),
    _sfFrontMode   (GL_FILL),
    _sfBackMode    (GL_FILL),
    _sfSmooth      (false),
    _sfOffsetFactor(0.f),
    _sfOffsetBias  (0.f),
    _sfOffsetPoint (false),
    _sfOffsetLine  (false),
    _sfOffsetFill  (false),
    _mfStipple     ()
{
}

PolygonChunk::PolygonChunk(const PolygonChunk &source) :
    Inherited(source),
    _sfCullFace    (source._sfCullFace),
    _sfFrontFace   (source._sfFrontFace),
    _sfFrontMode   (source._sfFrontMode),
    _sfBackMode    (source._sfBackMode),
    _sfSmooth      (source._sfSmooth),
    _sfOffsetFactor(source._sfOffsetFactor),
    _sfOffsetBias  (source._sfOffsetBias),
    _sfOffsetPoint (source._sfOffsetPoint),
    _sfOffsetLine  (source._sfOffsetLine),
    _sfOffsetFill  (source._sfOffsetFill),
    _mfStipple     (source._mfStipple)
{
}

PolygonChunk::~PolygonChunk(void)
{
}

void PolygonChunk::activate(DrawActionBase *, UInt32)
{
    if(getCullFace() != GL_NONE)
    {
        glCullFace(getCullFace());
        glEnable(GL_CULL_FACE);
    }

    if(getFrontFace() != GL_CCW)
        glFrontFace(getFrontFace());

    if(getFrontMode() == getBackMode())
    {
        if(getFrontMode() != GL_FILL)
            glPolygonMode(GL_FRONT_AND_BACK, getFrontMode());
    }
    else
    {
        glPolygonMode(GL_FRONT, getFrontMode());
        glPolygonMode(GL_BACK,  getBackMode());
    }

    if(getSmooth())
        glEnable(GL_POLYGON_SMOOTH);

    if(getOffsetPoint() || getOffsetLine() || getOffsetFill())
        glPolygonOffset(getOffsetFactor(), getOffsetBias());
    if(getOffsetPoint())
        glEnable(GL_POLYGON_OFFSET_POINT);
    if(getOffsetLine())
        glEnable(GL_POLYGON_OFFSET_LINE);
    if(getOffsetFill())
        glEnable(GL_POLYGON_OFFSET_FILL);

    // The stipple is a 32x32 bit mask, one Int32 per row.
    if(getStipple().size() == 32)
    {
        std::vector<GLubyte> pattern(128);
        for(UInt32 row = 0; row < 32; ++row)
        {
            const UInt32 bits = UInt32(getStipple(row));
            for(UInt32 b = 0; b < 4; ++b)
                pattern[row * 4 + b] = GLubyte(bits >> (24 - 8 * b));
        }
        glPolygonStipple(pattern.data());
        glEnable(GL_POLYGON_STIPPLE);
    }
    else if(!getStipple().empty())
    {
        SWARNING << "PolygonChunk::activate: stipple needs 32 rows, has "
                 << getStipple().size() << std::endl;
    }
}

void PolygonChunk::deactivate(DrawActionBase *, UInt32)
{
    if(getCullFace() != GL_NONE)
        glDisable(GL_CULL_FACE);

    if(getFrontFace() != GL_CCW)
        glFrontFace(GL_CCW);

    if(getFrontMode() != GL_FILL || getBackMode() != GL_FILL)
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);

    if(getSmooth())
        glDisable(GL_POLYGON_SMOOTH);

    if(getOffsetPoint())
        glDisable(GL_POLYGON_OFFSET_POINT);
    if(getOffsetLine())
        glDisable(GL_POLYGON_OFFSET_LINE);
    if(getOffsetFill())
        glDisable(GL_POLYGON_OFFSET_FILL);

    if(getStipple().size() == 32)
        glDisable(GL_POLYGON_STIPPLE);
}

} // namespace osg
