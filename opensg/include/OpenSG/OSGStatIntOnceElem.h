#ifndef _OSGSTATINTONCEELEM_H_
#define _OSGSTATINTONCEELEM_H_

#include <OpenSG/OSGStatElem.h>

#include <set>

namespace osg
{

// A counter that takes each contributor's share once, e.g. a texture's
// bytes however often it is bound.
class StatIntOnceElem : public StatElem
{
  public:
    typedef std::set<UInt32> IdHash;

    static const char *getClassname(void) { return "StatIntOnceElem"; }
    static StatElem   *create(StatElemDescBase *desc);

    void  add(UInt32 contributorId, Int32 v);
    void  sub(UInt32 contributorId, Int32 v);
    void  inc(UInt32 contributorId);
    void  dec(UInt32 contributorId);
    Int32 get(void) const { return _value; }

    virtual void   reset        (void) override;
    virtual void   putToString  (std::string &str, const char *format = NULL) const override;
    virtual bool   getFromString(const Char8 *&inVal) override;
    virtual Real64 getValue     (void) const override;

    bool operator <(const StatIntOnceElem &other) const;

    virtual StatElem *clone(void) const override;
    virtual StatElem &operator +=(const StatElem &other) override;

  protected:
    StatIntOnceElem(StatElemDescBase *desc);
    virtual ~StatIntOnceElem(void);

  private:
    StatIntOnceElem(const StatIntOnceElem &source);
    StatIntOnceElem &operator =(const StatIntOnceElem &source);

    Int32  _value;
    IdHash _ids;
};

typedef StatIntOnceElem *StatIntOnceElemP;

} // namespace osg

#endif
