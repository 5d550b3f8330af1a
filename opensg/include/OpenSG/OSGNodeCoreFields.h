#ifndef _OSGNODECOREFIELDS_H_
#define _OSGNODECOREFIELDS_H_

#include <OpenSG/OSGAttachmentContainer.h>

namespace osg
{
OSG_FC_PTR_DECL(NodeCore, AttachmentContainerPtr)
}

#endif
