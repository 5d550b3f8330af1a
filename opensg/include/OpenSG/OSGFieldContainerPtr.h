#ifndef _OSGFIELDCONTAINERPTR_H_
#define _OSGFIELDCONTAINERPTR_H_

#include <OpenSG/OSGBaseTypes.h>

#include <ostream>

namespace osg
{

class FieldContainer;
class NullFieldContainerPtr;

namespace FieldBits
{
    const BitVector AllFields = 0xffffffffffffffffULL;
    const BitVector NoField   = 0;
    const BitVector Field0  = BitVector(1) << 0;   const BitVector Field1  = BitVector(1) << 1;
    const BitVector Field2  = BitVector(1) << 2;   const BitVector Field3  = BitVector(1) << 3;
    const BitVector Field4  = BitVector(1) << 4;   const BitVector Field5  = BitVector(1) << 5;
    const BitVector Field6  = BitVector(1) << 6;   const BitVector Field7  = BitVector(1) << 7;
    const BitVector Field8  = BitVector(1) << 8;   const BitVector Field9  = BitVector(1) << 9;
    const BitVector Field10 = BitVector(1) << 10;  const BitVector Field11 = BitVector(1) << 11;
    const BitVector Field12 = BitVector(1) << 12;  const BitVector Field13 = BitVector(1) << 13;
    const BitVector Field14 = BitVector(1) << 14;  const BitVector Field15 = BitVector(1) << 15;
    const BitVector Field16 = BitVector(1) << 16;  const BitVector Field17 = BitVector(1) << 17;
    const BitVector Field18 = BitVector(1) << 18;  const BitVector Field19 = BitVector(1) << 19;
    const BitVector Field20 = BitVector(1) << 20;  const BitVector Field21 = BitVector(1) << 21;
    const BitVector Field22 = BitVector(1) << 22;  const BitVector Field23 = BitVector(1) << 23;
    const BitVector Field24 = BitVector(1) << 24;  const BitVector Field25 = BitVector(1) << 25;
    const BitVector Field26 = BitVector(1) << 26;  const BitVector Field27 = BitVector(1) << 27;
    const BitVector Field28 = BitVector(1) << 28;  const BitVector Field29 = BitVector(1) << 29;
    const BitVector Field30 = BitVector(1) << 30;  const BitVector Field31 = BitVector(1) << 31;
}

namespace ChangedOrigin
{
    const UInt32 External         = 0x0001;
    const UInt32 Sync             = 0x0002;
    const UInt32 Child            = 0x0004;
    const UInt32 Abstract         = 0x0008;
    const UInt32 AbstrIgnoreCore  = 0x0100;
    const UInt32 AbstrIgnoreChild = 0x0200;
    const UInt32 AbstrCheckValid  = 0x0400;
    const UInt32 AbstrIncRefCount = 0x0800;
}

// With a single aspect the pointer is the address of the one copy.
class FieldContainerPtrBase
{
  public:
    typedef FieldContainer StoredObjectType;
    typedef void (FieldContainerPtrBase::*unspecified_bool_type)(void) const;

    FieldContainerPtrBase(void) : _storeP(NULL) {}

    Int32           getRefCount        (void) const;
    UInt32          getFieldContainerId(void) const;
    UInt16          getContainerSize   (void) const;
    FieldContainer *getBaseCPtr        (void) const { return _storeP; }
    FieldContainer *getAspectCPtr      (UInt32) const { return _storeP; }

    bool operator < (const FieldContainerPtrBase &other) const { return _storeP <  other._storeP; }
    bool operator ==(const FieldContainerPtrBase &other) const { return _storeP == other._storeP; }
    bool operator !=(const FieldContainerPtrBase &other) const { return _storeP != other._storeP; }
    bool operator ! (void) const { return _storeP == NULL; }
    operator unspecified_bool_type(void) const
    { return _storeP != NULL ? &FieldContainerPtrBase::boolDummy : NULL; }

    void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

  protected:
    friend struct ContainerPtrAccess;

    explicit FieldContainerPtrBase(const FieldContainer *source) :
        _storeP(const_cast<FieldContainer *>(source)) {}

    void boolDummy(void) const {}

    FieldContainer *_storeP;
};

// Reads and writes the container of any pointer type; the fields use it to
// offer their pointers generically. The writer checks no type.
struct ContainerPtrAccess
{
    static FieldContainer *get(const FieldContainerPtrBase &ptr) { return ptr._storeP; }
    static void set(FieldContainerPtrBase &ptr, FieldContainer *fc) { ptr._storeP = fc; }
};

class FieldContainerPtr : public FieldContainerPtrBase
{
  public:
    typedef FieldContainer StoredObjectType;
    typedef FieldContainerPtr ObjectType;

    FieldContainerPtr(void) : FieldContainerPtrBase() {}
    FieldContainerPtr(const NullFieldContainerPtr &);
    explicit FieldContainerPtr(const FieldContainer &source) : FieldContainerPtrBase(&source) {}
    explicit FieldContainerPtr(const FieldContainer *source) : FieldContainerPtrBase(source) {}

    template <class InTypeT>
    static FieldContainerPtr dcast(const InTypeT oIn)
    { return FieldContainerPtr(oIn.getBaseCPtr()); }

    FieldContainer *operator->(void) const { return _storeP; }
    FieldContainer &operator* (void) const { return *_storeP; }
    FieldContainer *getCPtr   (void) const { return _storeP; }
};

class NullFieldContainerPtr : public FieldContainerPtr
{
  public:
    NullFieldContainerPtr(void) : FieldContainerPtr() {}
};

inline FieldContainerPtr::FieldContainerPtr(const NullFieldContainerPtr &) :
    FieldContainerPtrBase()
{
}

extern const NullFieldContainerPtr NullFC;

// Typed pointer: BasePtrTypeT is the parent class's pointer type, so
// up-casts are implicit and down-casts go through dcast.
template <class BasePtrTypeT, class FieldContainerTypeT>
class FCPtr : public BasePtrTypeT
{
  public:
    typedef FieldContainerTypeT StoredObjectType;
    typedef FCPtr               ObjectType;
    typedef BasePtrTypeT        Inherited;

    FCPtr(void) : BasePtrTypeT() {}
    FCPtr(const NullFieldContainerPtr &) : BasePtrTypeT() {}
    explicit FCPtr(const FieldContainerTypeT &source) : BasePtrTypeT() { this->_storeP = upcast(&source); }
    explicit FCPtr(const FieldContainerTypeT *source) : BasePtrTypeT() { this->_storeP = upcast(source); }

    template <class InTypeT>
    static FCPtr dcast(const InTypeT oIn)
    {
        return FCPtr(dynamic_cast<const FieldContainerTypeT *>(oIn.getBaseCPtr()));
    }

    FieldContainerTypeT *operator->(void) const { return static_cast<FieldContainerTypeT *>(this->_storeP); }
    FieldContainerTypeT &operator* (void) const { return *static_cast<FieldContainerTypeT *>(this->_storeP); }
    FieldContainerTypeT *getCPtr   (void) const { return static_cast<FieldContainerTypeT *>(this->_storeP); }

  private:
    static FieldContainer *upcast(const FieldContainerTypeT *p)
    { return const_cast<FieldContainerTypeT *>(p); }
};

template <class PtrT>
typename PtrT::StoredObjectType *getCPtr(const PtrT &ptr) { return ptr.getCPtr(); }

template <class PtrT>
Int32 getRefCount(const PtrT &ptr) { return ptr.getRefCount(); }

template <class PtrT>
UInt32 getContainerId(const PtrT &ptr) { return ptr.getFieldContainerId(); }

template <class OutPtrT>
OutPtrT dynamic_pointer_cast(const FieldContainerPtrBase &in) { return OutPtrT::dcast(in); }

void addRefCP  (const FieldContainerPtrBase &objectP);
void subRefCP  (const FieldContainerPtrBase &objectP);
void setRefdCP (FieldContainerPtrBase &objectP, const FieldContainerPtrBase &newObjectP);
void clearRefCP(FieldContainerPtrBase &objectP);

template <class PtrT> void addRef(const PtrT &p) { addRefCP(p); }
template <class PtrT> void subRef(const PtrT &p) { subRefCP(p); }

void beginEditCP        (const FieldContainerPtr &objectP,
                         BitVector whichField = FieldBits::AllFields,
                         UInt32    origin     = ChangedOrigin::External);
void endEditCP          (const FieldContainerPtr &objectP,
                         BitVector whichField = FieldBits::AllFields,
                         UInt32    origin     = ChangedOrigin::External);
void changedCP          (const FieldContainerPtr &objectP,
                         BitVector whichField = FieldBits::AllFields,
                         UInt32    origin     = ChangedOrigin::External);
void endEditNotChangedCP(const FieldContainerPtr &objectP,
                         BitVector whichField = FieldBits::AllFields,
                         UInt32    origin     = ChangedOrigin::External);

class CPEditor
{
  public:
    CPEditor(void) : _fc(), _mask(FieldBits::NoField) {}
    CPEditor(const FieldContainerPtr fc, const BitVector mask = FieldBits::AllFields) :
        _fc(fc), _mask(mask) { beginEditCP(_fc, _mask); }
    ~CPEditor(void) { endEditCP(_fc, _mask); }

  private:
    CPEditor(const CPEditor &) = delete;
    CPEditor &operator =(const CPEditor &) = delete;

    FieldContainerPtr _fc;
    BitVector         _mask;
};

std::ostream &operator <<(std::ostream &os, const FieldContainerPtrBase &fc);

} // namespace osg

#define CPEdit(fc, mask) ::OSG::CPEditor CPEdit_##fc((fc),(mask))
#define CPEditAll(fc)    ::OSG::CPEditor CPEdit_##fc((fc))

#endif
