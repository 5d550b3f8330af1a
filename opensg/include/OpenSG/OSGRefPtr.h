#ifndef _OSGREFPTR_H_
#define _OSGREFPTR_H_

#include <OpenSG/OSGFieldContainerPtr.h>

namespace osg
{

// Holds one reference on the container for as long as it points to it.
template <class Ref>
class RefPtr
{
  public:
    typedef typename Ref::StoredObjectType StoredObjectType;

    RefPtr(void) : _ref() {}
    explicit RefPtr(const Ref &ref) : _ref(ref) { addRefCP(_ref); }
    RefPtr(const RefPtr &other) : _ref(other._ref) { addRefCP(_ref); }
    ~RefPtr(void) { subRefCP(_ref); }

    RefPtr &operator =(const Ref &ref)
    {
        setRefdCP(_ref, ref);
        return *this;
    }
    RefPtr &operator =(const RefPtr &other)
    {
        setRefdCP(_ref, other._ref);
        return *this;
    }
    RefPtr &operator =(const NullFieldContainerPtr &)
    {
        clearRefCP(_ref);
        return *this;
    }

    operator Ref(void) const { return _ref; }
    StoredObjectType *operator->(void) const { return _ref.operator->(); }
    Ref get(void) const { return _ref; }

    bool operator ==(const FieldContainerPtrBase &other) const { return _ref == other; }
    bool operator !=(const FieldContainerPtrBase &other) const { return _ref != other; }
    bool operator !(void) const { return !_ref; }

  private:
    Ref _ref;
};

} // namespace osg

#endif
