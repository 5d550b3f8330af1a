#ifndef _OSGSTATINTELEM_H_
#define _OSGSTATINTELEM_H_

#include <OpenSG/OSGStatElem.h>

namespace osg
{

// A counter.
class StatIntElem : public StatElem
{
  public:
    static const char *getClassname(void) { return "StatIntElem"; }
    static StatElem   *create(StatElemDescBase *desc);

    void  set(Int32 value) { _value = value; }
    Int32 get(void) const  { return _value;  }
    void  add(Int32 v)     { _value += v;    }
    void  sub(Int32 v)     { _value -= v;    }
    void  inc(void)        { ++_value;       }
    void  dec(void)        { --_value;       }

    virtual void   reset        (void) override;
    virtual void   putToString  (std::string &str, const char *format = NULL) const override;
    virtual bool   getFromString(const Char8 *&inVal) override;
    virtual Real64 getValue     (void) const override;

    bool operator <(const StatIntElem &other) const;

    virtual StatElem *clone(void) const override;
    virtual StatElem &operator +=(const StatElem &other) override;

  protected:
    StatIntElem(StatElemDescBase *desc);
    virtual ~StatIntElem(void);

  private:
    StatIntElem(const StatIntElem &source);
    StatIntElem &operator =(const StatIntElem &source);

    Int32 _value;
};

typedef StatIntElem *StatIntElemP;

} // namespace osg

#endif
