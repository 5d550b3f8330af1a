#ifndef _OSGMATERIALDRAWABLE_H_
#define _OSGMATERIALDRAWABLE_H_

#include <OpenSG/OSGDrawable.h>
#include <OpenSG/OSGMaterial.h>

namespace osg
{

OSG_FC_PTR_DECL(MaterialDrawable, DrawablePtr)

class DrawActionBase;

class MaterialDrawable : public Drawable
{
    OSG_FC_ABSTRACT_DECL(MaterialDrawable, Drawable)

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

    virtual Action::ResultE drawPrimitives(DrawActionBase *action) = 0;

    static void initMethod(void) {}

  protected:
    MaterialDrawable(void);
    MaterialDrawable(const MaterialDrawable &source);
    virtual ~MaterialDrawable(void);

    void onCreate(const MaterialDrawable *source = NULL);
    virtual void onDestroy(void) override;
};

} // namespace osg

#endif
