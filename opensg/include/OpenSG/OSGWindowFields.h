#ifndef _OSGWINDOWFIELDS_H_
#define _OSGWINDOWFIELDS_H_

#include <OpenSG/OSGAttachmentContainer.h>

namespace osg
{
OSG_FC_PTR_DECL(Window, AttachmentContainerPtr)
}

#endif
