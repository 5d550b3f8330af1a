#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGGL.h>

#include <cstring>

namespace osg
{

OSG_FC_IMPL(Geometry, "MaterialDrawable")

namespace
{
enum AttributeSlot
{
    PositionSlot       = 0,
    NormalSlot         = 1,
    ColorSlot          = 2,
    SecondaryColorSlot = 3,
    TexCoordsSlot      = 4
};

template <class PtrT>
bool viewOf(const PtrT &prop, UInt8 *&data, UInt32 &format, UInt32 &dimension,
            UInt32 &elementSize, UInt32 &size)
{
    if(prop == NullFC || prop->size() == 0)
        return false;
    data        = prop->getData();
    format      = prop->getFormat();
    dimension   = prop->getDimension();
    elementSize = prop->getFormatSize() * dimension;
    size        = prop->size();
    return true;
}

// Bit of the attribute in IndexMapping entries; equals 1 << slot.
inline UInt16 mapBit(UInt32 slot)
{
    return UInt16(1u << slot);
}

// Client-side arrays are read from memory only while no buffer object is
// bound; the caller's bindings come back afterwards.
class ClientArrayBindings
{
  public:
    ClientArrayBindings(void) : _vao(0), _arrayBuffer(0), _elementBuffer(0)
    {
        if(epoxy_gl_version() >= 30)
        {
            glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &_vao);
            if(_vao != 0)
                glBindVertexArray(0);
        }
        if(epoxy_gl_version() >= 15)
        {
            glGetIntegerv(GL_ARRAY_BUFFER_BINDING,         &_arrayBuffer);
            glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &_elementBuffer);
            if(_arrayBuffer != 0)
                glBindBuffer(GL_ARRAY_BUFFER, 0);
            if(_elementBuffer != 0)
                glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        }
    }

    ~ClientArrayBindings(void)
    {
        if(_elementBuffer != 0)
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _elementBuffer);
        if(_arrayBuffer != 0)
            glBindBuffer(GL_ARRAY_BUFFER, _arrayBuffer);
        if(_vao != 0)
            glBindVertexArray(_vao);
    }

  private:
    GLint _vao;
    GLint _arrayBuffer;
    GLint _elementBuffer;
};
}

Geometry::Geometry(void) :
    Inherited           (),
    _sfTypes            (),
    _sfLengths          (),
    _sfPositions        (),
    _sfNormals          (),
    _sfColors           (),
    _sfSecondaryColors  (),
    _sfTexCoords        (),
    _sfTexCoords1       (),
    _sfTexCoords2       (),
    _sfTexCoords3       (),
    _sfTexCoords4       (),
    _sfTexCoords5       (),
    _sfTexCoords6       (),
    _sfTexCoords7       (),
    _sfIndices          (),
    _mfIndexMapping     (),
    _sfDlistCache       (true),
    _sfGLId             (0),
    _sfIgnoreGLForAspect(-1),
    _sfMinindex         (0),
    _sfMaxindex         (0),
    _mfLowindices       (),
    _mfHighindices      (),
    _sfVbo              (false),
    _cacheValid         (false),
    _cacheVertices      (0),
    _cacheMaxIndex      (0)
{
}

Geometry::Geometry(const Geometry &source) :
    Inherited           (source),
    _sfTypes            (source._sfTypes),
    _sfLengths          (source._sfLengths),
    _sfPositions        (source._sfPositions),
    _sfNormals          (source._sfNormals),
    _sfColors           (source._sfColors),
    _sfSecondaryColors  (source._sfSecondaryColors),
    _sfTexCoords        (source._sfTexCoords),
    _sfTexCoords1       (source._sfTexCoords1),
    _sfTexCoords2       (source._sfTexCoords2),
    _sfTexCoords3       (source._sfTexCoords3),
    _sfTexCoords4       (source._sfTexCoords4),
    _sfTexCoords5       (source._sfTexCoords5),
    _sfTexCoords6       (source._sfTexCoords6),
    _sfTexCoords7       (source._sfTexCoords7),
    _sfIndices          (source._sfIndices),
    _mfIndexMapping     (source._mfIndexMapping),
    _sfDlistCache       (source._sfDlistCache),
    _sfGLId             (0),
    _sfIgnoreGLForAspect(source._sfIgnoreGLForAspect),
    _sfMinindex         (source._sfMinindex),
    _sfMaxindex         (source._sfMaxindex),
    _mfLowindices       (source._mfLowindices),
    _mfHighindices      (source._mfHighindices),
    _sfVbo              (source._sfVbo),
    _cacheValid         (false),
    _cacheVertices      (0),
    _cacheMaxIndex      (0)
{
}

Geometry::~Geometry(void)
{
}

void Geometry::initMethod(void)
{
    RenderAction::registerEnterDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, GeometryPtr, CNodePtr,
                                          Action *>(&Geometry::renderEnter));
    RenderAction::registerLeaveDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, GeometryPtr, CNodePtr,
                                          Action *>(&Geometry::renderLeave));
}

// A copy shares the source's properties: it takes its own references and
// becomes one of their parents.
void Geometry::onCreate(const Geometry *source)
{
    Inherited::onCreate(source);

    FieldContainerPtr self(this);
    FieldContainerPtr props[] =
    {
        getTypes(), getLengths(), getPositions(), getNormals(), getColors(),
        getSecondaryColors(), getTexCoords(), getTexCoords1(), getTexCoords2(),
        getTexCoords3(), getTexCoords4(), getTexCoords5(), getTexCoords6(),
        getTexCoords7(), getIndices()
    };
    for(FieldContainerPtr prop : props)
    {
        AttachmentPtr att = AttachmentPtr::dcast(prop);
        if(att == NullFC)
            continue;
        addRefCP(att);
        beginEditCP(att, Attachment::ParentsFieldMask);
        att->addParent(self);
        endEditCP(att, Attachment::ParentsFieldMask);
    }
}

void Geometry::onDestroy(void)
{
    releaseProperties();
    Inherited::onDestroy();
}

void Geometry::releaseProperties(void)
{
    setTypes          (NullFC);
    setLengths        (NullFC);
    setPositions      (NullFC);
    setNormals        (NullFC);
    setColors         (NullFC);
    setSecondaryColors(NullFC);
    setTexCoords      (NullFC);
    setTexCoords1     (NullFC);
    setTexCoords2     (NullFC);
    setTexCoords3     (NullFC);
    setTexCoords4     (NullFC);
    setTexCoords5     (NullFC);
    setTexCoords6     (NullFC);
    setTexCoords7     (NullFC);
    setIndices        (NullFC);
}

template <class PtrT>
void Geometry::setProperty(SField<PtrT> &field, const PtrT &value)
{
    PtrT old = field.getValue();
    if(old == value)
        return;

    FieldContainerPtr self(this);

    if(value != NullFC)
    {
        addRefCP(value);
        beginEditCP(value, Attachment::ParentsFieldMask);
        value->addParent(self);
        endEditCP(value, Attachment::ParentsFieldMask);
    }

    field.setValue(value);

    if(old != NullFC)
    {
        beginEditCP(old, Attachment::ParentsFieldMask);
        old->subParent(self);
        endEditCP(old, Attachment::ParentsFieldMask);
        subRefCP(old);
    }
    _cacheValid = false;
}

void Geometry::setTypes          (const GeoPTypesPtr    &value) { setProperty(_sfTypes,           value); }
void Geometry::setLengths        (const GeoPLengthsPtr  &value) { setProperty(_sfLengths,         value); }
void Geometry::setPositions      (const GeoPositionsPtr &value) { setProperty(_sfPositions,       value); }
void Geometry::setNormals        (const GeoNormalsPtr   &value) { setProperty(_sfNormals,         value); }
void Geometry::setColors         (const GeoColorsPtr    &value) { setProperty(_sfColors,          value); }
void Geometry::setSecondaryColors(const GeoColorsPtr    &value) { setProperty(_sfSecondaryColors, value); }
void Geometry::setTexCoords      (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords,       value); }
void Geometry::setTexCoords1     (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords1,      value); }
void Geometry::setTexCoords2     (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords2,      value); }
void Geometry::setTexCoords3     (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords3,      value); }
void Geometry::setTexCoords4     (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords4,      value); }
void Geometry::setTexCoords5     (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords5,      value); }
void Geometry::setTexCoords6     (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords6,      value); }
void Geometry::setTexCoords7     (const GeoTexCoordsPtr &value) { setProperty(_sfTexCoords7,      value); }
void Geometry::setIndices        (const GeoIndicesPtr   &value) { setProperty(_sfIndices,         value); }

Int16 Geometry::calcMappingIndex(UInt16 attrib) const
{
    for(UInt32 i = 0; i < _mfIndexMapping.size(); ++i)
    {
        if(_mfIndexMapping[i] & attrib)
            return Int16(i);
    }
    return -1;
}

// The iterators walk this geometry; begin and end of one kind compare equal
// once the first has walked everything.
PrimitiveIterator Geometry::beginPrimitives(void) const
{
    return PrimitiveIterator(GeometryPtr(this));
}

PrimitiveIterator Geometry::endPrimitives(void) const
{
    PrimitiveIterator it(GeometryPtr(this));
    it.setToEnd();
    return it;
}

TriangleIterator Geometry::beginTriangles(void) const
{
    return TriangleIterator(GeometryPtr(this));
}

TriangleIterator Geometry::endTriangles(void) const
{
    TriangleIterator it(GeometryPtr(this));
    it.setToEnd();
    return it;
}

FaceIterator Geometry::beginFaces(void) const
{
    return FaceIterator(GeometryPtr(this));
}

FaceIterator Geometry::endFaces(void) const
{
    FaceIterator it(GeometryPtr(this));
    it.setToEnd();
    return it;
}

LineIterator Geometry::beginLines(void) const
{
    return LineIterator(GeometryPtr(this));
}

LineIterator Geometry::endLines(void) const
{
    LineIterator it(GeometryPtr(this));
    it.setToEnd();
    return it;
}

EdgeIterator Geometry::beginEdges(void) const
{
    return EdgeIterator(GeometryPtr(this));
}

EdgeIterator Geometry::endEdges(void) const
{
    EdgeIterator it(GeometryPtr(this));
    it.setToEnd();
    return it;
}

GeometryPtr Geometry::clone(void)
{
    GeometryPtr geo = Geometry::create();

    beginEditCP(geo);
    if(getTypes()     != NullFC) geo->setTypes    (getTypes()    ->clone());
    if(getLengths()   != NullFC) geo->setLengths  (getLengths()  ->clone());
    if(getPositions() != NullFC) geo->setPositions(getPositions()->clone());
    if(getNormals()   != NullFC) geo->setNormals  (getNormals()  ->clone());
    if(getColors()    != NullFC) geo->setColors   (getColors()   ->clone());
    if(getSecondaryColors() != NullFC)
        geo->setSecondaryColors(getSecondaryColors()->clone());

    GeoTexCoordsPtr tex[8] =
    {
        getTexCoords (), getTexCoords1(), getTexCoords2(), getTexCoords3(),
        getTexCoords4(), getTexCoords5(), getTexCoords6(), getTexCoords7()
    };
    void (Geometry::*setTex[8])(const GeoTexCoordsPtr &) =
    {
        &Geometry::setTexCoords,  &Geometry::setTexCoords1, &Geometry::setTexCoords2,
        &Geometry::setTexCoords3, &Geometry::setTexCoords4, &Geometry::setTexCoords5,
        &Geometry::setTexCoords6, &Geometry::setTexCoords7
    };
    for(UInt32 i = 0; i < 8; ++i)
    {
        if(tex[i] != NullFC)
            (geo.getCPtr()->*setTex[i])(tex[i]->clone());
    }

    if(getIndices() != NullFC)
        geo->setIndices(getIndices()->clone());
    geo->editMFIndexMapping()->setValues(_mfIndexMapping);
    geo->setDlistCache(getDlistCache());
    geo->setMaterial(getMaterial());
    endEditCP(geo);

    return geo;
}

bool Geometry::getAttribute(UInt32 slot, AttributeView &view) const
{
    UInt8 *&d = view.data;
    UInt32 &f = view.format, &n = view.dimension, &e = view.elementSize, &s = view.size;

    switch(slot)
    {
        case PositionSlot:       return viewOf(getPositions(),       d, f, n, e, s);
        case NormalSlot:         return viewOf(getNormals(),         d, f, n, e, s);
        case ColorSlot:          return viewOf(getColors(),          d, f, n, e, s);
        case SecondaryColorSlot: return viewOf(getSecondaryColors(), d, f, n, e, s);
        case TexCoordsSlot + 0:  return viewOf(getTexCoords (),      d, f, n, e, s);
        case TexCoordsSlot + 1:  return viewOf(getTexCoords1(),      d, f, n, e, s);
        case TexCoordsSlot + 2:  return viewOf(getTexCoords2(),      d, f, n, e, s);
        case TexCoordsSlot + 3:  return viewOf(getTexCoords3(),      d, f, n, e, s);
        case TexCoordsSlot + 4:  return viewOf(getTexCoords4(),      d, f, n, e, s);
        case TexCoordsSlot + 5:  return viewOf(getTexCoords5(),      d, f, n, e, s);
        case TexCoordsSlot + 6:  return viewOf(getTexCoords6(),      d, f, n, e, s);
        case TexCoordsSlot + 7:  return viewOf(getTexCoords7(),      d, f, n, e, s);
    }
    return false;
}

BitVector Geometry::fieldsHolding(const FieldContainerPtr &property) const
{
    const std::pair<FieldContainerPtr, BitVector> fields[] =
    {
        { getTypes(),           TypesFieldMask           },
        { getLengths(),         LengthsFieldMask         },
        { getPositions(),       PositionsFieldMask       },
        { getNormals(),         NormalsFieldMask         },
        { getColors(),          ColorsFieldMask          },
        { getSecondaryColors(), SecondaryColorsFieldMask },
        { getTexCoords(),       TexCoordsFieldMask       },
        { getTexCoords1(),      TexCoords1FieldMask      },
        { getTexCoords2(),      TexCoords2FieldMask      },
        { getTexCoords3(),      TexCoords3FieldMask      },
        { getTexCoords4(),      TexCoords4FieldMask      },
        { getTexCoords5(),      TexCoords5FieldMask      },
        { getTexCoords6(),      TexCoords6FieldMask      },
        { getTexCoords7(),      TexCoords7FieldMask      },
        { getIndices(),         IndicesFieldMask         }
    };

    BitVector mask = 0;
    for(const auto &field : fields)
    {
        if(field.first == property)
            mask |= field.second;
    }
    return mask;
}

void geoPropertyDataChanged(Attachment *property)
{
    FieldContainerPtr prop(property);
    MFFieldContainerPtr parents(property->getParents());

    for(FieldContainerPtr parent : parents)
    {
        GeometryPtr geo = GeometryPtr::dcast(parent);
        if(geo == NullFC)
            continue;
        BitVector mask = geo->fieldsHolding(prop);
        if(mask != 0)
            geo->changed(mask, ChangedOrigin::Child);
    }
}

void Geometry::invalidateDlistCache(void)
{
    _cacheValid = false;
}

void Geometry::changed(BitVector whichField, UInt32 origin)
{
    const BitVector drawFields =
        TypesFieldMask | LengthsFieldMask | PositionsFieldMask | NormalsFieldMask |
        ColorsFieldMask | SecondaryColorsFieldMask | TexCoordsFieldMask |
        TexCoords1FieldMask | TexCoords2FieldMask | TexCoords3FieldMask |
        TexCoords4FieldMask | TexCoords5FieldMask | TexCoords6FieldMask |
        TexCoords7FieldMask | IndicesFieldMask | IndexMappingFieldMask;

    if(whichField & drawFields)
        _cacheValid = false;

    if(whichField & PositionsFieldMask)
        invalidateVolume();

    Inherited::changed(whichField, origin);
}

void Geometry::adjustVolume(Volume &volume)
{
    GeoPositionsPtr pos = getPositions();
    if(pos == NullFC)
        return;

    for(UInt32 i = 0; i < pos->size(); ++i)
        volume.extendBy(pos->getValue(i));
}

// Counts vertices and the largest index and, with several index mapping
// entries, copies every attribute into per-vertex order.
void Geometry::updateCache(void)
{
    if(_cacheValid)
        return;

    for(std::vector<UInt8> &data : _expanded)
        data.clear();

    GeoIndicesPtr indices = getIndices();
    UInt32        nmap    = osgMax<UInt32>(1, _mfIndexMapping.size());

    _cacheMaxIndex = 0;
    if(indices == NullFC || indices->size() == 0)
    {
        _cacheVertices = getPositions() != NullFC ? getPositions()->size() : 0;
    }
    else
    {
        _cacheVertices = indices->size() / nmap;

        if(nmap == 1)
        {
            for(UInt32 i = 0; i < indices->size(); ++i)
                _cacheMaxIndex = osgMax(_cacheMaxIndex, indices->getValue(i));
        }
        else
        {
            for(UInt32 slot = 0; slot < NumAttributes; ++slot)
            {
                AttributeView view;
                Int16 k = calcMappingIndex(mapBit(slot));
                if(k < 0 || !getAttribute(slot, view))
                    continue;

                std::vector<UInt8> &data = _expanded[slot];
                data.assign(size_t(_cacheVertices) * view.elementSize, 0);

                bool warned = false;
                for(UInt32 v = 0; v < _cacheVertices; ++v)
                {
                    UInt32 index = indices->getValue(v * nmap + k);
                    if(index >= view.size)
                    {
                        if(!warned)
                            SWARNING << "Geometry::updateCache: index " << index
                                     << " beyond attribute " << slot << " of size "
                                     << view.size << std::endl;
                        warned = true;
                        continue;
                    }
                    std::memcpy(&data[size_t(v) * view.elementSize],
                                view.data + size_t(index) * view.elementSize,
                                view.elementSize);
                }
            }
        }
    }
    _cacheValid = true;
}

Action::ResultE Geometry::drawPrimitives(DrawActionBase *action)
{
    GeoPTypesPtr   types   = getTypes();
    GeoPLengthsPtr lengths = getLengths();
    GeoIndicesPtr  indices = getIndices();

    if(getPositions() == NullFC || types == NullFC || types->size() == 0)
        return Action::Continue;

    updateCache();

    bool indexed  = indices != NullFC && indices->size() != 0;
    bool expanded = indexed && _mfIndexMapping.size() > 1;

    ClientArrayBindings bindings;

    bool enabled[NumAttributes] = { false };
    for(UInt32 slot = 0; slot < NumAttributes; ++slot)
    {
        AttributeView view;
        if(!getAttribute(slot, view))
            continue;

        const GLvoid *data = view.data;
        if(expanded)
        {
            if(_expanded[slot].empty())
                continue;
            data = &_expanded[slot][0];
        }
        else if(indexed ? view.size <= _cacheMaxIndex : view.size < _cacheVertices)
        {
            if(slot == PositionSlot)
            {
                SWARNING << "Geometry::drawPrimitives: too few positions"
                         << std::endl;
                break;
            }
            continue;
        }

        GLenum type = GLenum(view.format);
        GLint  dim  = GLint(view.dimension);
        switch(slot)
        {
            case PositionSlot:
                glVertexPointer(dim, type, 0, data);
                glEnableClientState(GL_VERTEX_ARRAY);
                break;
            case NormalSlot:
                if(dim != 3)
                    continue;
                glNormalPointer(type, 0, data);
                glEnableClientState(GL_NORMAL_ARRAY);
                break;
            case ColorSlot:
                glColorPointer(dim, type, 0, data);
                glEnableClientState(GL_COLOR_ARRAY);
                break;
            case SecondaryColorSlot:
                if(dim != 3)
                    continue;
                glSecondaryColorPointer(dim, type, 0, data);
                glEnableClientState(GL_SECONDARY_COLOR_ARRAY);
                break;
            default:
                glClientActiveTexture(GL_TEXTURE0 + (slot - TexCoordsSlot));
                glTexCoordPointer(dim, type, 0, data);
                glEnableClientState(GL_TEXTURE_COORD_ARRAY);
                break;
        }
        enabled[slot] = true;
    }

    if(enabled[PositionSlot])
    {
        UInt32 nprims = lengths != NullFC ? osgMin(types->size(), lengths->size()) : 1;
        UInt32 first  = 0;

        for(UInt32 i = 0; i < nprims; ++i)
        {
            UInt32 count = lengths != NullFC ? lengths->getValue(i) : _cacheVertices;
            if(first + count > _cacheVertices)
            {
                SWARNING << "Geometry::drawPrimitives: lengths exceed the "
                         << _cacheVertices << " vertices" << std::endl;
                break;
            }

            GLenum mode = GLenum(types->getValue(i));
            if(indexed && !expanded)
            {
                glDrawElements(mode, GLsizei(count), GLenum(indices->getFormat()),
                               indices->getData() + size_t(first) * indices->getFormatSize());
            }
            else
            {
                glDrawArrays(mode, GLint(first), GLsizei(count));
            }
            first += count;
        }
    }

    for(UInt32 slot = 0; slot < NumAttributes; ++slot)
    {
        if(!enabled[slot])
            continue;
        switch(slot)
        {
            case PositionSlot:       glDisableClientState(GL_VERTEX_ARRAY);          break;
            case NormalSlot:         glDisableClientState(GL_NORMAL_ARRAY);          break;
            case ColorSlot:          glDisableClientState(GL_COLOR_ARRAY);           break;
            case SecondaryColorSlot: glDisableClientState(GL_SECONDARY_COLOR_ARRAY); break;
            default:
                glClientActiveTexture(GL_TEXTURE0 + (slot - TexCoordsSlot));
                glDisableClientState(GL_TEXTURE_COORD_ARRAY);
                break;
        }
    }
    glClientActiveTexture(GL_TEXTURE0);

    StatCollector *coll = action != NULL ? action->getStatistics() : NULL;
    if(coll != NULL && enabled[PositionSlot] &&
       coll->getElem(Drawable::statNTriangles, false) != NULL)
    {
        UInt32 triangles, lines, points, vertices, primitives;
        countPrimitives(triangles, lines, points, vertices, primitives);
        coll->getElem(Drawable::statNTriangles )->add(Int32(triangles));
        coll->getElem(Drawable::statNLines     )->add(Int32(lines));
        coll->getElem(Drawable::statNPoints    )->add(Int32(points));
        coll->getElem(Drawable::statNVertices  )->add(Int32(vertices));
        coll->getElem(Drawable::statNPrimitives)->add(Int32(primitives));
    }

    return Action::Continue;
}

UInt32 Geometry::countTriangles(void) const
{
    UInt32 triangles, lines, points, vertices, primitives;
    countPrimitives(triangles, lines, points, vertices, primitives);
    return triangles;
}

void Geometry::countPrimitives(UInt32 &triangles, UInt32 &lines, UInt32 &points,
                               UInt32 &vertices, UInt32 &primitives) const
{
    triangles = lines = points = vertices = primitives = 0;

    GeoPTypesPtr   types   = getTypes();
    GeoPLengthsPtr lengths = getLengths();
    if(types == NullFC || getPositions() == NullFC)
        return;

    UInt32 total = 0;
    if(lengths == NullFC)
    {
        GeoIndicesPtr indices = getIndices();
        UInt32        nmap    = osgMax<UInt32>(1, _mfIndexMapping.size());
        total = indices != NullFC && indices->size() != 0 ?
            indices->size() / nmap : getPositions()->size();
    }

    UInt32 nprims = lengths != NullFC ? osgMin(types->size(), lengths->size()) :
                                        osgMin<UInt32>(types->size(), 1);
    for(UInt32 i = 0; i < nprims; ++i)
    {
        UInt32 n = lengths != NullFC ? lengths->getValue(i) : total;
        vertices += n;
        ++primitives;
        switch(types->getValue(i))
        {
            case GL_POINTS:         points    += n;                      break;
            case GL_LINES:          lines     += n / 2;                  break;
            case GL_LINE_STRIP:     lines     += n >= 2 ? n - 1 : 0;     break;
            case GL_LINE_LOOP:      lines     += n >= 2 ? n : 0;         break;
            case GL_TRIANGLES:      triangles += n / 3;                  break;
            case GL_TRIANGLE_STRIP:
            case GL_TRIANGLE_FAN:
            case GL_POLYGON:        triangles += n >= 3 ? n - 2 : 0;     break;
            case GL_QUADS:          triangles += n / 4 * 2;              break;
            case GL_QUAD_STRIP:     triangles += n >= 4 ? (n - 2) / 2 * 2 : 0; break;
            default:                                                     break;
        }
    }
}

// Every enter pushes one visibility entry and every leave pops it.
Action::ResultE Geometry::renderEnter(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra == NULL)
        return Action::Continue;

    if(!ra->pushVisibility())
        return Action::Skip;

    ra->dropGeometry(this);
    return Action::Continue;
}

Action::ResultE Geometry::renderLeave(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra != NULL)
        ra->popVisibility();
    return Action::Continue;
}

void Geometry::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "Geometry: "
         << (getPositions() != NullFC ? getPositions()->size() : 0) << " positions, "
         << (getTypes() != NullFC ? getTypes()->size() : 0) << " primitives, "
         << (getIndices() != NullFC ? getIndices()->size() : 0) << " indices"
         << std::endl;
}

} // namespace osg
