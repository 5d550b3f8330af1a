#ifndef _OSGFOREGROUNDFIELDS_H_
#define _OSGFOREGROUNDFIELDS_H_

#include <OpenSG/OSGAttachmentContainer.h>

namespace osg
{
OSG_FC_PTR_DECL(Foreground, AttachmentContainerPtr)
}

#endif
