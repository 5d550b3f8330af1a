#ifndef _OSGTRANSFORMBASE_H_
#define _OSGTRANSFORMBASE_H_

// TransformBase: the field ids, masks and accessors, declared with Transform itself.
#include <OpenSG/OSGTransform.h>

#endif
