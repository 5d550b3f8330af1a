#include "DeferredRenderingViewportBase.h"
#include "DeferredRenderingViewport.h"

OSG_BEGIN_NAMESPACE

const OSG::BitVector DeferredRenderingViewportBase::MTInfluenceMask =
    (Inherited::MTInfluenceMask) |
    (static_cast<BitVector>(0x0) << Inherited::NextFieldId);

// The prototype factory returns the generic pointer type the registry expects.
static FieldContainerPtr createDeferredRenderingViewportPrototype(void)
{
    return DeferredRenderingViewportBase::createEmpty();
}

FieldContainerType DeferredRenderingViewportBase::_type(
    "DeferredRenderingViewport",
    "Viewport",
    NULL,
    &createDeferredRenderingViewportPrototype,
    DeferredRenderingViewport::initMethod,
    NULL,
    0);

FieldContainerType &DeferredRenderingViewportBase::getClassType(void)
{
    return _type;
}

UInt32 DeferredRenderingViewportBase::getClassTypeId(void)
{
    return _type.getId();
}

FieldContainerType &DeferredRenderingViewportBase::getType(void)
{
    return _type;
}

const FieldContainerType &DeferredRenderingViewportBase::getType(void) const
{
    return _type;
}

UInt32 DeferredRenderingViewportBase::getContainerSize(void) const
{
    return sizeof(DeferredRenderingViewport);
}

FieldContainerPtr DeferredRenderingViewportBase::shallowCopy(void) const
{
    DeferredRenderingViewportPtr returnValue;

    newPtr(returnValue, dynamic_cast<const DeferredRenderingViewport *>(this));

    return returnValue;
}

DeferredRenderingViewportPtr DeferredRenderingViewportBase::create(void)
{
    DeferredRenderingViewportPtr fc;

    if(getClassType().getPrototype() != OSG::NullFC)
    {
        fc = DeferredRenderingViewportPtr::dcast(
            getClassType().getPrototype()->shallowCopy());
    }

    return fc;
}

DeferredRenderingViewportPtr DeferredRenderingViewportBase::createEmpty(void)
{
    DeferredRenderingViewportPtr returnValue;

    newPtr(returnValue);

    return returnValue;
}

void DeferredRenderingViewportBase::executeSync(FieldContainer &other,
                                                const BitVector &whichField)
{
    this->executeSyncImpl(static_cast<DeferredRenderingViewportBase *>(&other),
                          whichField);
}

DeferredRenderingViewportBase::DeferredRenderingViewportBase(void) :
    Inherited()
{
}

DeferredRenderingViewportBase::DeferredRenderingViewportBase(
    const DeferredRenderingViewportBase &source) :
    Inherited(source)
{
}

DeferredRenderingViewportBase::~DeferredRenderingViewportBase(void)
{
}

UInt32 DeferredRenderingViewportBase::getBinSize(const BitVector &whichField)
{
    return Inherited::getBinSize(whichField);
}

void DeferredRenderingViewportBase::copyToBin(BinaryDataHandler &pMem,
                                              const BitVector   &whichField)
{
    Inherited::copyToBin(pMem, whichField);
}

void DeferredRenderingViewportBase::copyFromBin(BinaryDataHandler &pMem,
                                                const BitVector   &whichField)
{
    Inherited::copyFromBin(pMem, whichField);
}

void DeferredRenderingViewportBase::executeSyncImpl(
    DeferredRenderingViewportBase *pOther, const BitVector &whichField)
{
    Inherited::executeSyncImpl(static_cast<Inherited *>(pOther), whichField);
}

DataType FieldDataTraits<DeferredRenderingViewportPtr>::_type(
    "DeferredRenderingViewportPtr", "ViewportPtr");

OSG_DLLEXPORT_SFIELD_DEF1(DeferredRenderingViewportPtr, OSG_LUMORA_DLLTMPLMAPPING);
OSG_DLLEXPORT_MFIELD_DEF1(DeferredRenderingViewportPtr, OSG_LUMORA_DLLTMPLMAPPING);

OSG_END_NAMESPACE
