#ifndef _OSGTIME_H_
#define _OSGTIME_H_

#include <OpenSG/OSGBaseTypes.h>

namespace osg
{

// Seconds on a monotonic clock; only differences mean anything.
Time getSystemTime(void);

} // namespace osg

#endif
