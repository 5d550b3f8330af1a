#ifndef _OSGSTATELEMDESC_H_
#define _OSGSTATELEMDESC_H_

#include <OpenSG/OSGBaseTypes.h>

#include <vector>

namespace osg
{

class StatElem;

// Names one statistic for the whole program: every descriptor gets the
// next id, which indexes the elements of every StatCollector.
class StatElemDescBase
{
    friend class StatCollector;

  public:
    static bool              isValidID     (Int32 descId);
    static StatElemDescBase *getDesc       (Int32 descId);
    static StatElemDescBase *findDescByName(const Char8 *name);
    static Int32             getNumOfDescs (void);
    static const Char8      *getClassname  (void) { return "StatElemDescBase"; }
    static void              printAll      (void);

    void print(void);

    Int32           getID         (void) { return _id;          }
    const IDString &getName       (void) { return _name;        }
    const IDString &getDescription(void) { return _description; }

    StatElemDescBase(const Char8 *name, const Char8 *description);
    virtual ~StatElemDescBase(void);

    bool operator <(const StatElemDescBase &other) const;

  private:
    StatElemDescBase(const StatElemDescBase &source);
    StatElemDescBase &operator =(const StatElemDescBase &source);

    virtual StatElem *createElem(void) = 0;

    static std::vector<StatElemDescBase *> *_descVec;

    Int32    _id;
    IDString _name;
    IDString _description;
};

template <class Type>
class StatElemDesc : public StatElemDescBase
{
  public:
    StatElemDesc(const Char8 *name, const Char8 *description) :
        StatElemDescBase(name, description) {}
    virtual ~StatElemDesc(void) {}

  private:
    StatElemDesc(const StatElemDesc &source);
    StatElemDesc &operator =(const StatElemDesc &source);

    virtual StatElem *createElem(void) { return Type::create(this); }
};

typedef StatElemDescBase *StatElemDescBaseP;

} // namespace osg

#endif
