#ifndef _OSGFOREGROUND_H_
#define _OSGFOREGROUND_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGForegroundFields.h>

namespace osg
{

class DrawActionBase;
class Viewport;

class Foreground : public AttachmentContainer
{
    OSG_FC_ABSTRACT_DECL(Foreground, AttachmentContainer)

  public:
    enum
    {
        ActiveFieldId = Inherited::NextFieldId,
        NextFieldId   = ActiveFieldId + 1
    };
    OSG_FIELD_MASK(Active)

    OSG_SFIELD(SFBool, Active)

  public:
    virtual void draw(DrawActionBase *action, Viewport *port) = 0;

    static void initMethod(void) {}

  protected:
    Foreground(void) : Inherited() { _sfActive.setValue(true); }
    Foreground(const Foreground &source) : Inherited(source), _sfActive(source._sfActive) {}
    virtual ~Foreground(void) {}
};

} // namespace osg

#endif
