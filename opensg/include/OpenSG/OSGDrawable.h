#ifndef _OSGDRAWABLE_H_
#define _OSGDRAWABLE_H_

#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGStatElemTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(Drawable, NodeCorePtr)

class Drawable : public NodeCore
{
    OSG_FC_ABSTRACT_DECL(Drawable, NodeCore)

  public:
    enum { NextFieldId = Inherited::NextFieldId };

    static StatElemDesc<StatIntElem>     statNTriangles;
    static StatElemDesc<StatIntElem>     statNLines;
    static StatElemDesc<StatIntElem>     statNPoints;
    static StatElemDesc<StatIntElem>     statNVertices;
    static StatElemDesc<StatIntElem>     statNPrimitives;
    static StatElemDesc<StatIntOnceElem> statNGeoBytes;

    static void initMethod(void) {}

  protected:
    Drawable(void);
    Drawable(const Drawable &source);
    virtual ~Drawable(void);
};

} // namespace osg

#endif
