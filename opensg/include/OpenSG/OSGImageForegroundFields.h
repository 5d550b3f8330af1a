#ifndef _OSGIMAGEFOREGROUNDFIELDS_H_
#define _OSGIMAGEFOREGROUNDFIELDS_H_

#include <OpenSG/OSGImageForeground.h>

#endif
