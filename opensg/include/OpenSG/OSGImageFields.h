#ifndef _OSGIMAGEFIELDS_H_
#define _OSGIMAGEFIELDS_H_

#include <OpenSG/OSGImage.h>

#endif
