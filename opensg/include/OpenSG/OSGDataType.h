#ifndef _OSGDATATYPE_H_
#define _OSGDATATYPE_H_

#include <OpenSG/OSGTypeBase.h>

#endif
