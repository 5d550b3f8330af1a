#ifndef _OSGSTATCOLLECTOR_H_
#define _OSGSTATCOLLECTOR_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGStatElemDesc.h>
#include <OpenSG/OSGStatElem.h>

#include <string>
#include <vector>

namespace osg
{

// Holds one element for each StatElemDesc asked for, indexed by the
// descriptor's id; elements are made on first request.
class StatCollector
{
  public:
    static const char *getClassname(void) { return "StatCollector"; }

    UInt32    getNumOfElems(void) const { return UInt32(_elemVec.size()); }
    void      refitElemNum (void);
    void      clearElems   (void);
    bool      isValidID    (Int32 elemId) const
    { return elemId >= 0 && elemId < Int32(_elemVec.size()); }
    void      reset        (void);

    StatElem *getElem(Int32 elemId) const
    { return isValidID(elemId) ? _elemVec[elemId] : NULL; }
    StatElem *getElem(Int32 elemId, bool create = true);
    StatElem *getElem(StatElemDescBase &desc, bool create = true)
    { return getElem(desc.getID(), create); }
    template <class T>
    T        *getElem(StatElemDesc<T> &desc, bool create = true)
    { return static_cast<T *>(getElem(desc.getID(), create)); }

    void putToString  (std::string &outVal) const;
    bool getFromString(const Char8 *&inVal);
    bool getValue     (std::string &name, Real64 &val);

    StatCollector(void);
    StatCollector(const StatCollector &source);
    static StatCollector *create(void);
    const StatCollector &operator =(const StatCollector &source);

    virtual ~StatCollector(void);

    bool operator <(const StatCollector &other) const;

    StatCollector  operator + (const StatCollector &other);
    StatCollector &operator +=(const StatCollector &other);

  private:
    std::vector<StatElem *> _elemVec;
};

typedef StatCollector *StatCollectorP;

} // namespace osg

#endif
