#include <OpenSG/OSGGeoProperty.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(GeoPositions, "Attachment")
OSG_FC_ABSTRACT_IMPL(GeoNormals,   "Attachment")
OSG_FC_ABSTRACT_IMPL(GeoColors,    "Attachment")
OSG_FC_ABSTRACT_IMPL(GeoTexCoords, "Attachment")
OSG_FC_ABSTRACT_IMPL(GeoIndices,   "Attachment")
OSG_FC_ABSTRACT_IMPL(GeoPTypes,    "Attachment")
OSG_FC_ABSTRACT_IMPL(GeoPLengths,  "Attachment")

template <class PropertyT>
static FieldContainerPtr createPrototype(void)
{
    return PropertyT::createEmpty();
}

// The type objects live at namespace scope so that they register with the
// factory at load time, before osgInit creates the prototypes.
#define OSG_GEO_PROPERTY_TYPE(NAME, INTERFACE)                                     \
    static FieldContainerType s_type##NAME(                                        \
        #NAME, #INTERFACE, NULL,                                                   \
        &createPrototype<NAME>, &NAME::initMethod);                                \
    FieldContainerType &NAME##PropertyDesc::getType(void) { return s_type##NAME; }

OSG_GEO_PROPERTY_TYPE(GeoPositions2f, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions3f, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions4f, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions2d, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions3d, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions4d, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions2s, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions3s, GeoPositions)
OSG_GEO_PROPERTY_TYPE(GeoPositions4s, GeoPositions)

OSG_GEO_PROPERTY_TYPE(GeoNormals3f, GeoNormals)
OSG_GEO_PROPERTY_TYPE(GeoNormals3s, GeoNormals)
OSG_GEO_PROPERTY_TYPE(GeoNormals3b, GeoNormals)

OSG_GEO_PROPERTY_TYPE(GeoColors3f,  GeoColors)
OSG_GEO_PROPERTY_TYPE(GeoColors4f,  GeoColors)
OSG_GEO_PROPERTY_TYPE(GeoColors3ub, GeoColors)
OSG_GEO_PROPERTY_TYPE(GeoColors4ub, GeoColors)

OSG_GEO_PROPERTY_TYPE(GeoTexCoords1f, GeoTexCoords)
OSG_GEO_PROPERTY_TYPE(GeoTexCoords2f, GeoTexCoords)
OSG_GEO_PROPERTY_TYPE(GeoTexCoords3f, GeoTexCoords)
OSG_GEO_PROPERTY_TYPE(GeoTexCoords4f, GeoTexCoords)
OSG_GEO_PROPERTY_TYPE(GeoTexCoords1d, GeoTexCoords)
OSG_GEO_PROPERTY_TYPE(GeoTexCoords2d, GeoTexCoords)
OSG_GEO_PROPERTY_TYPE(GeoTexCoords3d, GeoTexCoords)
OSG_GEO_PROPERTY_TYPE(GeoTexCoords4d, GeoTexCoords)

OSG_GEO_PROPERTY_TYPE(GeoIndicesUI16, GeoIndices)
OSG_GEO_PROPERTY_TYPE(GeoIndicesUI32, GeoIndices)

OSG_GEO_PROPERTY_TYPE(GeoPTypesUI8, GeoPTypes)

OSG_GEO_PROPERTY_TYPE(GeoPLengthsUI8,  GeoPLengths)
OSG_GEO_PROPERTY_TYPE(GeoPLengthsUI16, GeoPLengths)
OSG_GEO_PROPERTY_TYPE(GeoPLengthsUI32, GeoPLengths)

#undef OSG_GEO_PROPERTY_TYPE

} // namespace osg
