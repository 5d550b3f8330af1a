#ifndef _OSGSTATCOLLECTORFIELDS_H_
#define _OSGSTATCOLLECTORFIELDS_H_

#include <OpenSG/OSGStatCollector.h>
#include <OpenSG/OSGFieldDataType.h>
#include <OpenSG/OSGSField.h>

OSG_FIELD_DATA_TRAITS(FieldDataTraits, StatCollector, StatCollector)

namespace osg
{
typedef SField<StatCollector> SFStatCollector;
}

#endif
