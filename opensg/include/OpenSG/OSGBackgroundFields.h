#ifndef _OSGBACKGROUNDFIELDS_H_
#define _OSGBACKGROUNDFIELDS_H_

#include <OpenSG/OSGAttachmentContainer.h>

namespace osg
{
OSG_FC_PTR_DECL(Background, AttachmentContainerPtr)
}

#endif
