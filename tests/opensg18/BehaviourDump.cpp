// Prints what OpenSG 1.8 computes without a GL context: matrix helpers,
// cameras, frustum planes, volumes and the defaults of the containers the
// library uses, one value a line, so that the output built against the
// runtime and against a genuine 1.8 can be compared with diff
// (scripts/check-opensg18.sh). C++11, 1.8's API only.

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGMatrixCamera.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <cstdio>
#include <string>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSimpleTexturedMaterial.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGCubeTextureChunk.h>
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGFBOViewport.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGSphereVolume.h>
#include <OpenSG/OSGDynamicVolume.h>

OSG_USING_NAMESPACE

namespace
{

void pm(const char *n, const Matrix &m)
{
    printf("%s", n);
    for(int i = 0; i < 4; ++i)
        for(int j = 0; j < 4; ++j)
            printf(" %.9g", m[i][j]);
    printf("\n");
}

#define P(name, expr) printf("%s %.9g\n", name, double(expr))

void pc(const char *n, const Color4f &c)
{
    printf("%s %.9g %.9g %.9g %.9g\n", n, c[0], c[1], c[2], c[3]);
}

void pc3(const char *n, const Color3f &c)
{
    printf("%s %.9g %.9g %.9g\n", n, c[0], c[1], c[2]);
}

void matrices(void)
{
    Matrix m;
    MatrixLookAt(m, Pnt3f(0, 4.5f, 8), Pnt3f(0, 0.5f, 0), Vec3f(0, 1, 0));
    pm("lookat", m);
    MatrixLookAt(m, 1, 2, 3, 4, 5, 6.5f, 0.1f, 1, 0);
    pm("lookat2", m);
    MatrixPerspective(m, deg2rad(50.f), 4.f / 3.f, 0.5f, 40.f);
    pm("persp", m);
    MatrixOrthogonal(m, -1, 2, -3, 4, 0.5f, 10);
    pm("ortho", m);
    MatrixFrustum(m, -1, 2, -3, 4, 0.5f, 10);
    pm("frustum", m);
    Quaternion q(Vec3f(0.3f, 1, 0.2f), 0.7f);
    q.getValue(m);
    pm("quat", m);
    Quaternion q2(Vec3f(1, 0, 0), 2.0f);
    Quaternion s;
    s.slerpThis(q, q2, 0.3f);
    s.getValue(m);
    pm("slerp", m);
    m.setTransform(Vec3f(1, 2, 3), q, Vec3f(2, 3, 4));
    pm("settransform", m);
    Matrix inv;
    m.inverse(inv);
    pm("inverse", inv);
    Matrix a = m;
    a.mult(inv);
    pm("mult", a);
    Matrix b = m;
    b.multLeft(inv);
    pm("multleft", b);
    NodePtr beacon = Node::create();
    TransformPtr t = Transform::create();
    beginEditCP(beacon);
    beacon->setCore(t);
    endEditCP(beacon);
    MatrixLookAt(m, Pnt3f(0, 4.5f, 8), Pnt3f(0, 0.5f, 0), Vec3f(0, 1, 0));
    beginEditCP(t);
    t->setMatrix(m);
    endEditCP(t);
    PerspectiveCameraPtr cam = PerspectiveCamera::create();
    beginEditCP(cam);
    cam->setBeacon(beacon);
    cam->setFov(deg2rad(50.f));
    cam->setNear(0.5f);
    cam->setFar(40.f);
    endEditCP(cam);
    cam->getProjection(m, 160, 120);
    pm("camproj", m);
    cam->getViewing(m, 160, 120);
    pm("camview", m);
    cam->getProjectionTranslation(m, 160, 120);
    pm("camprojtrans", m);
    FrustumVolume f;
    cam->getFrustum(f, 160, 120);
    for(int i = 0; i < 6; ++i)
    {
        const Plane &p = f.getPlanes()[i];
        printf("plane %d %.9g %.9g %.9g %.9g\n", i, p.getNormal()[0], p.getNormal()[1],
               p.getNormal()[2], p.getDistanceFromOrigin());
    }
    printf("defaults fov %.9g near %.9g far %.9g aspect %.9g\n",
           PerspectiveCamera::create()->getFov(), PerspectiveCamera::create()->getNear(),
           PerspectiveCamera::create()->getFar(), PerspectiveCamera::create()->getAspect());
    NodePtr n = makeSphere(2, 1.5f);
    Matrix tm;
    tm.setTranslate(1, 2, 3);
    NodePtr g = Node::create();
    TransformPtr tt = Transform::create();
    beginEditCP(tt);
    tt->setMatrix(tm);
    endEditCP(tt);
    beginEditCP(g);
    g->setCore(tt);
    g->addChild(n);
    endEditCP(g);
    g->updateVolume();
    Pnt3f mn, mx;
    g->getVolume().getBounds(mn, mx);
    printf("vol %.9g %.9g %.9g %.9g %.9g %.9g\n", mn[0], mn[1], mn[2], mx[0], mx[1], mx[2]);
    DynamicVolume dv;
    g->getWorldVolume(dv);
    dv.getBounds(mn, mx);
    printf("wvol %.9g %.9g %.9g %.9g %.9g %.9g\n", mn[0], mn[1], mn[2], mx[0], mx[1], mx[2]);
}

void defaults(void)
{
    PerspectiveCameraPtr pcam = PerspectiveCamera::create();
    P("persp.fov", pcam->getFov());
    P("persp.aspect", pcam->getAspect());
    P("cam.near", pcam->getNear());
    P("cam.far", pcam->getFar());
    OrthographicCameraPtr oc = OrthographicCamera::create();
    P("ortho.vsize", oc->getVerticalSize());
    P("ortho.aspect", oc->getAspect());
    PointLightPtr pl = PointLight::create();
    pc("light.diffuse", pl->getDiffuse());
    pc("light.ambient", pl->getAmbient());
    pc("light.specular", pl->getSpecular());
    P("light.on", pl->getOn());
    P("light.ca", pl->getConstantAttenuation());
    P("light.la", pl->getLinearAttenuation());
    P("light.qa", pl->getQuadraticAttenuation());
    P("light.shadowint", pl->getShadowIntensity());
    printf("point.pos %g %g %g\n", pl->getPosition()[0], pl->getPosition()[1],
           pl->getPosition()[2]);
    SpotLightPtr sl = SpotLight::create();
    P("spot.cutoff", sl->getSpotCutOff());
    P("spot.exp", sl->getSpotExponent());
    printf("spot.dir %g %g %g\n", sl->getDirection()[0], sl->getDirection()[1],
           sl->getDirection()[2]);
    DirectionalLightPtr dl = DirectionalLight::create();
    printf("dir.dir %g %g %g\n", dl->getDirection()[0], dl->getDirection()[1],
           dl->getDirection()[2]);
    SimpleMaterialPtr sm = SimpleMaterial::create();
    pc3("sm.ambient", sm->getAmbient());
    pc3("sm.diffuse", sm->getDiffuse());
    pc3("sm.specular", sm->getSpecular());
    pc3("sm.emission", sm->getEmission());
    P("sm.shininess", sm->getShininess());
    P("sm.transparency", sm->getTransparency());
    P("sm.lit", sm->getLit());
    P("sm.colormaterial", sm->getColorMaterial());
    SimpleTexturedMaterialPtr stm = SimpleTexturedMaterial::create();
    P("stm.minfilter", stm->getMinFilter());
    P("stm.magfilter", stm->getMagFilter());
    P("stm.envmode", stm->getEnvMode());
    P("stm.envmap", stm->getEnvMap());
    TextureChunkPtr tc = TextureChunk::create();
    P("tex.min", tc->getMinFilter());
    P("tex.mag", tc->getMagFilter());
    P("tex.wraps", tc->getWrapS());
    P("tex.wrapt", tc->getWrapT());
    P("tex.wrapr", tc->getWrapR());
    P("tex.envmode", tc->getEnvMode());
    P("tex.internal", tc->getInternalFormat());
    P("tex.external", tc->getExternalFormat());
    P("tex.aniso", tc->getAnisotropy());
    P("tex.scale", tc->getScale());
    P("tex.target", tc->getTarget());
    P("tex.priority", tc->getPriority());
    P("tex.lodbias", tc->getLodBias());
    BlendChunkPtr bc = BlendChunk::create();
    P("blend.src", bc->getSrcFactor());
    P("blend.dst", bc->getDestFactor());
    P("blend.eq", bc->getEquation());
    P("blend.alphafunc", bc->getAlphaFunc());
    P("blend.alphavalue", bc->getAlphaValue());
    DepthChunkPtr dc = DepthChunk::create();
    P("depth.enable", dc->getEnable());
    P("depth.func", dc->getFunc());
    P("depth.near", dc->getNear());
    P("depth.far", dc->getFar());
    P("depth.ro", dc->getReadOnly());
    PolygonChunkPtr pgc = PolygonChunk::create();
    P("poly.cull", pgc->getCullFace());
    P("poly.front", pgc->getFrontFace());
    P("poly.modefront", pgc->getFrontMode());
    P("poly.modeback", pgc->getBackMode());
    P("poly.smooth", pgc->getSmooth());
    P("poly.offsetfactor", pgc->getOffsetFactor());
    P("poly.offsetfill", pgc->getOffsetFill());
    MaterialChunkPtr mc = MaterialChunk::create();
    pc("mat.diffuse", mc->getDiffuse());
    pc("mat.ambient", mc->getAmbient());
    pc("mat.specular", mc->getSpecular());
    pc("mat.emission", mc->getEmission());
    P("mat.shininess", mc->getShininess());
    P("mat.lit", mc->getLit());
    P("mat.colormaterial", mc->getColorMaterial());
    SHLChunkPtr shl = SHLChunk::create();
    P("shl.unknownwarn", shl->getUnknownParameterWarning());
    P("shl.ignoreaspect", shl->getIgnoreGLForAspect());
    P("shl.pointsize", shl->getPointSize());
    ViewportPtr vp = Viewport::create();
    P("vp.left", vp->getLeft());
    P("vp.right", vp->getRight());
    P("vp.bottom", vp->getBottom());
    P("vp.top", vp->getTop());
    P("vp.travmask", vp->getTravMask());
    P("vp.drawtime", vp->getDrawTime());
    FBOViewportPtr fbo = FBOViewport::create();
    P("fbo.storagew", fbo->getStorageWidth());
    P("fbo.storageh", fbo->getStorageHeight());
    P("fbo.gen", fbo->getGenCubemaps());
    P("fbo.fbo", fbo->getFboOn());
    P("fbo.readbuf", fbo->getReadBuffer());
    P("fbo.dirty", fbo->getDirty());
    SolidBackgroundPtr sb = SolidBackground::create();
    pc3("bg.color", sb->getColor());
    P("bg.alpha", sb->getAlpha());
    ImagePtr im = Image::create();
    P("img.pf", im->getPixelFormat());
    P("img.w", im->getWidth());
    P("img.h", im->getHeight());
    P("img.d", im->getDepth());
    P("img.mip", im->getMipMapCount());
    P("img.frames", im->getFrameCount());
    P("img.type", im->getDataType());
    P("img.bpp", im->getBpp());
    BoxVolume b;
    P("box.empty", b.isEmpty());
    P("box.valid", b.isValid());
    b.extendBy(Pnt3f(1, 2, 3));
    P("box.empty2", b.isEmpty());
    DynamicVolume dv;
    P("dyn.type", dv.getType());
    P("dyn.empty", dv.isEmpty());
    BoxVolume b2(-1, -1, -1, 1, 1, 1);
    Matrix m;
    m.setTransform(Vec3f(1, 2, 3), Quaternion(Vec3f(0, 1, 1), 0.5f));
    b2.transform(m);
    Pnt3f mn, mx;
    b2.getBounds(mn, mx);
    printf("boxT %.9g %.9g %.9g %.9g %.9g %.9g\n", mn[0], mn[1], mn[2], mx[0], mx[1], mx[2]);
    SphereVolume sv(Pnt3f(1, 2, 3), 2);
    sv.transform(m);
    printf("sphT %.9g %.9g %.9g %.9g\n", sv.getCenter()[0], sv.getCenter()[1], sv.getCenter()[2],
           sv.getRadius());
    P("box.intersect", b2.intersect(Pnt3f(1, 2, 3)));
    P("box.volume", b2.getScalarVolume());
}

} // namespace

int main(int argc, char **argv)
{
    if(argc > 1)
    {
        printf("usage: %s\nPrints matrix, camera, volume and field-default values of OpenSG.\n",
               argv[0]);
        return std::string(argv[1]) == "--help" ? 0 : 2;
    }
    osgInit(0, NULL);
    matrices();
    defaults();
    osgExit();
    return 0;
}
