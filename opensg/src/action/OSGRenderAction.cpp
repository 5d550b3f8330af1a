#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGState.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <chrono>

namespace osg
{

namespace
{

const UInt32 MaxGLLights = 8;

std::vector<Action::Functor> &renderEnterDefaults(void) { static std::vector<Action::Functor> v; return v; }
std::vector<Action::Functor> &renderLeaveDefaults(void) { static std::vector<Action::Functor> v; return v; }

void storeDefault(std::vector<Action::Functor> &functors, UInt32 typeId,
                  const Action::Functor &func)
{
    if(functors.size() <= typeId)
        functors.resize(typeId + 1);
    functors[typeId] = func;
}

double now(void)
{
    return std::chrono::duration<double>(
        std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

RenderAction *RenderAction::_prototype = NULL;

// --- creation -------------------------------------------------------------

RenderAction *RenderAction::create(void)
{
    if(_prototype != NULL)
        return new RenderAction(*_prototype);
    return new RenderAction();
}

void RenderAction::setPrototype(RenderAction *proto)
{
    _prototype = proto;
}

RenderAction *RenderAction::getPrototype(void)
{
    return _prototype;
}

StatElemDesc<StatTimeElem   > RenderAction::statDrawTime(
    "drawTime", "time for draw tree traversal");
StatElemDesc<StatIntElem    > RenderAction::statNMaterials(
    "NMaterials", "number of material changes");
StatElemDesc<StatIntElem    > RenderAction::statNMatrices(
    "NMatrices", "number of matrix changes");
StatElemDesc<StatIntElem    > RenderAction::statNLights(
    "NLights", "number of light changes");
StatElemDesc<StatIntElem    > RenderAction::statNGeometries(
    "NGeometries", "number of Geometry nodes");
StatElemDesc<StatIntElem    > RenderAction::statNTransGeometries(
    "NTransGeometries", "number of transformed Geometry nodes");
StatElemDesc<StatIntOnceElem> RenderAction::statNTextures(
    "NTextures", "number of texture changes");
StatElemDesc<StatIntOnceElem> RenderAction::statNTexBytes(
    "NTexBytes", "sum of all used textures' sizes (approx., in bytes)");
StatElemDesc<StatStringElem > RenderAction::statNOcclusionMode(
    "OcclusionMode", "occlusion culling mode");
StatElemDesc<StatIntElem    > RenderAction::statNOcclusionTests(
    "NOcclusionTests", "number of occlusion tests");
StatElemDesc<StatIntElem    > RenderAction::statNOcclusionCulled(
    "NOcclusionCulled", "number of objects culled via occlusion culling");

RenderAction::RenderAction(void) :
    RenderActionBase        (),
    _matrixStack            (1, Matrix()),
    _modelviewStack         (1, Matrix()),
    _viewing                (),
    _currentWorld           (),
    _drawing                (false),
    _visibilityStack        (),
    _unsortedOpaque         (),
    _unsortedTransparent    (),
    _buckets                (),
    _lights                 (),
    _lightPath              (),
    _activeLightsMask       (0),
    _currentState           (NULL),
    _stateSorting           (true),
    _sortTrans              (true),
    _zwriteTrans            (false),
    _localLights            (false),
    _correctTwoSidedLighting(false),
    _useGLFinish            (true),
    _occlusionCulling       (false),
    _occlusionCullingMode   (0),
    _smallFeatureCulling    (false),
    _numDrawnNodes          (0),
    _numTriangles           (0),
    _numStateChanges        (0),
    _numMatrixChanges       (0),
    _numTransGeometries     (0),
    _startTime              (0.0)
{
    fillFunctors();
}

RenderAction::RenderAction(const RenderAction &source) :
    RenderActionBase        (source),
    _matrixStack            (1, Matrix()),
    _modelviewStack         (1, Matrix()),
    _viewing                (),
    _currentWorld           (),
    _drawing                (false),
    _visibilityStack        (),
    _unsortedOpaque         (),
    _unsortedTransparent    (),
    _buckets                (),
    _lights                 (),
    _lightPath              (),
    _activeLightsMask       (0),
    _currentState           (NULL),
    _stateSorting           (source._stateSorting),
    _sortTrans              (source._sortTrans),
    _zwriteTrans            (source._zwriteTrans),
    _localLights            (source._localLights),
    _correctTwoSidedLighting(source._correctTwoSidedLighting),
    _useGLFinish            (source._useGLFinish),
    _occlusionCulling       (source._occlusionCulling),
    _occlusionCullingMode   (source._occlusionCullingMode),
    _smallFeatureCulling    (source._smallFeatureCulling),
    _numDrawnNodes          (0),
    _numTriangles           (0),
    _numStateChanges        (0),
    _numMatrixChanges       (0),
    _numTransGeometries     (0),
    _startTime              (0.0)
{
}

RenderAction::~RenderAction(void)
{
}

void RenderAction::registerEnterDefault(const FieldContainerType &type,
                                        const Action::Functor   &func)
{
    storeDefault(renderEnterDefaults(), type.getId(), func);
}

void RenderAction::registerLeaveDefault(const FieldContainerType &type,
                                        const Action::Functor   &func)
{
    storeDefault(renderLeaveDefaults(), type.getId(), func);
}

std::vector<Action::Functor> *RenderAction::getDefaultEnterFunctors(void)
{
    return &renderEnterDefaults();
}

std::vector<Action::Functor> *RenderAction::getDefaultLeaveFunctors(void)
{
    return &renderLeaveDefaults();
}

// --- matrices -------------------------------------------------------------

void RenderAction::push_matrix(const Matrix &matrix)
{
    Matrix m = _matrixStack.back();
    m.mult(matrix);
    _matrixStack.push_back(m);

    Matrix modelview = _modelviewStack.back();
    modelview.mult(matrix);
    _modelviewStack.push_back(modelview);
}

void RenderAction::pop_matrix(void)
{
    if(_matrixStack.size() > 1)
    {
        _matrixStack.pop_back();
        _modelviewStack.pop_back();
    }
    else
        SWARNING << "RenderAction::pop_matrix: stack is empty" << std::endl;
}

// While the collected items are drawn this is the current item's
// model-to-world matrix, so chunks asking for it see the right object.
const Matrix &RenderAction::top_matrix(void)
{
    return _drawing ? _currentWorld : _matrixStack.back();
}

// --- culling --------------------------------------------------------------

bool RenderAction::isVisible(Node *node)
{
    if(!getFrustumCulling() || node == NULL)
        return true;

    DynamicVolume vol;
    node->getWorldVolume(vol);
    getStatistics()->getElem(statCullTestedNodes)->inc();
    if(intersect(getFrustum(), vol))
        return true;
    getStatistics()->getElem(statCulledNodes)->inc();
    return false;
}

bool RenderAction::pushVisibility(void)
{
    FrustumVolume::PlaneSet inplanes = _visibilityStack.empty()
                                     ? FrustumVolume::PlaneSet(FrustumVolume::P_NONE)
                                     : _visibilityStack.back();

    if(!getFrustumCulling() || inplanes == FrustumVolume::P_ALL ||
       getActNode() == NullFC)
    {
        _visibilityStack.push_back(FrustumVolume::P_ALL);
        return true;
    }

    DynamicVolume vol;
    getActNode()->getWorldVolume(vol);

    // An empty volume proves nothing: it may be stale after children were
    // re-enabled by writing their TravMask without an edit.
    if(vol.isEmpty())
    {
        _visibilityStack.push_back(inplanes);
        return true;
    }

    bool visible = intersect(getFrustum(), vol, inplanes);
    _visibilityStack.push_back(inplanes);
    getStatistics()->getElem(statCullTestedNodes)->inc();
    if(!visible)
        getStatistics()->getElem(statCulledNodes)->inc();
    return visible;
}

void RenderAction::popVisibility(void)
{
    if(!_visibilityStack.empty())
        _visibilityStack.pop_back();
}

// --- collecting -------------------------------------------------------------

void RenderAction::dropGeometry(Geometry *pGeo)
{
    if(pGeo == NULL)
        return;

    Material *mat = getMaterial();
    if(mat == NULL)
        mat = getCPtr(pGeo->getMaterial());
    if(mat == NULL)
        mat = getCPtr(getDefaultMaterial());

    addItem(Material::DrawFunctor(), pGeo, mat);
}

void RenderAction::dropFunctor(Material::DrawFunctor &func, Material *mat)
{
    if(getMaterial() != NULL)
        mat = getMaterial();
    addItem(func, NULL, mat);
}

void RenderAction::addItem(const Material::DrawFunctor &func, Geometry *geo,
                           Material *mat)
{
    if(mat == NULL)
    {
        SWARNING << "RenderAction::addItem: no material" << std::endl;
        return;
    }

    NodePtr node = getActNode();

    DrawItem item;
    item.functor    = func;
    item.geometry   = geo;
    item.material   = mat;
    item.state      = NULL;
    item.world      = _matrixStack.back();
    item.modelview  = _modelviewStack.back();
    item.eyeZ       = 0.f;
    item.lightsMask = 0;
    item.triangles  = 0;
    item.transparent = false;

    for(UInt32 index : _lightPath)
        item.lightsMask |= 1u << index;

    if(node != NullFC)
    {
        Pnt3f center;
        node->getVolume(true).getCenter(center);
        item.modelview.multMatrixPnt(center);
        item.eyeZ = center[2];

        Geometry *counted = geo != NULL ? geo
                                        : dynamic_cast<Geometry *>(getCPtr(node->getCore()));
        if(counted != NULL)
            item.triangles = counted->countTriangles();
    }

    bool  transparent = _sortTrans && mat->isTransparent();
    item.transparent  = transparent;
    Int32 key         = mat->getRealSortKey();
    bool  unsorted    = !_stateSorting || key == Material::NoStateSorting;

    for(UInt32 pass = 0; pass < mat->getNPasses(); ++pass)
    {
        item.state = getCPtr(mat->getState(pass));
        if(item.state == NULL)
            continue;

        if(unsorted)
        {
            (transparent ? _unsortedTransparent : _unsortedOpaque).push_back(item);
            continue;
        }

        Bucket &bucket = _buckets[key];
        if(transparent)
        {
            bucket.transparent.push_back(item);
            continue;
        }

        std::map<Material *, size_t>::iterator group = bucket.groupIndex.find(mat);
        if(group == bucket.groupIndex.end())
        {
            group = bucket.groupIndex.insert(std::make_pair(mat, bucket.groups.size())).first;
            bucket.groups.push_back(std::vector<DrawItem>());
        }
        bucket.groups[group->second].push_back(item);
    }
}

// --- lights -----------------------------------------------------------------

void RenderAction::dropLight(Light *pLight)
{
    if(pLight == NULL || !pLight->getOn())
        return;

    LightEntry entry;
    entry.light  = pLight;
    entry.matrix = _viewing;

    NodePtr beacon = pLight->getBeacon();
    if(beacon != NullFC)
    {
        entry.matrix.mult(beacon->getToWorld());
    }
    else
    {
        SINFO << "RenderAction::dropLight: light without beacon, using its node"
              << std::endl;
        entry.matrix.mult(_matrixStack.back());
    }

    _lightPath.push_back(UInt32(_lights.size()));
    _lights.push_back(entry);
}

void RenderAction::undropLight(Light *pLight)
{
    if(pLight == NULL || !pLight->getOn())
        return;

    for(std::vector<UInt32>::reverse_iterator it = _lightPath.rbegin();
        it != _lightPath.rend(); ++it)
    {
        if(_lights[*it].light == pLight)
        {
            _lightPath.erase(std::next(it).base());
            return;
        }
    }
}

std::vector<Light *> RenderAction::getActiveLights(void)
{
    std::vector<Light *> result;
    for(UInt32 i = 0; i < _lights.size() && i < MaxGLLights; ++i)
    {
        if(!_drawing || (_activeLightsMask & (1u << i)))
            result.push_back(_lights[i].light);
    }
    return result;
}

UInt32 RenderAction::getActiveLightsMask(void)
{
    return _activeLightsMask;
}

UInt32 RenderAction::getActiveLightsCount(void)
{
    UInt32 count = 0;
    for(UInt32 mask = _activeLightsMask; mask != 0; mask &= mask - 1)
        ++count;
    return count;
}

// GL transforms positions and spot directions by the modelview current at
// glLightfv, so the light's matrix is loaded first.
void RenderAction::setupLight(UInt32 index, const LightEntry &entry)
{
    glLoadMatrixf(entry.matrix.getValues());
    entry.light->activateGL(GLenum(GL_LIGHT0 + index));
}

void RenderAction::activateLights(void)
{
    if(_lights.size() > MaxGLLights)
        SWARNING << "RenderAction::activateLights: " << _lights.size()
                 << " lights, only " << MaxGLLights << " are used" << std::endl;

    UInt32 count = std::min(UInt32(_lights.size()), MaxGLLights);
    for(UInt32 i = 0; i < count; ++i)
        setupLight(i, _lights[i]);

    _activeLightsMask = 0;
    if(_localLights)
    {
        for(UInt32 i = 0; i < MaxGLLights; ++i)
            glDisable(GLenum(GL_LIGHT0 + i));
    }
    else
    {
        setLightsMask((1u << count) - 1);
    }
}

void RenderAction::setLightsMask(UInt32 mask)
{
    mask &= (1u << MaxGLLights) - 1;
    UInt32 changed = mask ^ _activeLightsMask;
    for(UInt32 i = 0; i < MaxGLLights && changed != 0; ++i)
    {
        if(!(changed & (1u << i)))
            continue;
        if(mask & (1u << i))
            glEnable(GLenum(GL_LIGHT0 + i));
        else
            glDisable(GLenum(GL_LIGHT0 + i));
    }
    _activeLightsMask = mask;
}

void RenderAction::deactivateLights(void)
{
    setLightsMask(0);
}

// --- frame --------------------------------------------------------------------

State *RenderAction::getCurrentState(void)
{
    return _currentState;
}

Action::ResultE RenderAction::start(void)
{
    ResultE res = RenderActionBase::start();
    if(res != Continue)
        return res;

    _startTime = now();

    // A pending resize resets the GL viewport to the whole window.
    if(_window != NULL)
    {
        bool pending = _window->isResizePending();
        _window->resizeGL();
        if(pending && _viewport != NULL)
            _viewport->activateSize();
    }

    _viewing.setIdentity();
    if(_viewport != NULL && _camera != NULL)
    {
        _camera->setupProjection(this, *_viewport);
        _camera->getViewing(_viewing, _viewport->getPixelWidth(),
                            _viewport->getPixelHeight());
    }
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(_viewing.getValues());

    if(_background != NULL && _viewport != NULL)
        _background->clear(this, _viewport);

    _matrixStack.assign(1, Matrix());
    _modelviewStack.assign(1, _viewing);
    _visibilityStack.clear();
    _unsortedOpaque.clear();
    _unsortedTransparent.clear();
    _buckets.clear();
    _lights.clear();
    _lightPath.clear();
    _activeLightsMask = 0;
    _currentState     = NULL;
    _drawing          = false;
    _numDrawnNodes    = 0;
    _numTriangles     = 0;
    _numStateChanges  = 0;
    _numMatrixChanges = 0;
    _numTransGeometries = 0;

    return Continue;
}

void RenderAction::drawItem(DrawItem &item)
{
    const bool worldChanged = _numDrawnNodes == 0 || !(item.world == _currentWorld);
    if(worldChanged)
    {
        _currentWorld = item.world;
        glLoadMatrixf(item.modelview.getValues());
        ++_numMatrixChanges;
    }

    if(_localLights)
        setLightsMask(item.lightsMask);

    if(item.state != _currentState)
    {
        if(_currentState == NULL)
            item.state->activate(this);
        else
            item.state->changeFrom(this, _currentState);
        _currentState = item.state;
        ++_numStateChanges;
    }
    else if(worldChanged && _currentState != NULL)
    {
        // Uniforms such as OSGWorldMatrix follow the object under one state.
        SHLChunk *shl = dynamic_cast<SHLChunk *>(
            getCPtr(_currentState->getChunk(SHLChunk::getStaticClassId())));
        if(shl != NULL)
            shl->updateCallbackParameters(this);
    }

    if(item.geometry != NULL)
        item.geometry->drawPrimitives(this);
    else if(item.functor.isValid())
        item.functor.call(this);

    ++_numDrawnNodes;
    _numTriangles += item.triangles;
    if(item.transparent)
        ++_numTransGeometries;
}

Action::ResultE RenderAction::stop(ResultE res)
{
    StatCollector *stat = getStatistics();
    stat->getElem(statDrawTime)->start();

    glMatrixMode(GL_MODELVIEW);
    activateLights();
    glDepthMask(GL_TRUE);

    _drawing      = true;
    _currentState = NULL;

    for(DrawItem &item : _unsortedOpaque)
        drawItem(item);

    for(std::map<Int32, Bucket>::iterator b = _buckets.begin(); b != _buckets.end(); ++b)
    {
        Bucket &bucket = b->second;
        for(std::vector<DrawItem> &group : bucket.groups)
            for(DrawItem &item : group)
                drawItem(item);

        if(bucket.transparent.empty())
            continue;

        // Ascending eye-space z is back to front: the camera looks down -z.
        std::stable_sort(bucket.transparent.begin(), bucket.transparent.end(),
                         [](const DrawItem &a, const DrawItem &b)
                         { return a.eyeZ < b.eyeZ; });

        if(!_zwriteTrans)
            glDepthMask(GL_FALSE);
        for(DrawItem &item : bucket.transparent)
            drawItem(item);
        glDepthMask(GL_TRUE);
    }

    if(!_unsortedTransparent.empty())
    {
        if(!_zwriteTrans)
            glDepthMask(GL_FALSE);
        for(DrawItem &item : _unsortedTransparent)
            drawItem(item);
        glDepthMask(GL_TRUE);
    }

    if(_currentState != NULL)
        _currentState->deactivate(this);
    _currentState = NULL;

    deactivateLights();
    glLoadMatrixf(_viewing.getValues());

    _drawing = false;

    if(_useGLFinish)
        glFinish();

    StatTimeElem *drawTime = stat->getElem(statDrawTime);
    drawTime->stop();
    if(_viewport != NULL)
        _viewport->setDrawTime(Real32(now() - _startTime));

    // Nobody reads a collector of the action's own.
    if(!hasOwnStat())
    {
        stat->getElem(statNMaterials      )->set(Int32(_numStateChanges));
        stat->getElem(statNMatrices       )->set(Int32(_numMatrixChanges));
        stat->getElem(statNLights         )->set(Int32(_lights.size()));
        stat->getElem(statNGeometries     )->set(Int32(_numDrawnNodes));
        stat->getElem(statNTransGeometries)->set(Int32(_numTransGeometries));
        stat->getElem(statNOcclusionTests )->set(0);
        stat->getElem(statNOcclusionCulled)->set(0);
        stat->getElem(statNOcclusionMode  )->set("Off");
    }

    return RenderActionBase::stop(res);
}

// --- flags --------------------------------------------------------------------

void RenderAction::setStateSorting(bool s)             { _stateSorting = s; }
bool RenderAction::getStateSorting(void)               { return _stateSorting; }
void RenderAction::setSortTrans(bool bVal)             { _sortTrans = bVal; }
bool RenderAction::getSortTrans(void) const            { return _sortTrans; }
void RenderAction::setZWriteTrans(bool bVal)           { _zwriteTrans = bVal; }
bool RenderAction::getZWriteTrans(void) const          { return _zwriteTrans; }
void RenderAction::setLocalLights(bool bVal)           { _localLights = bVal; }
bool RenderAction::getLocalLights(void) const          { return _localLights; }
void RenderAction::setCorrectTwoSidedLighting(bool b)  { _correctTwoSidedLighting = b; }
bool RenderAction::getCorrectTwoSidedLighting(void)    { return _correctTwoSidedLighting; }
void RenderAction::setUseGLFinish(bool s)              { _useGLFinish = s; }
bool RenderAction::getUseGLFinish(void)                { return _useGLFinish; }
void RenderAction::setOcclusionCulling(bool bVal)      { _occlusionCulling = bVal; }
bool RenderAction::getOcclusionCulling(void)           { return _occlusionCulling; }
void RenderAction::setOcclusionCullingMode(Int32 mode) { _occlusionCullingMode = mode; }
Int32 RenderAction::getOcclusionCullingMode(void)      { return _occlusionCullingMode; }
void RenderAction::setSmallFeatureCulling(bool bVal)   { _smallFeatureCulling = bVal; }
bool RenderAction::getSmallFeatureCulling(void)        { return _smallFeatureCulling; }

} // namespace osg
