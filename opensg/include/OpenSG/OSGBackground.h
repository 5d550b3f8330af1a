#ifndef _OSGBACKGROUND_H_
#define _OSGBACKGROUND_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGBackgroundFields.h>

namespace osg
{

class DrawActionBase;
class Viewport;

class Background : public AttachmentContainer
{
    OSG_FC_ABSTRACT_DECL(Background, AttachmentContainer)

  public:
    enum { NextFieldId = Inherited::NextFieldId };

    virtual void clear(DrawActionBase *action, Viewport *port) = 0;

    static void initMethod(void) {}

  protected:
    Background(void) : Inherited() {}
    Background(const Background &source) : Inherited(source) {}
    virtual ~Background(void) {}
};

} // namespace osg

#endif
