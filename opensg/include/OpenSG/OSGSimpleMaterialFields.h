#ifndef _OSGSIMPLEMATERIALFIELDS_H_
#define _OSGSIMPLEMATERIALFIELDS_H_

#include <OpenSG/OSGSimpleMaterial.h>

#endif
