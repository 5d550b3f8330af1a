#ifndef _OSGMATERIAL_H_
#define _OSGMATERIAL_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGTypedFunctors.h>
#include <OpenSG/OSGState.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

class DrawActionBase;
class Geometry;

OSG_FC_PTR_DECL(Material, AttachmentContainerPtr)

class Material : public AttachmentContainer
{
    OSG_FC_ABSTRACT_DECL(Material, AttachmentContainer)

  public:
    enum
    {
        SortKeyFieldId          = Inherited::NextFieldId,
        TransparencyModeFieldId = SortKeyFieldId + 1,
        NextFieldId             = TransparencyModeFieldId + 1
    };
    OSG_FIELD_MASK(SortKey)
    OSG_FIELD_MASK(TransparencyMode)

    OSG_SFIELD(SFInt32, SortKey)
    OSG_SFIELD(SFInt32, TransparencyMode)

  public:
    static const Int32 NoStateSorting;
    static const Int32 TransparencyAutoDetection;
    static const Int32 TransparencyForceTransparent;
    static const Int32 TransparencyForceOpaque;

    typedef TypedFunctor1Base<Action::ResultE, PtrCallArg<DrawActionBase> > DrawFunctor;

    virtual void draw(DrawFunctor &func, DrawActionBase *action) = 0;
    virtual void draw(Geometry *geo, DrawActionBase *action) = 0;

    // A new State, owned by the caller.
    virtual StatePtr makeState   (void) = 0;
    // Refills the cached state returned by getState().
    virtual void     rebuildState(void) = 0;
    virtual StatePtr getState    (UInt32 index = 0);

    virtual bool   isMultiPass(void) const;
    virtual UInt32 getNPasses (void) const;

    virtual bool  isTransparent (void) const = 0;
    virtual Int32 getRealSortKey(void) const;

    virtual bool operator < (const Material &other) const;
    virtual bool operator ==(const Material &other) const;
    virtual bool operator !=(const Material &other) const;

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    Material(void);
    Material(const Material &source);
    virtual ~Material(void);

    virtual void onDestroy(void) override;

    // The cached state; not a field, so copies build their own.
    StatePtr _pState;
};

typedef RefPtr<MaterialPtr> MaterialRefPtr;

} // namespace osg

#endif
