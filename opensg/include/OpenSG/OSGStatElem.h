#ifndef _OSGSTATELEM_H_
#define _OSGSTATELEM_H_

#include <OpenSG/OSGBaseTypes.h>

#include <string>

namespace osg
{

class StatElemDescBase;

// One measured value of a StatCollector; its type decides how it counts
// and prints.
class StatElem
{
  public:
    static const char *getClassname(void) { return "StatElem"; }

    bool              isOn   (void) const { return _on;   }
    void              setOn  (bool on)    { _on = on;     }
    StatElemDescBase *getDesc(void) const { return _desc; }

    virtual void   putToString  (std::string &str, const char *format = NULL) const = 0;
    virtual bool   getFromString(const Char8 *&inVal) = 0;
    virtual Real64 getValue     (void) const = 0;
    virtual void   reset        (void) = 0;

    virtual ~StatElem(void);

    bool operator <(const StatElem &other) const;

    virtual StatElem *clone(void) const = 0;
    virtual StatElem &operator +=(const StatElem &other) = 0;

  protected:
    StatElem(StatElemDescBase *desc);

  private:
    StatElem(const StatElem &source);
    StatElem &operator =(const StatElem &source);

    bool              _on;
    StatElemDescBase *_desc;
};

typedef StatElem *StatElemP;

} // namespace osg

#endif
