#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGForeground.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGDrawAction.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_IMPL(Viewport, "AttachmentContainer")

Viewport::Viewport(void) :
    Inherited(),
    _sfLeft       (0.f),
    _sfRight      (1.f),
    _sfBottom     (0.f),
    _sfTop        (1.f),
    _sfParent     (),
    _sfCamera     (),
    _sfRoot       (),
    _sfBackground (),
    _mfForegrounds(),
    _sfTravMask   (TypeTraits<UInt32>::getMax()),
    _sfDrawTime   (0.f)
{
}

Viewport::Viewport(const Viewport &source) :
    Inherited(source),
    _sfLeft       (source._sfLeft),
    _sfRight      (source._sfRight),
    _sfBottom     (source._sfBottom),
    _sfTop        (source._sfTop),
    _sfParent     (source._sfParent),
    _sfCamera     (source._sfCamera),
    _sfRoot       (source._sfRoot),
    _sfBackground (source._sfBackground),
    _mfForegrounds(source._mfForegrounds),
    _sfTravMask   (source._sfTravMask),
    _sfDrawTime   (source._sfDrawTime)
{
    for(UInt32 i = 0; i < _mfForegrounds.size(); ++i)
        addRefCP(_mfForegrounds[i]);
}

Viewport::~Viewport(void)
{
}

void Viewport::onDestroy(void)
{
    clearForegrounds();
    Inherited::onDestroy();
}

void Viewport::changed(BitVector whichField, UInt32 origin)
{
    Inherited::changed(whichField, origin);
}

void Viewport::dump(UInt32, const BitVector) const
{
    SLOG << "Viewport (" << getLeft() << ", " << getBottom() << ") - ("
         << getRight() << ", " << getTop() << ")" << std::endl;
}

// --- pixel rectangle --------------------------------------------------------
// Values above 1 are pixels, others fractions of the parent window.

static bool parentSize(const Viewport *port, const char *who, Int32 &size, bool width)
{
    WindowPtr win = port->getParent();
    if(win == NullFC)
    {
        SWARNING << "Viewport::" << who << ": fraction without a parent window"
                 << std::endl;
        size = 0;
        return false;
    }
    size = width ? win->getWidth() : win->getHeight();
    return true;
}

Int32 Viewport::getPixelLeft(void) const
{
    if(getLeft() > 1.f)
        return Int32(getLeft());
    Int32 size;
    if(!parentSize(this, "getPixelLeft", size, true))
        return 0;
    return Int32(size * getLeft());
}

Int32 Viewport::getPixelRight(void) const
{
    if(getRight() > 1.f)
        return Int32(getRight());
    Int32 size;
    if(!parentSize(this, "getPixelRight", size, true))
        return 0;
    return Int32(size * getRight() - 1);
}

Int32 Viewport::getPixelBottom(void) const
{
    if(getBottom() > 1.f)
        return Int32(getBottom());
    Int32 size;
    if(!parentSize(this, "getPixelBottom", size, false))
        return 0;
    return Int32(size * getBottom());
}

Int32 Viewport::getPixelTop(void) const
{
    if(getTop() > 1.f)
        return Int32(getTop());
    Int32 size;
    if(!parentSize(this, "getPixelTop", size, false))
        return 0;
    return Int32(size * getTop() - 1);
}

Int32 Viewport::getPixelWidth(void) const
{
    return getPixelRight() - getPixelLeft() + 1;
}

Int32 Viewport::getPixelHeight(void) const
{
    return getPixelTop() - getPixelBottom() + 1;
}

bool Viewport::isFullWindow(void) const
{
    WindowPtr win = getParent();
    if(win == NullFC)
        return false;
    return getPixelLeft()   == 0 &&
           getPixelBottom() == 0 &&
           getPixelRight()  == Int32(win->getWidth())  - 1 &&
           getPixelTop()    == Int32(win->getHeight()) - 1;
}

void Viewport::setSize(Real32 left, Real32 bottom, Real32 right, Real32 top)
{
    setLeft  (left);
    setBottom(bottom);
    setRight (right);
    setTop   (top);
}

// --- foregrounds ----------------------------------------------------------

void Viewport::clearForegrounds(void)
{
    MFForegroundPtr old;
    old.getValues().swap(_mfForegrounds.getValues());
    for(UInt32 i = 0; i < old.size(); ++i)
        subRefCP(old[i]);
}

void Viewport::addForeground(ForegroundPtr fg)
{
    if(fg == NullFC)
        return;
    addRefCP(fg);
    _mfForegrounds.push_back(fg);
}

// --- drawing ----------------------------------------------------------------

void Viewport::activateSize(void)
{
    GLint   left   = getPixelLeft();
    GLint   bottom = getPixelBottom();
    GLsizei width  = getPixelWidth();
    GLsizei height = getPixelHeight();

    glViewport(left, bottom, width, height);

    if(isFullWindow())
    {
        glDisable(GL_SCISSOR_TEST);
    }
    else
    {
        glScissor(left, bottom, width, height);
        glEnable(GL_SCISSOR_TEST);
    }
}

void Viewport::activate(void)
{
    activateSize();
}

void Viewport::deactivate(void)
{
}

bool Viewport::checkRenderInputs(const Char8 *who, bool haveRoot) const
{
    if(getCamera() == NullFC)
    {
        SWARNING << who << ": no camera!" << std::endl;
        return false;
    }
    if(getBackground() == NullFC)
    {
        SWARNING << who << ": no Background!" << std::endl;
        return false;
    }
    if(!haveRoot)
    {
        SWARNING << who << ": no Root!" << std::endl;
        return false;
    }
    return true;
}

void Viewport::drawForegrounds(RenderActionBase *action)
{
    for(UInt32 i = 0; i < _mfForegrounds.size(); ++i)
    {
        if(_mfForegrounds[i] != NullFC)
            _mfForegrounds[i]->draw(action, this);
    }
}

void Viewport::draw(DrawAction *action)
{
    if(action == NULL)
    {
        SWARNING << "Viewport::draw: no action" << std::endl;
        return;
    }
    if(!checkRenderInputs("Viewport::draw", getRoot() != NullFC))
        return;

    activate();

    action->setViewport  (this);
    action->setCamera    (getCPtr(getCamera()));
    action->setBackground(getCPtr(getBackground()));
    action->setTravMask  (getTravMask());

    getCamera()->setup(action, *this);
    getBackground()->clear(action, this);

    action->apply(getRoot());

    for(UInt32 i = 0; i < _mfForegrounds.size(); ++i)
    {
        if(_mfForegrounds[i] != NullFC)
            _mfForegrounds[i]->draw(action, this);
    }

    deactivate();
}

void Viewport::render(RenderActionBase *action)
{
    if(action == NULL)
    {
        SWARNING << "Viewport::render: no action" << std::endl;
        return;
    }
    if(!checkRenderInputs("Viewport::render", getRoot() != NullFC))
        return;

    activate();

    action->setCamera    (getCPtr(getCamera()));
    action->setBackground(getCPtr(getBackground()));
    action->setViewport  (this);
    action->setTravMask  (getTravMask());

    action->apply(getRoot());

    drawForegrounds(action);

    deactivate();
}

} // namespace osg
