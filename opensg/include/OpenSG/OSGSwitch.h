#ifndef _OSGSWITCH_H_
#define _OSGSWITCH_H_

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(Switch, GroupPtr)

// Traverses only the child selected by Choice (ALL: every child, NONE: none).
class Switch : public Group
{
    OSG_FC_DECL(Switch, Group)

  public:
    enum
    {
        ChoiceFieldId = Inherited::NextFieldId,
        NextFieldId   = ChoiceFieldId + 1
    };
    OSG_FIELD_MASK(Choice)

    OSG_SFIELD(SFInt32, Choice)

  public:
    enum { ALL = -2, NONE = -1 };

    virtual void changed(BitVector whichField, UInt32 origin) override;

    static void initMethod(void);

  protected:
    Switch(void);
    Switch(const Switch &source);
    virtual ~Switch(void);

    virtual void adjustVolume(Volume &volume) override;

    Action::ResultE renderEnter(Action *action);
};

typedef RefPtr<SwitchPtr>    SwitchRefPtr;
typedef CoredNodePtr<Switch> SwitchNodePtr;

} // namespace osg

#endif
