#ifndef _OSGSIMPLESTATISTICSFOREGROUNDBASE_H_
#define _OSGSIMPLESTATISTICSFOREGROUNDBASE_H_

// SimpleStatisticsForegroundBase: the field ids, masks and accessors, declared with SimpleStatisticsForeground itself.
#include <OpenSG/OSGSimpleStatisticsForeground.h>

#endif
