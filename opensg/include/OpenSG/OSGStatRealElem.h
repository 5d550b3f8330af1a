#ifndef _OSGSTATREALELEM_H_
#define _OSGSTATREALELEM_H_

#include <OpenSG/OSGStatElem.h>

namespace osg
{

// A real value.
class StatRealElem : public StatElem
{
  public:
    static const char *getClassname(void) { return "StatRealElem"; }
    static StatElem   *create(StatElemDescBase *desc);

    void   set(Real32 value) { _value = value; }
    Real32 get(void) const   { return _value;  }
    void   add(Real32 v)     { _value += v;    }
    void   sub(Real32 v)     { _value -= v;    }

    virtual void   reset        (void) override;
    virtual void   putToString  (std::string &str, const char *format = NULL) const override;
    virtual bool   getFromString(const Char8 *&inVal) override;
    virtual Real64 getValue     (void) const override;

    bool operator <(const StatRealElem &other) const;

    virtual StatElem *clone(void) const override;
    virtual StatElem &operator +=(const StatElem &other) override;

  protected:
    StatRealElem(StatElemDescBase *desc);
    virtual ~StatRealElem(void);

  private:
    StatRealElem(const StatRealElem &source);
    StatRealElem &operator =(const StatRealElem &source);

    Real32 _value;
};

typedef StatRealElem *StatRealElemP;

} // namespace osg

#endif
