#ifndef _OSGIMAGEFOREGROUNDBASE_H_
#define _OSGIMAGEFOREGROUNDBASE_H_

// ImageForegroundBase: the field ids, masks and accessors, declared with ImageForeground itself.
#include <OpenSG/OSGImageForeground.h>

#endif
