#include <OpenSG/OSGPrimitiveIterator.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

namespace
{

// The value at idx of a property, or the type's default when the property
// or the index is missing.
template <class PropPtrT, class ValueT>
ValueT valueAt(const PropPtrT &prop, Int32 idx)
{
    if(prop == NullFC || idx < 0 || UInt32(idx) >= prop->size())
        return ValueT();
    return ValueT(prop->getValue(UInt32(idx)));
}

bool hasAttribute(Geometry *geo, UInt16 mapBit)
{
    switch(mapBit)
    {
        case Geometry::MapPosition:       return geo->getPositions()       != NullFC;
        case Geometry::MapNormal:         return geo->getNormals()         != NullFC;
        case Geometry::MapColor:          return geo->getColors()          != NullFC;
        case Geometry::MapSecondaryColor: return geo->getSecondaryColors() != NullFC;
        case Geometry::MapTexCoords:      return geo->getTexCoords()       != NullFC;
        case Geometry::MapTexCoords1:     return geo->getTexCoords1()      != NullFC;
        case Geometry::MapTexCoords2:     return geo->getTexCoords2()      != NullFC;
        case Geometry::MapTexCoords3:     return geo->getTexCoords3()      != NullFC;
        default:                          return false;
    }
}

} // namespace

PrimitiveIterator::PrimitiveIterator(void) :
    _geo       (),
    _primIndex (0),
    _firstSlot (0),
    _type      (0),
    _length    (0),
    _numPrims  (0),
    _totalSlots(0),
    _ended     (true)
{
}

PrimitiveIterator::PrimitiveIterator(const GeometryPtr &geo) : PrimitiveIterator()
{
    setGeo(geo);
}

PrimitiveIterator::PrimitiveIterator(const NodePtr &node) : PrimitiveIterator()
{
    setGeo(node);
}

void PrimitiveIterator::setGeo(const GeometryPtr &geo)
{
    _geo = geo;
    PrimitiveIterator::setToBegin();
}

void PrimitiveIterator::setGeo(const NodePtr &node)
{
    GeometryPtr geo = node != NullFC ? GeometryPtr::dcast(node->getCore()) : GeometryPtr();
    if(geo == NullFC)
        SWARNING << "PrimitiveIterator::setGeo: the node has no geometry core" << std::endl;
    setGeo(geo);
}

void PrimitiveIterator::setToBegin(void)
{
    _primIndex  = 0;
    _firstSlot  = 0;
    _numPrims   = 0;
    _totalSlots = 0;
    _ended      = true;
    if(_geo == NullFC || _geo->getTypes() == NullFC || _geo->getPositions() == NullFC)
        return;

    GeoPLengthsPtr lengths = _geo->getLengths();
    if(lengths != NullFC)
    {
        _numPrims = osgMin(_geo->getTypes()->size(), lengths->size());
    }
    else
    {
        // One primitive over all indices, or all positions.
        GeoIndicesPtr indices = _geo->getIndices();
        const UInt32  nmap    = osgMax<UInt32>(1, _geo->getIndexMapping().size());
        _numPrims   = osgMin<UInt32>(_geo->getTypes()->size(), 1);
        _totalSlots = indices != NullFC && indices->size() != 0 ?
                      indices->size() / nmap : _geo->getPositions()->size();
    }
    _ended = _numPrims == 0;
    if(!_ended)
        readPrimitive();
}

void PrimitiveIterator::setToEnd(void)
{
    _primIndex = _numPrims;
    _ended     = true;
}

void PrimitiveIterator::readPrimitive(void)
{
    _type   = _geo->getTypes()->getValue(_primIndex);
    _length = _geo->getLengths() != NullFC ? _geo->getLengths()->getValue(_primIndex)
                                           : _totalSlots;
}

void PrimitiveIterator::operator ++(void)
{
    if(_ended)
        return;
    _firstSlot += _length;
    if(++_primIndex >= _numPrims)
    {
        _ended = true;
        return;
    }
    readPrimitive();
}

void PrimitiveIterator::seek(Int32 index)
{
    PrimitiveIterator::setToBegin();
    while(!_ended && Int32(_primIndex) < index)
        PrimitiveIterator::operator ++();
}

bool PrimitiveIterator::operator ==(const PrimitiveIterator &other) const
{
    if(_geo != other._geo || _ended != other._ended)
        return false;
    return _ended || _primIndex == other._primIndex;
}

Int32 PrimitiveIterator::attributeIndex(UInt16 mapBit, UInt32 slot) const
{
    if(_geo == NullFC || !hasAttribute(getCPtr(_geo), mapBit))
        return -1;

    GeoIndicesPtr indices = _geo->getIndices();
    if(indices == NullFC || indices->size() == 0)
        return Int32(slot);

    const UInt32 nmap = osgMax<UInt32>(1, _geo->getIndexMapping().size());
    Int32 k = 0;
    if(!_geo->getIndexMapping().empty())
    {
        k = _geo->calcMappingIndex(mapBit);
        if(k < 0)
            return -1;
    }
    const UInt32 at = slot * nmap + UInt32(k);
    return at < indices->size() ? Int32(indices->getValue(at)) : -1;
}

Int32 PrimitiveIterator::slotIndex(UInt16 mapBit, Int32 which) const
{
    if(_ended || which < 0 || UInt32(which) >= _length)
        return -1;
    return attributeIndex(mapBit, _firstSlot + UInt32(which));
}

Int32 PrimitiveIterator::getIndexIndex(Int32 which) const
{
    if(_ended || _geo->getIndices() == NullFC || which < 0 || UInt32(which) >= _length)
        return -1;
    return Int32((_firstSlot + UInt32(which)) *
                 osgMax<UInt32>(1, _geo->getIndexMapping().size()));
}

Int32 PrimitiveIterator::getPositionIndex(Int32 which) const { return slotIndex(Geometry::MapPosition, which); }
Int32 PrimitiveIterator::getNormalIndex  (Int32 which) const { return slotIndex(Geometry::MapNormal,   which); }
Int32 PrimitiveIterator::getColorIndex   (Int32 which) const { return slotIndex(Geometry::MapColor,    which); }
Int32 PrimitiveIterator::getSecondaryColorIndex(Int32 which) const { return slotIndex(Geometry::MapSecondaryColor, which); }
Int32 PrimitiveIterator::getTexCoordsIndex (Int32 which) const { return slotIndex(Geometry::MapTexCoords,  which); }
Int32 PrimitiveIterator::getTexCoordsIndex1(Int32 which) const { return slotIndex(Geometry::MapTexCoords1, which); }
Int32 PrimitiveIterator::getTexCoordsIndex2(Int32 which) const { return slotIndex(Geometry::MapTexCoords2, which); }
Int32 PrimitiveIterator::getTexCoordsIndex3(Int32 which) const { return slotIndex(Geometry::MapTexCoords3, which); }

Pnt3f PrimitiveIterator::getPosition(Int32 which) const
{
    return valueAt<GeoPositionsPtr, Pnt3f>(_geo->getPositions(), getPositionIndex(which));
}

Vec3f PrimitiveIterator::getNormal(Int32 which) const
{
    return valueAt<GeoNormalsPtr, Vec3f>(_geo->getNormals(), getNormalIndex(which));
}

Color3f PrimitiveIterator::getColor(Int32 which) const
{
    return valueAt<GeoColorsPtr, Color3f>(_geo->getColors(), getColorIndex(which));
}

Color3f PrimitiveIterator::getSecondaryColor(Int32 which) const
{
    return valueAt<GeoColorsPtr, Color3f>(_geo->getSecondaryColors(),
                                          getSecondaryColorIndex(which));
}

Vec2f PrimitiveIterator::getTexCoords(Int32 which) const
{
    return valueAt<GeoTexCoordsPtr, Vec2f>(_geo->getTexCoords(), getTexCoordsIndex(which));
}

Vec2f PrimitiveIterator::getTexCoords1(Int32 which) const
{
    return valueAt<GeoTexCoordsPtr, Vec2f>(_geo->getTexCoords1(), getTexCoordsIndex1(which));
}

Vec2f PrimitiveIterator::getTexCoords2(Int32 which) const
{
    return valueAt<GeoTexCoordsPtr, Vec2f>(_geo->getTexCoords2(), getTexCoordsIndex2(which));
}

Vec2f PrimitiveIterator::getTexCoords3(Int32 which) const
{
    return valueAt<GeoTexCoordsPtr, Vec2f>(_geo->getTexCoords3(), getTexCoordsIndex3(which));
}

} // namespace osg
