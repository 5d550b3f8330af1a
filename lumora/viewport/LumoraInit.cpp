#include "LumoraInit.h"

OSG_BEGIN_NAMESPACE

void initLumora(void)
{
}

OSG_END_NAMESPACE
