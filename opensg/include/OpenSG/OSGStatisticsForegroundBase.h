#ifndef _OSGSTATISTICSFOREGROUNDBASE_H_
#define _OSGSTATISTICSFOREGROUNDBASE_H_

// StatisticsForegroundBase: the field ids, masks and accessors, declared with StatisticsForeground itself.
#include <OpenSG/OSGStatisticsForeground.h>

#endif
