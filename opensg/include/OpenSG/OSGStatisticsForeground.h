#ifndef _OSGSTATISTICSFOREGROUND_H_
#define _OSGSTATISTICSFOREGROUND_H_

#include <OpenSG/OSGForeground.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGStatCollectorFields.h>

namespace osg
{

OSG_FC_PTR_DECL(StatisticsForeground, ForegroundPtr)

// Base of the foregrounds that show a StatCollector: ElementIDs picks the
// StatElemDesc ids to show, all elements of Collector when empty.
class StatisticsForeground : public Foreground
{
    OSG_FC_ABSTRACT_DECL(StatisticsForeground, Foreground)

  public:
    enum
    {
        ElementIDsFieldId = Inherited::NextFieldId,
        CollectorFieldId  = ElementIDsFieldId + 1,
        NextFieldId       = CollectorFieldId + 1
    };
    OSG_FIELD_MASK(ElementIDs)
    OSG_FIELD_MASK(Collector)

    OSG_MFIELD(MFInt32,         ElementIDs)
    OSG_SFIELD(SFStatCollector, Collector)

  public:
    virtual void draw(DrawActionBase *action, Viewport *port) override = 0;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    StatisticsForeground(void);
    StatisticsForeground(const StatisticsForeground &source);
    virtual ~StatisticsForeground(void);
};

} // namespace osg

#endif
