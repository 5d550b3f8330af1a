#ifndef _OSGSIMPLETEXTUREDMATERIALBASE_H_
#define _OSGSIMPLETEXTUREDMATERIALBASE_H_

// SimpleTexturedMaterialBase: the field ids, masks and accessors, declared with SimpleTexturedMaterial itself.
#include <OpenSG/OSGSimpleTexturedMaterial.h>

#endif
