#ifndef _OSGMATERIALGROUP_H_
#define _OSGMATERIALGROUP_H_

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterial.h>

namespace osg
{

OSG_FC_PTR_DECL(MaterialGroup, GroupPtr)

class MaterialGroup : public Group
{
    OSG_FC_DECL(MaterialGroup, Group)

  public:
    enum
    {
        MaterialFieldId = Inherited::NextFieldId,
        NextFieldId     = MaterialFieldId + 1
    };
    OSG_FIELD_MASK(Material)

    OSG_SFIELD_NOSET(SFMaterialPtr, Material)

  public:
    // References the new material and releases the old one.
    void setMaterial(const MaterialPtr &value);

    static void initMethod(void);

  protected:
    MaterialGroup(void);
    MaterialGroup(const MaterialGroup &source);
    virtual ~MaterialGroup(void);

    void onCreate(const MaterialGroup *source = NULL);
    virtual void onDestroy(void) override;

    Action::ResultE renderEnter(Action *action);
    Action::ResultE renderLeave(Action *action);
};

typedef RefPtr<MaterialGroupPtr>    MaterialGroupRefPtr;
typedef CoredNodePtr<MaterialGroup> MaterialGroupNodePtr;

} // namespace osg

#endif
