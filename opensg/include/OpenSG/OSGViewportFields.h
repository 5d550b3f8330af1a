#ifndef _OSGVIEWPORTFIELDS_H_
#define _OSGVIEWPORTFIELDS_H_

#include <OpenSG/OSGAttachmentContainer.h>

namespace osg
{
OSG_FC_PTR_DECL(Viewport, AttachmentContainerPtr)
}

#endif
