#include "OSGRenderTarget.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGTransform.h>

OSG_BEGIN_NAMESPACE

namespace
{
// Positions and texture coordinates of a quad covering the whole viewport.
void setFullscreenQuad(PolygonForegroundPtr quad)
{
    beginEditCP(quad, PolygonForeground::PositionsFieldMask |
                      PolygonForeground::TexCoordsFieldMask);
    quad->getPositions().push_back(Pnt2f(0, 1));
    quad->getPositions().push_back(Pnt2f(0, 0));
    quad->getPositions().push_back(Pnt2f(1, 0));
    quad->getPositions().push_back(Pnt2f(1, 1));
    quad->getTexCoords().push_back(Vec3f(0, 1, 0));
    quad->getTexCoords().push_back(Vec3f(0, 0, 0));
    quad->getTexCoords().push_back(Vec3f(1, 0, 0));
    quad->getTexCoords().push_back(Vec3f(1, 1, 0));
    endEditCP(quad, PolygonForeground::PositionsFieldMask |
                    PolygonForeground::TexCoordsFieldMask);
}
}

RenderTarget::RenderTarget(void) :
    fboViewport         (NullFC),
    background          (NullFC),
    width               (0),
    height              (0),
    initialized         (false),
    fullscreenForeground(PolygonForeground::create()),
    fullscreenCamera    (NullFC),
    fullscreenRoot      (NullFC)
{
    addRefCP(fullscreenForeground);
    setFullscreenQuad(fullscreenForeground);
}

RenderTarget::~RenderTarget(void)
{
    if(fboViewport != NullFC)
    {
        for(UInt32 i = 0; i < fboViewport->getTextures().size(); ++i)
            subRefCP(fboViewport->getTextures()[i]);
        subRefCP(fboViewport);
        subRefCP(background);
        subRefCP(fullscreenCamera);
        subRefCP(fullscreenRoot);
    }
    subRefCP(fullscreenForeground);
}

// Every operation but initialize needs the viewport and background that it
// makes; without them a call only warns.
bool RenderTarget::checkInitialized(const char *operation) const
{
    if(initialized)
        return true;
    SWARNING << "RenderTarget::" << operation << ": not initialized" << std::endl;
    return false;
}

void RenderTarget::initialize(WindowPtr window, int left, int bottom, int right, int top)
{
    if(initialized)
    {
        SWARNING << "RenderTarget::initialize: already initialized" << std::endl;
        return;
    }
    if(window == NullFC || right < left || top < bottom)
    {
        SWARNING << "RenderTarget::initialize: needs a window and a non-empty rectangle"
                 << std::endl;
        return;
    }

    width  = UInt16(right - left + 1);
    height = UInt16(top - bottom + 1);

    background = SolidBackground::create();
    addRefCP(background);

    fboViewport = FBOViewport::create();
    addRefCP(fboViewport);
    beginEditCP(fboViewport);
    fboViewport->setParent(window);
    fboViewport->setBackground(background);
    fboViewport->setLeft(Real32(left));
    fboViewport->setRight(Real32(right));
    fboViewport->setBottom(Real32(bottom));
    fboViewport->setTop(Real32(top));
    fboViewport->setStorageWidth(width);
    fboViewport->setStorageHeight(height);
    fboViewport->setDirty(true);
    endEditCP(fboViewport);


    TransformPtr beaconCore = Transform::create();
    NodePtr      beacon     = makeNodeFor(beaconCore);
    fullscreenCamera = OrthographicCamera::create();
    addRefCP(fullscreenCamera);
    // A full-screen pass draws only a foreground, but the viewport still
    // asks the camera for a projection: give it a valid one.
    beginEditCP(fullscreenCamera, Camera::BeaconFieldMask |
                                  OrthographicCamera::VerticalSizeFieldMask);
    fullscreenCamera->setBeacon(beacon);
    fullscreenCamera->setVerticalSize(2.0f);
    endEditCP(fullscreenCamera, Camera::BeaconFieldMask |
                                OrthographicCamera::VerticalSizeFieldMask);
    // The camera does not reference its beacon; the empty scene holds it.
    fullscreenRoot = makeNodeFor(Group::create());
    addRefCP(fullscreenRoot);
    beginEditCP(fullscreenRoot, Node::ChildrenFieldMask);
    fullscreenRoot->addChild(beacon);
    endEditCP(fullscreenRoot, Node::ChildrenFieldMask);

    initialized = true;
    setBgClear(Color4f(0, 0, 0, 1), 1.0f, true, true);
}

bool RenderTarget::isInitialized(void) const
{
    return initialized;
}

void RenderTarget::resize(int left, int bottom, int right, int top)
{
    if(!checkInitialized("resize"))
        return;

    width  = UInt16(right - left + 1);
    height = UInt16(top - bottom + 1);

    beginEditCP(fboViewport);
    fboViewport->setLeft(Real32(left));
    fboViewport->setRight(Real32(right));
    fboViewport->setBottom(Real32(bottom));
    fboViewport->setTop(Real32(top));
    fboViewport->setStorageWidth(width);
    fboViewport->setStorageHeight(height);
    fboViewport->setDirty(true);
    endEditCP(fboViewport);

    for(UInt32 i = 0; i < fboViewport->getTextures().size(); ++i)
    {
        TextureChunkPtr texture  = fboViewport->getTextures()[i];
        ImagePtr        oldImage = texture->getImage();
        ImagePtr        newImage = Image::create();

        beginEditCP(newImage);
        newImage->set(oldImage->getPixelFormat(), width, height, 1, 1, 1, 0.0,
                      NULL, oldImage->getDataType(), true, 1);
        endEditCP(newImage);

        beginEditCP(oldImage);
        oldImage->clearData();
        endEditCP(oldImage);

        beginEditCP(texture, TextureChunk::ImageFieldMask);
        texture->setImage(newImage);
        endEditCP(texture, TextureChunk::ImageFieldMask);
    }
}

void RenderTarget::setBgClear(Color4f color, Real32 depth, bool clearColor, bool clearDepth)
{
    if(!checkInitialized("setBgClear"))
        return;

    beginEditCP(background);
    background->setColor(Color3f(color[0], color[1], color[2]));
    background->setAlpha(color[3]);
    background->setDepth(depth);
    background->setClearColor(clearColor);
    background->setClearDepth(clearDepth);
    endEditCP(background);
}

void RenderTarget::setClearDepth(bool clearDepth)
{
    if(!checkInitialized("setClearDepth"))
        return;

    beginEditCP(background, SolidBackground::ClearDepthFieldMask);
    background->setClearDepth(clearDepth);
    endEditCP(background, SolidBackground::ClearDepthFieldMask);
}

void RenderTarget::addTargetTexture(TextureChunkPtr texture)
{
    if(!checkInitialized("addTargetTexture"))
        return;
    if(texture == NullFC)
    {
        SWARNING << "RenderTarget::addTargetTexture: no texture" << std::endl;
        return;
    }

    addRefCP(texture);
    beginEditCP(fboViewport, FBOViewport::TexturesFieldMask);
    fboViewport->getTextures().push_back(texture);
    endEditCP(fboViewport, FBOViewport::TexturesFieldMask);
}

TextureChunkPtr RenderTarget::addTargetTexture(UInt32             internalFormat,
                                               UInt32             externalFormat,
                                               UInt32             filter,
                                               Image::PixelFormat pixelFormat,
                                               Image::Type        type,
                                               Real32             anisotropy,
                                               UInt8              mipmapCount)
{
    if(!checkInitialized("addTargetTexture"))
        return NullFC;

    ImagePtr image = Image::create();
    beginEditCP(image);
    image->set(pixelFormat, width, height, 1, mipmapCount, 1, 0.0, NULL, type, true, 1);
    endEditCP(image);

    TextureChunkPtr texture = TextureChunk::create();
    beginEditCP(texture);
    texture->setTarget(GL_TEXTURE_2D);
    texture->setMinFilter(filter);
    texture->setMagFilter(filter);
    texture->setWrapS(GL_CLAMP);
    texture->setWrapT(GL_CLAMP);
    texture->setInternalFormat(internalFormat);
    texture->setExternalFormat(externalFormat);
    texture->setAnisotropy(anisotropy);
    texture->setImage(image);
    endEditCP(texture);

    addTargetTexture(texture);
    return texture;
}

TextureChunkPtr RenderTarget::getTargetTexture(UInt8 index)
{
    if(!checkInitialized("getTargetTexture"))
        return NullFC;
    if(index >= fboViewport->getTextures().size())
    {
        SWARNING << "RenderTarget::getTargetTexture: index " << UInt32(index)
                 << " out of range, " << fboViewport->getTextures().size()
                 << " textures" << std::endl;
        return NullFC;
    }
    return fboViewport->getTextures()[index];
}

FBOViewportPtr RenderTarget::getFBOViewport(void)
{
    return fboViewport;
}

void RenderTarget::renderScene(NodePtr root, CameraPtr camera,
                               RenderActionBase *action, BackgroundPtr bg)
{
    if(!checkInitialized("renderScene"))
        return;
    if(action == NULL || root == NullFC || camera == NullFC)
    {
        SWARNING << "RenderTarget::renderScene: needs an action, a root and a camera"
                 << std::endl;
        return;
    }

    beginEditCP(fboViewport, Viewport::RootFieldMask | Viewport::CameraFieldMask |
                             Viewport::BackgroundFieldMask);
    fboViewport->setRoot(root);
    fboViewport->setCamera(camera);
    fboViewport->setBackground(bg == NullFC ? BackgroundPtr(background) : bg);
    endEditCP(fboViewport, Viewport::RootFieldMask | Viewport::CameraFieldMask |
                           Viewport::BackgroundFieldMask);

    fboViewport->render(action);
}

void RenderTarget::renderFullscreenPass(ChunkMaterialPtr material, RenderActionBase *action)
{
    if(!checkInitialized("renderFullscreenPass"))
        return;
    if(action == NULL || material == NullFC)
    {
        SWARNING << "RenderTarget::renderFullscreenPass: needs a material and an action"
                 << std::endl;
        return;
    }

    beginEditCP(fullscreenForeground, PolygonForeground::MaterialFieldMask);
    fullscreenForeground->setMaterial(material);
    endEditCP(fullscreenForeground, PolygonForeground::MaterialFieldMask);

    beginEditCP(fboViewport, Viewport::RootFieldMask | Viewport::CameraFieldMask |
                             Viewport::ForegroundsFieldMask);
    fboViewport->setRoot(fullscreenRoot);
    fboViewport->setCamera(fullscreenCamera);
    fboViewport->getForegrounds().push_back(fullscreenForeground);
    endEditCP(fboViewport, Viewport::RootFieldMask | Viewport::CameraFieldMask |
                           Viewport::ForegroundsFieldMask);

    fboViewport->render(action);

    // Not clearForegrounds(): that would release the target's own reference.
    beginEditCP(fboViewport, Viewport::ForegroundsFieldMask);
    fboViewport->getForegrounds().clear();
    endEditCP(fboViewport, Viewport::ForegroundsFieldMask);
}

OSG_END_NAMESPACE
