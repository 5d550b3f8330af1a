#include <OpenSG/OSGStatElem.h>

namespace osg
{

StatElem::StatElem(StatElemDescBase *desc) : _on(true), _desc(desc)
{
}

StatElem::~StatElem(void)
{
}

bool StatElem::operator <(const StatElem &other) const
{
    return this < &other;
}

} // namespace osg
