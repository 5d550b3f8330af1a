#ifndef _OSGDRAWABLEBASE_H_
#define _OSGDRAWABLEBASE_H_

// DrawableBase: the field ids, masks and accessors, declared with Drawable itself.
#include <OpenSG/OSGDrawable.h>

#endif
