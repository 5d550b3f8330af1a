#ifndef _OSGSIMPLEMATERIALBASE_H_
#define _OSGSIMPLEMATERIALBASE_H_

// SimpleMaterialBase: the field ids, masks and accessors, declared with SimpleMaterial itself.
#include <OpenSG/OSGSimpleMaterial.h>

#endif
