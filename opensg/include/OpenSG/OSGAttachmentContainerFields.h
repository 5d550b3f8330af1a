#ifndef _OSGATTACHMENTCONTAINERFIELDS_H_
#define _OSGATTACHMENTCONTAINERFIELDS_H_

#include <OpenSG/OSGFieldContainer.h>

namespace osg
{
OSG_FC_PTR_DECL(AttachmentContainer, FieldContainerPtr)
}

#endif
