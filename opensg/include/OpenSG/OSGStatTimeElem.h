#ifndef _OSGSTATTIMEELEM_H_
#define _OSGSTATTIMEELEM_H_

#include <OpenSG/OSGStatElem.h>
#include <OpenSG/OSGTime.h>

namespace osg
{

// Sums the time between start() and stop() calls, in seconds.
class StatTimeElem : public StatElem
{
  public:
    static const char *getClassname(void) { return "StatTimeElem"; }
    static StatElem   *create(StatElemDescBase *desc);

    const Time &start  (void)       { return (_startTime = getSystemTime()); }
    const Time &stop   (void)       { return (_time += getSystemTime() - _startTime); }
    const Time &getTime(void) const { return _time; }

    virtual void   reset        (void) override;
    // Besides printf formats: "%ms" prints milliseconds with two
    // decimals, "%r" (e.g. "%r.3f") the rate, one over the time.
    virtual void   putToString  (std::string &str, const char *format = NULL) const override;
    virtual bool   getFromString(const Char8 *&inVal) override;
    virtual Real64 getValue     (void) const override;

    bool operator <(const StatTimeElem &other) const;

    virtual StatElem *clone(void) const override;
    virtual StatElem &operator +=(const StatElem &other) override;

  protected:
    StatTimeElem(StatElemDescBase *desc);
    virtual ~StatTimeElem(void);

  private:
    StatTimeElem(const StatTimeElem &source);
    StatTimeElem &operator =(const StatTimeElem &source);

    Time _startTime;
    Time _time;
};

typedef StatTimeElem *StatTimeElemP;

} // namespace osg

#endif
