#ifndef _LUMORA_DEFERREDRENDERINGVIEWPORTBASE_H_
#define _LUMORA_DEFERREDRENDERINGVIEWPORTBASE_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGViewport.h>

OSG_BEGIN_NAMESPACE

class DeferredRenderingViewport;
class BinaryDataHandler;

typedef FCPtr<ViewportPtr, DeferredRenderingViewport> DeferredRenderingViewportPtr;

template <>
struct FieldDataTraits<DeferredRenderingViewportPtr> :
    public FieldTraitsRecurseMapper<DeferredRenderingViewportPtr, true>
{
    static DataType             _type;

    enum                        { StringConvertable = 0x00 };
    enum                        { bHasParent        = 0x01 };

    static DataType   &getType (void) { return _type; }
    static const char *getSName(void) { return "SFDeferredRenderingViewportPtr"; }
    static const char *getMName(void) { return "MFDeferredRenderingViewportPtr"; }
};

typedef SField<DeferredRenderingViewportPtr> SFDeferredRenderingViewportPtr;
typedef MField<DeferredRenderingViewportPtr> MFDeferredRenderingViewportPtr;

class DeferredRenderingViewportBase : public Viewport
{
  private:
    typedef Viewport Inherited;

  public:
    typedef DeferredRenderingViewportPtr Ptr;

    enum
    {
        NextFieldId = Inherited::NextFieldId
    };

    static const OSG::BitVector MTInfluenceMask;

    static        FieldContainerType &getClassType    (void);
    static        UInt32              getClassTypeId  (void);

    virtual       FieldContainerType &getType         (void);
    virtual const FieldContainerType &getType         (void) const;
    virtual       UInt32              getContainerSize(void) const;

    virtual UInt32 getBinSize (const BitVector    &whichField);
    virtual void   copyToBin  (BinaryDataHandler &pMem, const BitVector &whichField);
    virtual void   copyFromBin(BinaryDataHandler &pMem, const BitVector &whichField);

    static  DeferredRenderingViewportPtr create     (void);
    static  DeferredRenderingViewportPtr createEmpty(void);

    virtual FieldContainerPtr shallowCopy(void) const;

  protected:
    DeferredRenderingViewportBase(void);
    DeferredRenderingViewportBase(const DeferredRenderingViewportBase &source);
    virtual ~DeferredRenderingViewportBase(void);

    void executeSyncImpl(DeferredRenderingViewportBase *pOther,
                         const BitVector               &whichField);

    virtual void executeSync(FieldContainer &other, const BitVector &whichField);

  private:
    friend class FieldContainer;

    static FieldContainerType _type;

    void operator =(const DeferredRenderingViewportBase &source);
};

typedef DeferredRenderingViewportBase *DeferredRenderingViewportBaseP;

OSG_END_NAMESPACE

#endif
