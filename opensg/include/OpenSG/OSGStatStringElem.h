#ifndef _OSGSTATSTRINGELEM_H_
#define _OSGSTATSTRINGELEM_H_

#include <OpenSG/OSGStatElem.h>

namespace osg
{

// A message or state; adding appends.
class StatStringElem : public StatElem
{
  public:
    static const char *getClassname(void) { return "StatStringElem"; }
    static StatElem   *create(StatElemDescBase *desc);

    const std::string &get(void) const              { return _value; }
    void               set(const std::string &value) { _value = value; }
    void               set(const Char8 *value)       { _value = value != NULL ? value : ""; }

    virtual void   reset        (void) override;
    virtual void   putToString  (std::string &str, const char *format = NULL) const override;
    virtual bool   getFromString(const Char8 *&inVal) override;
    virtual Real64 getValue     (void) const override;

    bool operator <(const StatStringElem &other) const;

    virtual StatElem *clone(void) const override;
    virtual StatElem &operator +=(const StatElem &other) override;

  protected:
    StatStringElem(StatElemDescBase *desc);
    virtual ~StatStringElem(void);

  private:
    StatStringElem(const StatStringElem &source);
    StatStringElem &operator =(const StatStringElem &source);

    std::string _value;
};

typedef StatStringElem *StatStringElemP;

} // namespace osg

#endif
