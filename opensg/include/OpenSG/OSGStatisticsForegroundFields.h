#ifndef _OSGSTATISTICSFOREGROUNDFIELDS_H_
#define _OSGSTATISTICSFOREGROUNDFIELDS_H_

#include <OpenSG/OSGStatisticsForeground.h>

#endif
