#ifndef _OSGIMAGEBASE_H_
#define _OSGIMAGEBASE_H_

// ImageBase: the field ids, masks and accessors, declared with Image itself.
#include <OpenSG/OSGImage.h>

#endif
