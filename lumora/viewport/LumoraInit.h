#ifndef _LUMORA_LUMORAINIT_H_
#define _LUMORA_LUMORAINIT_H_

#include <OpenSG/OSGConfig.h>

OSG_BEGIN_NAMESPACE

// Registration happens when the library is loaded; calling this only makes
// sure the linker keeps the library.
void initLumora(void);

OSG_END_NAMESPACE

#endif
