#include <OpenSG/OSGStatisticsForeground.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(StatisticsForeground, "Foreground")

StatisticsForeground::StatisticsForeground(void) :
    Inherited(),
    _mfElementIDs(),
    _sfCollector ()
{
}

StatisticsForeground::StatisticsForeground(const StatisticsForeground &source) :
    Inherited(source),
    _mfElementIDs(source._mfElementIDs),
    _sfCollector (source._sfCollector)
{
}

StatisticsForeground::~StatisticsForeground(void)
{
}

void StatisticsForeground::dump(UInt32, const BitVector) const
{
    SLOG << "StatisticsForeground with " << _mfElementIDs.size() << " elements"
         << std::endl;
}

} // namespace osg
