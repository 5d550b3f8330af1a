#ifndef _OSGGEOPROPPTRS_H_
#define _OSGGEOPROPPTRS_H_

#include <OpenSG/OSGAttachment.h>

namespace osg
{

OSG_FC_PTR_DECL(GeoPositions, AttachmentPtr)
OSG_FC_PTR_DECL(GeoNormals,   AttachmentPtr)
OSG_FC_PTR_DECL(GeoColors,    AttachmentPtr)
OSG_FC_PTR_DECL(GeoTexCoords, AttachmentPtr)
OSG_FC_PTR_DECL(GeoIndices,   AttachmentPtr)
OSG_FC_PTR_DECL(GeoPTypes,    AttachmentPtr)
OSG_FC_PTR_DECL(GeoPLengths,  AttachmentPtr)

} // namespace osg

#include <OpenSG/OSGGeoProperty.h>

#endif
