#ifndef _OSGGL_H_
#define _OSGGL_H_

// GL entry points come from libepoxy so that every extension is reachable.
#include <epoxy/gl.h>

#endif
