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
#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGPlane.h>
#include <OpenSG/OSGColor.h>

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

// The values of one container, or of one kind of value, on one line.
template <class... T>
void pv(const char *name, T... v)
{
    const double values[] = { double(v)... };
    printf("%s", name);
    for(size_t i = 0; i < sizeof...(v); ++i)
        printf(" %.9g", values[i]);
    printf("\n");
}

void pc (const char *n, const Color4f &c) { pv(n, c[0], c[1], c[2], c[3]); }
void pc3(const char *n, const Color3f &c) { pv(n, c[0], c[1], c[2]); }

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
    TransformPtr t = Transform::create();
    NodePtr beacon = makeNodeFor(t);
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
        pv("plane", i, p.getNormal()[0], p.getNormal()[1], p.getNormal()[2],
           p.getDistanceFromOrigin());
    }
    PerspectiveCameraPtr fresh = PerspectiveCamera::create();
    pv("defaults fov near far aspect", fresh->getFov(), fresh->getNear(), fresh->getFar(),
       fresh->getAspect());
    NodePtr n = makeSphere(2, 1.5f);
    Matrix tm;
    tm.setTranslate(1, 2, 3);
    TransformPtr tt = Transform::create();
    beginEditCP(tt);
    tt->setMatrix(tm);
    endEditCP(tt);
    NodePtr g = makeNodeFor(tt);
    beginEditCP(g);
    g->addChild(n);
    endEditCP(g);
    g->updateVolume();
    Pnt3f mn, mx;
    g->getVolume().getBounds(mn, mx);
    pv("vol", mn[0], mn[1], mn[2], mx[0], mx[1], mx[2]);
    DynamicVolume dv;
    g->getWorldVolume(dv);
    dv.getBounds(mn, mx);
    pv("wvol", mn[0], mn[1], mn[2], mx[0], mx[1], mx[2]);
}

void defaults(void)
{
    PerspectiveCameraPtr pcam = PerspectiveCamera::create();
    pv("persp fov aspect near far", pcam->getFov(), pcam->getAspect(), pcam->getNear(),
       pcam->getFar());
    OrthographicCameraPtr oc = OrthographicCamera::create();
    pv("ortho vsize aspect", oc->getVerticalSize(), oc->getAspect());
    PointLightPtr pl = PointLight::create();
    pc("light.diffuse", pl->getDiffuse());
    pc("light.ambient", pl->getAmbient());
    pc("light.specular", pl->getSpecular());
    pv("light on ca la qa shadowint", pl->getOn(), pl->getConstantAttenuation(),
       pl->getLinearAttenuation(), pl->getQuadraticAttenuation(), pl->getShadowIntensity());
    pv("point.pos", pl->getPosition()[0], pl->getPosition()[1], pl->getPosition()[2]);
    SpotLightPtr sl = SpotLight::create();
    pv("spot cutoff exp dir", sl->getSpotCutOff(), sl->getSpotExponent(),
       sl->getDirection()[0], sl->getDirection()[1], sl->getDirection()[2]);
    DirectionalLightPtr dl = DirectionalLight::create();
    pv("dir.dir", dl->getDirection()[0], dl->getDirection()[1], dl->getDirection()[2]);
    SimpleMaterialPtr sm = SimpleMaterial::create();
    pc3("sm.ambient", sm->getAmbient());
    pc3("sm.diffuse", sm->getDiffuse());
    pc3("sm.specular", sm->getSpecular());
    pc3("sm.emission", sm->getEmission());
    pv("sm shininess transparency lit colormaterial", sm->getShininess(),
       sm->getTransparency(), sm->getLit(), sm->getColorMaterial());
    SimpleTexturedMaterialPtr stm = SimpleTexturedMaterial::create();
    pv("stm minfilter magfilter envmode envmap", stm->getMinFilter(), stm->getMagFilter(),
       stm->getEnvMode(), stm->getEnvMap());
    TextureChunkPtr tc = TextureChunk::create();
    pv("tex min mag wraps wrapt wrapr envmode", tc->getMinFilter(), tc->getMagFilter(),
       tc->getWrapS(), tc->getWrapT(), tc->getWrapR(), tc->getEnvMode());
    pv("tex internal external aniso scale target priority lodbias", tc->getInternalFormat(),
       tc->getExternalFormat(), tc->getAnisotropy(), tc->getScale(), tc->getTarget(),
       tc->getPriority(), tc->getLodBias());
    BlendChunkPtr bc = BlendChunk::create();
    pv("blend src dst eq alphafunc alphavalue", bc->getSrcFactor(), bc->getDestFactor(),
       bc->getEquation(), bc->getAlphaFunc(), bc->getAlphaValue());
    DepthChunkPtr dc = DepthChunk::create();
    pv("depth enable func near far ro", dc->getEnable(), dc->getFunc(), dc->getNear(),
       dc->getFar(), dc->getReadOnly());
    PolygonChunkPtr pgc = PolygonChunk::create();
    pv("poly cull front modefront modeback smooth offsetfactor offsetfill",
       pgc->getCullFace(), pgc->getFrontFace(), pgc->getFrontMode(), pgc->getBackMode(),
       pgc->getSmooth(), pgc->getOffsetFactor(), pgc->getOffsetFill());
    MaterialChunkPtr mc = MaterialChunk::create();
    pc("mat.diffuse", mc->getDiffuse());
    pc("mat.ambient", mc->getAmbient());
    pc("mat.specular", mc->getSpecular());
    pc("mat.emission", mc->getEmission());
    pv("mat shininess lit colormaterial", mc->getShininess(), mc->getLit(),
       mc->getColorMaterial());
    SHLChunkPtr shl = SHLChunk::create();
    pv("shl unknownwarn ignoreaspect pointsize", shl->getUnknownParameterWarning(),
       shl->getIgnoreGLForAspect(), shl->getPointSize());
    ViewportPtr vp = Viewport::create();
    pv("vp left right bottom top travmask drawtime", vp->getLeft(), vp->getRight(),
       vp->getBottom(), vp->getTop(), vp->getTravMask(), vp->getDrawTime());
    FBOViewportPtr fbo = FBOViewport::create();
    pv("fbo storagew storageh gen fbo readbuf dirty", fbo->getStorageWidth(),
       fbo->getStorageHeight(), fbo->getGenCubemaps(), fbo->getFboOn(), fbo->getReadBuffer(),
       fbo->getDirty());
    SolidBackgroundPtr sb = SolidBackground::create();
    pc3("bg.color", sb->getColor());
    pv("bg.alpha", sb->getAlpha());
    ImagePtr im = Image::create();
    pv("img pf w h d mip frames type bpp", im->getPixelFormat(), im->getWidth(),
       im->getHeight(), im->getDepth(), im->getMipMapCount(), im->getFrameCount(),
       im->getDataType(), im->getBpp());
    BoxVolume b;
    const bool emptyAtFirst = b.isEmpty(), validAtFirst = b.isValid();
    b.extendBy(Pnt3f(1, 2, 3));
    pv("box empty valid empty-after-extend", emptyAtFirst, validAtFirst, b.isEmpty());
    DynamicVolume dv;
    pv("dyn type empty", dv.getType(), dv.isEmpty());
    BoxVolume b2(-1, -1, -1, 1, 1, 1);
    Matrix m;
    m.setTransform(Vec3f(1, 2, 3), Quaternion(Vec3f(0, 1, 1), 0.5f));
    b2.transform(m);
    Pnt3f mn, mx;
    b2.getBounds(mn, mx);
    pv("boxT", mn[0], mn[1], mn[2], mx[0], mx[1], mx[2]);
    SphereVolume sv(Pnt3f(1, 2, 3), 2);
    sv.transform(m);
    pv("sphT", sv.getCenter()[0], sv.getCenter()[1], sv.getCenter()[2], sv.getRadius());
    pv("box intersect volume", b2.intersect(Pnt3f(1, 2, 3)), b2.getScalarVolume());
}

// Every pair of volume kinds through the generic calls, and lines through each.
void volumes(void)
{
    FrustumVolume frustum;
    Matrix proj, view;
    MatrixPerspective(proj, deg2rad(60.f), 1.f, 1.f, 10.f);
    MatrixLookAt(view, Pnt3f(0, 0, 5), Pnt3f(0, 0, 0), Vec3f(0, 1, 0));
    view.invert();
    proj.mult(view);
    frustum.setPlanes(proj);
    BoxVolume box(-1, -1, -1, 1, 2, 1), farBox(20, 20, 20, 21, 21, 21), empty, infinite;
    infinite.setInfinite();
    SphereVolume sphere(Pnt3f(1.5f, 0, 0), 1.f), farSphere(Pnt3f(0, 0, 30), 2.f);
    DynamicVolume dynBox, dynSphere(DynamicVolume::SPHERE_VOLUME);
    dynBox.extendBy(Pnt3f(0.5f, 0.5f, 0.5f));
    dynBox.extendBy(Pnt3f(3, 3, 3));
    dynSphere.extendBy(box);
    const Volume *all[] = { &box, &farBox, &empty, &infinite, &sphere, &farSphere,
                            &frustum, &dynBox, &dynSphere };
    const int n = int(sizeof(all) / sizeof(all[0]));
    Pnt3f mn, mx;
    for(int i = 0; i < n; ++i)
        for(int j = 0; j < n; ++j)
        {
            BoxVolume b(box);
            SphereVolume s(sphere);
            DynamicVolume d(dynSphere);
            extend(b, *all[j]);
            extend(s, *all[j]);
            extend(d, *all[j]);
            b.getBounds(mn, mx);
            pv("pair intersect member box", i, j, intersect(*all[i], *all[j]),
               all[i]->intersect(*all[j]), mn[0], mn[1], mn[2], mx[0], mx[1], mx[2]);
            pv("  sphere dyn", s.getCenter()[0], s.getCenter()[1], s.getCenter()[2],
               s.getRadius(), d.getType(), d.isEmpty(), d.isInfinite());
        }
    SphereVolume grown(Pnt3f(0, 0, 0), 1.f);
    grown.extendBy(Pnt3f(3, 0, 0));
    pv("sphere extendBy", grown.getCenter()[0], grown.getRadius());
    const Line lines[] = { Line(Pnt3f(-5, 0, 0), Vec3f(1, 0, 0)), Line(Pnt3f(0, 0, 0), Vec3f(0, 1, 0)),
                           Line(Pnt3f(5, 0, 0), Vec3f(1, 0, 0)), Line(Pnt3f(-5, 3, 0), Vec3f(1, 0, 0)),
                           Line(Pnt3f(0, 0, 9), Vec3f(0, 0, -1)), Line(Pnt3f(1.5f, 1, 0), Vec3f(0, 0, 1)) };
    for(const Line &l : lines)
    {
        Real32 e[6] = { 0, 0, 0, 0, 0, 0 };
        const bool hb = box.intersect(l, e[0], e[1]), hs = sphere.intersect(l, e[2], e[3]);
        const bool hf = l.intersect(frustum, e[4], e[5]);
        pv("line box sphere frustum", hb, e[0], e[1], hs, e[2], e[3], hf, e[4], e[5],
           l.distance(Pnt3f(1, 1, 1)), l.getClosestPoint(Pnt3f(1, 1, 1))[2]);
        Pnt3f p1, p2;
        const bool c = l.getClosestPoints(lines[5], p1, p2);
        pv("  closest", c, p1[0], p1[1], p1[2], p2[0], p2[1], p2[2]);
    }
}

// Packing, plane moves and clipping, morphs and image conversions.
void conversions(void)
{
    Color4f packed;
    packed.setRGBA(0x40ff8000);
    pv("rgba unpacked packed", packed[0], packed[2], packed[3], Color3f(0.1f, 0.2f, 0.3f).getRGB());
    Plane plane(Vec3f(1, 2, 2), Pnt3f(1, 1, 1));
    Matrix m;
    m.setTransform(Vec3f(1, 2, 3), Quaternion(Vec3f(0, 1, 1), 0.5f));
    plane.transform(m);
    Pnt3f square[] = { Pnt3f(-1, -1, 0), Pnt3f(1, -1, 0), Pnt3f(1, 1, 0), Pnt3f(-1, 1, 0) }, out[8];
    const int n = Plane(Vec3f(1, 1, 0), 0.2f).clip(square, out, 4);
    pv("plane clip", plane.getNormal()[0], plane.getDistanceFromOrigin(), n, out[0][0], out[0][1], out[n - 1][1]);
    DynamicVolume dv;
    dv.extendBy(Pnt3f(0, 0, 0));
    dv.extendBy(Pnt3f(2, 2, 2));
    dv.morphToType(DynamicVolume::SPHERE_VOLUME);
    Pnt3f mn, mx;
    dv.getBounds(mn, mx);
    pv("morph", mn[0], mx[0], BoxVolume(0, 0, 0, 1, 1, 1).intersect(Pnt3f(1, 1, 1)));
    UInt8 data[36];
    for(int i = 0; i < 36; ++i)
        data[i] = UInt8(i * 7);
    const UInt32 formats[] = { Image::OSG_L_PF, Image::OSG_LA_PF, Image::OSG_RGBA_PF };
    for(UInt32 format : formats)
    {
        ImagePtr image = Image::create(), to = Image::create();
        image->set(Image::OSG_RGB_PF, 4, 3, 1, 1, 1, 0, data);
        image->reformat(Image::PixelFormat(format), to);
        to->scale(5, 2);
        to->createMipmap();
        unsigned sum = 0;
        for(UInt32 i = 0; i < to->getSize(); ++i)
            sum = sum * 31 + to->getData()[i];
        pv("image", format, to->getSize(), to->getMipMapCount(), sum);
    }
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
    volumes();
    conversions();
    osgExit();
    return 0;
}
