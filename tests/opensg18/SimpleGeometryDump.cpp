// Prints, as text, everything the simple geometry makers build for a table
// of arguments, so that two builds of the scene graph can be compared with
// diff. Kept to the 1.8 public API and to C++98, so that the same file
// builds against either.
//
// Usage: simple_geometry_dump > file

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <cstdio>
#include <cstring>

OSG_USING_NAMESPACE

namespace
{

enum Maker
{
    Plane, Box, Cone, Cylinder, Frustum, Torus, Sphere, LatLongSphere
};

// Sizes and radii in r, counts in n, part switches in b; the order is
// that of the maker's parameters of each kind.
struct Call
{
    Maker  maker;
    Real32 r[3];
    UInt16 n[3];
    bool   b[3];
};

const bool T = true;
const bool F = false;

const Call calls[] =
{
    { Plane,         { 2, 1, 0 },        { 4, 3, 0 },   { F, F, F } },
    { Plane,         { 1, 1, 0 },        { 1, 1, 0 },   { F, F, F } },
    { Plane,         { 3, .7f, 0 },      { 5, 2, 0 },   { F, F, F } },
    { Plane,         { -2, 1, 0 },       { 2, 2, 0 },   { F, F, F } },
    { Plane,         { 0, 0, 0 },        { 1, 1, 0 },   { F, F, F } },
    { Plane,         { 1, 1, 0 },        { 0, 1, 0 },   { F, F, F } },
    { Plane,         { 1, 1, 0 },        { 1, 0, 0 },   { F, F, F } },

    { Box,           { 1, 1, 1 },        { 1, 1, 1 },   { F, F, F } },
    { Box,           { 2, 4, 6 },        { 1, 2, 3 },   { F, F, F } },
    { Box,           { 1.5f, .5f, 3 },   { 3, 1, 2 },   { F, F, F } },
    { Box,           { -1, 1, 2 },       { 2, 2, 2 },   { F, F, F } },
    { Box,           { 1, 1, 1 },        { 0, 1, 1 },   { F, F, F } },
    { Box,           { 1, 1, 1 },        { 1, 0, 1 },   { F, F, F } },
    { Box,           { 1, 1, 1 },        { 1, 1, 0 },   { F, F, F } },

    { Cone,          { 1, 1, 0 },        { 16, 0, 0 },  { T, T, F } },
    { Cone,          { 3, 1, 0 },        { 3, 0, 0 },   { T, T, F } },
    { Cone,          { 2, .5f, 0 },      { 5, 0, 0 },   { F, T, F } },
    { Cone,          { 2, .5f, 0 },      { 5, 0, 0 },   { T, F, F } },
    { Cone,          { 2, .5f, 0 },      { 5, 0, 0 },   { F, F, F } },
    { Cone,          { 1, 0, 0 },        { 4, 0, 0 },   { T, T, F } },
    { Cone,          { 0, 1, 0 },        { 8, 0, 0 },   { T, T, F } },
    { Cone,          { -1, 1, 0 },       { 8, 0, 0 },   { T, T, F } },
    { Cone,          { 1, -1, 0 },       { 8, 0, 0 },   { T, T, F } },
    { Cone,          { 1, 1, 0 },        { 2, 0, 0 },   { T, T, F } },
    { Cone,          { 1, 1, 0 },        { 0, 0, 0 },   { T, T, F } },

    { Cylinder,      { 2, .5f, 0 },      { 16, 0, 0 },  { T, T, T } },
    { Cylinder,      { 1, 1, 0 },        { 3, 0, 0 },   { T, T, T } },
    { Cylinder,      { 2, 1, 0 },        { 7, 0, 0 },   { F, T, F } },
    { Cylinder,      { 2, 1, 0 },        { 7, 0, 0 },   { T, F, T } },
    { Cylinder,      { 1, 0, 0 },        { 4, 0, 0 },   { T, T, T } },
    { Cylinder,      { 0, 1, 0 },        { 8, 0, 0 },   { T, T, T } },
    { Cylinder,      { 1, -.5f, 0 },     { 8, 0, 0 },   { T, T, T } },
    { Cylinder,      { 1, 1, 0 },        { 2, 0, 0 },   { T, T, T } },

    { Frustum,       { 1, .5f, 1 },      { 8, 0, 0 },   { T, T, T } },
    { Frustum,       { 2, 1, .25f },     { 5, 0, 0 },   { T, T, T } },
    { Frustum,       { 1.5f, 1, 0 },     { 4, 0, 0 },   { T, T, T } },
    { Frustum,       { 1, 0, 0 },        { 3, 0, 0 },   { T, T, T } },
    { Frustum,       { 1, .5f, 1 },      { 6, 0, 0 },   { F, T, T } },
    { Frustum,       { 1, .5f, 1 },      { 6, 0, 0 },   { T, F, F } },
    { Frustum,       { -1, .5f, 1 },     { 8, 0, 0 },   { T, T, T } },
    { Frustum,       { 1, -.5f, 1 },     { 8, 0, 0 },   { T, T, T } },
    { Frustum,       { 1, .5f, -1 },     { 8, 0, 0 },   { T, T, T } },
    { Frustum,       { 1, .5f, 1 },      { 2, 0, 0 },   { T, T, T } },

    { Torus,         { .25f, 1, 0 },     { 16, 32, 0 }, { F, F, F } },
    { Torus,         { .5f, 2, 0 },      { 3, 3, 0 },   { F, F, F } },
    { Torus,         { 1, 2, 0 },        { 5, 4, 0 },   { F, F, F } },
    { Torus,         { 0, 1, 0 },        { 8, 8, 0 },   { F, F, F } },
    { Torus,         { 1, 0, 0 },        { 8, 8, 0 },   { F, F, F } },
    { Torus,         { 1, 2, 0 },        { 2, 8, 0 },   { F, F, F } },
    { Torus,         { 1, 2, 0 },        { 8, 2, 0 },   { F, F, F } },

    { Sphere,        { 1, 0, 0 },        { 0, 0, 0 },   { F, F, F } },
    { Sphere,        { 2, 0, 0 },        { 1, 0, 0 },   { F, F, F } },
    { Sphere,        { 1, 0, 0 },        { 2, 0, 0 },   { F, F, F } },
    { Sphere,        { .5f, 0, 0 },      { 3, 0, 0 },   { F, F, F } },
    { Sphere,        { 1, 0, 0 },        { 4, 0, 0 },   { F, F, F } },
    { Sphere,        { 0, 0, 0 },        { 1, 0, 0 },   { F, F, F } },
    { Sphere,        { -1, 0, 0 },       { 1, 0, 0 },   { F, F, F } },

    { LatLongSphere, { 1, 0, 0 },        { 4, 4, 0 },   { F, F, F } },
    { LatLongSphere, { 2, 0, 0 },        { 8, 16, 0 },  { F, F, F } },
    { LatLongSphere, { .5f, 0, 0 },      { 5, 7, 0 },   { F, F, F } },
    { LatLongSphere, { 1, 0, 0 },        { 3, 8, 0 },   { F, F, F } },
    { LatLongSphere, { 1, 0, 0 },        { 8, 3, 0 },   { F, F, F } },
    { LatLongSphere, { 0, 0, 0 },        { 8, 8, 0 },   { F, F, F } },
    { LatLongSphere, { -1, 0, 0 },       { 8, 8, 0 },   { F, F, F } },
};

// Which calls also go through the node-returning form.
const Call nodeCalls[] =
{
    { Plane,         { 2, 1, 0 },        { 2, 1, 0 },   { F, F, F } },
    { Plane,         { 1, 1, 0 },        { 0, 1, 0 },   { F, F, F } },
    { Box,           { 1, 2, 3 },        { 1, 1, 2 },   { F, F, F } },
    { Box,           { 1, 1, 1 },        { 1, 1, 0 },   { F, F, F } },
    { Cone,          { 1, 1, 0 },        { 4, 0, 0 },   { T, T, F } },
    { Cone,          { 1, 1, 0 },        { 2, 0, 0 },   { T, T, F } },
    { Cylinder,      { 1, 1, 0 },        { 4, 0, 0 },   { T, T, T } },
    { Cylinder,      { 0, 1, 0 },        { 4, 0, 0 },   { T, T, T } },
    { Frustum,       { 1, .5f, 1 },      { 3, 0, 0 },   { T, T, T } },
    { Frustum,       { 1, .5f, 1 },      { 1, 0, 0 },   { T, T, T } },
    { Torus,         { .5f, 1, 0 },      { 3, 4, 0 },   { F, F, F } },
    { Torus,         { .5f, 1, 0 },      { 3, 1, 0 },   { F, F, F } },
    { Sphere,        { 1, 0, 0 },        { 0, 0, 0 },   { F, F, F } },
    { LatLongSphere, { 1, 0, 0 },        { 4, 5, 0 },   { F, F, F } },
    { LatLongSphere, { 1, 0, 0 },        { 4, 2, 0 },   { F, F, F } },
};

UInt32 logged = 0;

void countLogged(const Char8 *, Int32 size, void *)
{
    if(size > 0)
        ++logged;
}

// Fixed precision, with the sign of anything that rounds to zero dropped,
// as float noise decides it.
void printReal(Real32 v)
{
    char buf[64];
    if(v != v)
    {
        std::printf(" nan");
        return;
    }
    std::sprintf(buf, "%.5f", double(v));
    if(std::strcmp(buf, "-0.00000") == 0)
        std::strcpy(buf, "0.00000");
    std::printf(" %s", buf);
}

const char *boolName(bool b)
{
    return b ? "true" : "false";
}

const char *const makerNames[] =
{
    "Plane", "Box", "Cone", "Cylinder", "ConicalFrustum", "Torus", "Sphere", "LatLongSphere"
};

// The maker and every value of the call's table row.
void printCall(const Call &c, bool node)
{
    std::printf("make%s%s sizes %g %g %g counts %u %u %u switches %s %s %s\n",
                makerNames[c.maker], node ? "" : "Geo", c.r[0], c.r[1], c.r[2],
                c.n[0], c.n[1], c.n[2], boolName(c.b[0]), boolName(c.b[1]), boolName(c.b[2]));
}

GeometryPtr makeGeo(const Call &c)
{
    switch(c.maker)
    {
      case Plane:
        return makePlaneGeo(c.r[0], c.r[1], c.n[0], c.n[1]);
      case Box:
        return makeBoxGeo(c.r[0], c.r[1], c.r[2], c.n[0], c.n[1], c.n[2]);
      case Cone:
        return makeConeGeo(c.r[0], c.r[1], c.n[0], c.b[0], c.b[1]);
      case Cylinder:
        return makeCylinderGeo(c.r[0], c.r[1], c.n[0], c.b[0], c.b[1], c.b[2]);
      case Frustum:
        return makeConicalFrustumGeo(c.r[0], c.r[1], c.r[2], c.n[0],
                                     c.b[0], c.b[1], c.b[2]);
      case Torus:
        return makeTorusGeo(c.r[0], c.r[1], c.n[0], c.n[1]);
      case Sphere:
        return makeSphereGeo(c.n[0], c.r[0]);
      case LatLongSphere:
        return makeLatLongSphereGeo(c.n[0], c.n[1], c.r[0]);
    }
    return NullFC;
}

NodePtr makeNode(const Call &c)
{
    switch(c.maker)
    {
      case Plane:
        return makePlane(c.r[0], c.r[1], c.n[0], c.n[1]);
      case Box:
        return makeBox(c.r[0], c.r[1], c.r[2], c.n[0], c.n[1], c.n[2]);
      case Cone:
        return makeCone(c.r[0], c.r[1], c.n[0], c.b[0], c.b[1]);
      case Cylinder:
        return makeCylinder(c.r[0], c.r[1], c.n[0], c.b[0], c.b[1], c.b[2]);
      case Frustum:
        return makeConicalFrustum(c.r[0], c.r[1], c.r[2], c.n[0],
                                  c.b[0], c.b[1], c.b[2]);
      case Torus:
        return makeTorus(c.r[0], c.r[1], c.n[0], c.n[1]);
      case Sphere:
        return makeSphere(c.n[0], c.r[0]);
      case LatLongSphere:
        return makeLatLongSphere(c.n[0], c.n[1], c.r[0]);
    }
    return NullFC;
}

void printProperty(const char *what, FieldContainerPtr prop)
{
    std::printf("  %s: %s\n", what,
                prop == NullFC ? "none" : prop->getType().getCName());
}

const char *primitiveName(UInt32 type)
{
    switch(type)
    {
      case GL_POINTS:         return "points";
      case GL_LINES:          return "lines";
      case GL_LINE_STRIP:     return "line_strip";
      case GL_LINE_LOOP:      return "line_loop";
      case GL_TRIANGLES:      return "triangles";
      case GL_TRIANGLE_STRIP: return "triangle_strip";
      case GL_TRIANGLE_FAN:   return "triangle_fan";
      case GL_QUADS:          return "quads";
      case GL_QUAD_STRIP:     return "quad_strip";
      case GL_POLYGON:        return "polygon";
    }
    return "unknown";
}

// "  what v0 v1 ..." on a line of its own.
void printValues(const char *what, const Real32 *v, UInt32 n)
{
    std::printf("  %s", what);
    for(UInt32 i = 0; i < n; ++i)
        printReal(v[i]);
    std::printf("\n");
}

// A property's size, then each value numbered on its own line.
template <class PropPtr>
void printEach(const char *what, PropPtr prop, UInt32 dim)
{
    if(prop == NullFC)
        return;
    std::printf("  %s %u\n", what, prop->getSize());
    for(UInt32 i = 0; i < prop->getSize(); ++i)
    {
        std::printf("   %u", i);
        for(UInt32 k = 0; k < dim; ++k)
            printReal(prop->getValue(i)[k]);
        std::printf("\n");
    }
}

void printMaterial(const char *what, MaterialPtr mat)
{
    std::printf("%s: %s\n", what, mat == NullFC ? "none" : mat->getType().getCName());

    SimpleMaterialPtr sm = SimpleMaterialPtr::dcast(mat);
    if(sm == NullFC)
        return;

    printValues("ambient",   sm->getAmbient().getValuesRGB(), 3);
    printValues("diffuse",   sm->getDiffuse().getValuesRGB(), 3);
    printValues("specular",  sm->getSpecular().getValuesRGB(), 3);
    printValues("emission",  sm->getEmission().getValuesRGB(), 3);
    const Real32 shininess = sm->getShininess(), transparency = sm->getTransparency();
    printValues("shininess", &shininess, 1);
    printValues("transparency", &transparency, 1);
    std::printf("  lit %s\n  colorMaterial %u\n", boolName(sm->getLit()),
                UInt32(sm->getColorMaterial()));
}

void printGeometry(GeometryPtr geo)
{
    if(geo == NullFC)
    {
        std::printf("  NullFC\n");
        return;
    }

    std::printf("  core: %s\n", geo->getType().getCName());
    std::printf("  material: %s\n", geo->getMaterial() == getDefaultMaterial() ?
                "default" : "other");

    printProperty("types",           geo->getTypes());
    printProperty("lengths",         geo->getLengths());
    printProperty("positions",       geo->getPositions());
    printProperty("normals",         geo->getNormals());
    printProperty("colors",          geo->getColors());
    printProperty("secondaryColors", geo->getSecondaryColors());
    printProperty("texCoords",       geo->getTexCoords());
    printProperty("texCoords1",      geo->getTexCoords1());
    printProperty("texCoords2",      geo->getTexCoords2());
    printProperty("texCoords3",      geo->getTexCoords3());
    printProperty("indices",         geo->getIndices());

    std::printf("  indexMapping %u:", UInt32(geo->getIndexMapping().size()));
    for(UInt32 i = 0; i < geo->getIndexMapping().size(); ++i)
        std::printf(" %u", UInt32(geo->getIndexMapping()[i]));
    std::printf("\n");

    GeoPTypesPtr types = geo->getTypes();
    GeoPLengthsPtr lengths = geo->getLengths();
    if(types != NullFC)
    {
        std::printf("  primitives %u\n", types->getSize());
        for(UInt32 i = 0; i < types->getSize(); ++i)
        {
            std::printf("   %s", primitiveName(types->getValue(i)));
            if(lengths != NullFC && i < lengths->getSize())
                std::printf(" %u", UInt32(lengths->getValue(i)));
            std::printf("\n");
        }
    }
    if(lengths != NullFC)
        std::printf("  lengths %u\n", lengths->getSize());

    GeoIndicesPtr indices = geo->getIndices();
    if(indices != NullFC)
    {
        std::printf("  indices %u", indices->getSize());
        for(UInt32 i = 0; i < indices->getSize(); ++i)
            std::printf(i % 16 ? " %u" : "\n   %u", UInt32(indices->getValue(i)));
        std::printf("\n");
    }

    printEach("positions", geo->getPositions(), 3);
    printEach("normals",   geo->getNormals(),   3);
    printEach("texCoords", geo->getTexCoords(), 2);
}

} // namespace

int main(int argc, char **argv)
{
    osgInit(argc, argv);

    // Warnings are counted, not shown: their wording is free.
    osgLog().setLogType(LOG_BUFFER);
    osgLog().setLogLevel(LOG_WARNING);
    osgLog().getLogBuf().setCallback(countLogged);

    printMaterial("defaultMaterial", getDefaultMaterial());
    std::printf("  same on the next call: %s\n",
                boolName(getDefaultMaterial() == getDefaultMaterial()));
    printMaterial("defaultUnlitMaterial", getDefaultUnlitMaterial());
    std::printf("  same on the next call: %s\n",
                boolName(getDefaultUnlitMaterial() == getDefaultUnlitMaterial()));

    for(UInt32 i = 0; i < sizeof(calls) / sizeof(calls[0]); ++i)
    {
        printCall(calls[i], false);
        logged = 0;
        GeometryPtr geo = makeGeo(calls[i]);
        std::printf("  warned: %s\n", boolName(logged > 0));
        printGeometry(geo);
        if(geo != NullFC)
        {
            addRefCP(geo);
            subRefCP(geo);
        }
    }

    for(UInt32 i = 0; i < sizeof(nodeCalls) / sizeof(nodeCalls[0]); ++i)
    {
        printCall(nodeCalls[i], true);
        logged = 0;
        NodePtr node = makeNode(nodeCalls[i]);
        std::printf("  warned: %s\n", boolName(logged > 0));
        if(node == NullFC)
        {
            std::printf("  NullFC\n");
            continue;
        }
        std::printf("  node: %s, %u children, core %s\n", node->getType().getCName(),
                    node->getNChildren(),
                    node->getCore() == NullFC ? "none" : node->getCore()->getType().getCName());
        printGeometry(GeometryPtr::dcast(node->getCore()));
        addRefCP(node);
        subRefCP(node);
    }

    osgLog().getLogBuf().removeCallback();
    osgExit();
    return 0;
}
