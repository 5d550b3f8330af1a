#include "ForwardRenderer.h"
#include "RawGL.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGState.h>
#include <OpenSG/OSGTriangleIterator.h>

#include <Lumora/IDeferredLight.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

using namespace osg;

namespace
{

// The same vertices in every pass, so that the later passes' GL_EQUAL
// depth test meets the first pass's depth exactly.
const char *s_strVertex =
    "#version 120\n"
    "invariant gl_Position;\n"
    "attribute vec3 aPosition;\n"
    "attribute vec3 aNormal;\n"
    "attribute vec2 aTexCoord;\n"
    "uniform mat4 mModelView;\n"
    "uniform mat4 mProjection;\n"
    "uniform mat3 mNormal;\n"
    "varying vec3 vPosition;\n"
    "varying vec3 vNormal;\n"
    "varying vec2 vTexCoord;\n"
    "void main(void)\n"
    "{\n"
    "    vec4 vEye = mModelView * vec4(aPosition, 1.0);\n"
    "    vPosition = vEye.xyz;\n"
    "    vNormal = normalize(mNormal * aNormal);\n"
    "    vTexCoord = aTexCoord;\n"
    "    gl_Position = mProjection * vEye;\n"
    "}\n";

// The library's point, spot and directional models; a texture stands in
// for the diffuse colour as it does in the G-buffer, and no ambient term
// is added, as none is in the light buffer.
const char *s_strFragment =
    "#version 120\n"
    "const int MAX_LIGHTS = 8;\n"
    "uniform vec4 vLightPosition[MAX_LIGHTS];\n"
    "uniform vec3 vLightDiffuse[MAX_LIGHTS];\n"
    "uniform vec3 vLightSpecular[MAX_LIGHTS];\n"
    "uniform vec3 vLightAttenuation[MAX_LIGHTS];\n"
    "uniform vec4 vLightSpot[MAX_LIGHTS];\n"
    "uniform float fLightExponent[MAX_LIGHTS];\n"
    "uniform int nLights;\n"
    "uniform vec4 vDiffuse;\n"
    "uniform vec3 vSpecular;\n"
    "uniform vec3 vEmissive;\n"
    "uniform float fShininess;\n"
    "uniform bool bUseDiffuseTexture;\n"
    "uniform sampler2D texDiffuse;\n"
    "varying vec3 vPosition;\n"
    "varying vec3 vNormal;\n"
    "varying vec2 vTexCoord;\n"
    "void main(void)\n"
    "{\n"
    "    vec3 vN = normalize(vNormal);\n"
    "    vec3 vV = normalize(-vPosition);\n"
    "    vec3 vDiff = bUseDiffuseTexture ? texture2D(texDiffuse, vTexCoord).rgb : vDiffuse.rgb;\n"
    "    vec3 vSum = vEmissive;\n"
    "    for(int i = 0; i < MAX_LIGHTS; ++i)\n"
    "    {\n"
    "        if(i >= nLights)\n"
    "            break;\n"
    "        vec3 vL = vLightPosition[i].xyz;\n"
    "        float fFactor = 1.0;\n"
    "        if(vLightPosition[i].w != 0.0)\n"
    "        {\n"
    "            vec3 vToLight = vLightPosition[i].xyz - vPosition;\n"
    "            float fDist = length(vToLight);\n"
    "            vL = vToLight / fDist;\n"
    "            vec3 vAtt = vLightAttenuation[i];\n"
    "            fFactor = 1.0 / (vAtt.x + vAtt.y * fDist + vAtt.z * fDist * fDist);\n"
    "            if(vLightSpot[i].w > -2.0)\n"
    "            {\n"
    "                float fSpot = dot(vLightSpot[i].xyz, -vL);\n"
    "                if(fSpot <= vLightSpot[i].w)\n"
    "                    continue;\n"
    "                fFactor *= pow(max(fSpot, 0.0), fLightExponent[i]);\n"
    "            }\n"
    "        }\n"
    "        float fNdotL = max(0.0, dot(vN, vL));\n"
    "        vec3 vR = normalize(reflect(-vL, vN));\n"
    "        float fRdotV = pow(max(0.0, dot(vR, vV)), fShininess);\n"
    "        vSum += fFactor * (fNdotL * vDiff * vLightDiffuse[i] +\n"
    "                           fRdotV * vLightSpecular[i] * vSpecular);\n"
    "    }\n"
    "    gl_FragColor = vec4(vSum, 1.0);\n"
    "}\n";

// Marks a light without a cone in vLightSpot's w.
const float NoSpot = -3.f;

// The G-buffer's eight-bit channels hold no more than this.
float unit(float value)
{
    return std::min(1.f, std::max(0.f, value));
}

bool mipmapped(GLenum filter)
{
    return filter != GL_NEAREST && filter != GL_LINEAR;
}

struct Vertex
{
    float position[3];
    float normal  [3];
    float texCoord[2];
};

// GL state the frame changes, given back afterwards: the scene graph keeps
// its own record of what is bound and enabled.
struct SavedState
{
    GLint     drawFramebuffer = 0;
    GLint     readFramebuffer = 0;
    GLint     viewport[4]     = {0, 0, 0, 0};
    GLint     program         = 0;
    GLint     vertexArray     = 0;
    GLint     activeTexture   = 0;
    GLint     texture         = 0;
    GLint     depthFunc       = GL_LESS;
    GLboolean depthMask       = GL_TRUE;
    GLboolean depthTest       = GL_FALSE;
    GLboolean blend           = GL_FALSE;
    GLboolean cullFace        = GL_FALSE;
    GLint     blendSrc        = GL_ONE;
    GLint     blendDst        = GL_ZERO;
    GLfloat   clearColour[4]  = {0.f, 0.f, 0.f, 0.f};

    void save(void)
    {
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawFramebuffer);
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &readFramebuffer);
        glGetIntegerv(GL_VIEWPORT, viewport);
        glGetIntegerv(GL_CURRENT_PROGRAM, &program);
        glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray);
        glGetIntegerv(GL_ACTIVE_TEXTURE, &activeTexture);
        glActiveTexture(GL_TEXTURE0);
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
        glGetIntegerv(GL_DEPTH_FUNC, &depthFunc);
        glGetBooleanv(GL_DEPTH_WRITEMASK, &depthMask);
        depthTest = glIsEnabled(GL_DEPTH_TEST);
        blend     = glIsEnabled(GL_BLEND);
        cullFace  = glIsEnabled(GL_CULL_FACE);
        glGetIntegerv(GL_BLEND_SRC_RGB, &blendSrc);
        glGetIntegerv(GL_BLEND_DST_RGB, &blendDst);
        glGetFloatv(GL_COLOR_CLEAR_VALUE, clearColour);
    }

    void restore(void) const
    {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GLuint(drawFramebuffer));
        glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(readFramebuffer));
        glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
        glUseProgram(GLuint(program));
        glBindVertexArray(GLuint(vertexArray));
        glBindTexture(GL_TEXTURE_2D, GLuint(texture));
        glActiveTexture(GLenum(activeTexture));
        glDepthFunc(GLenum(depthFunc));
        glDepthMask(depthMask);
        depthTest ? glEnable(GL_DEPTH_TEST) : glDisable(GL_DEPTH_TEST);
        blend     ? glEnable(GL_BLEND)      : glDisable(GL_BLEND);
        cullFace  ? glEnable(GL_CULL_FACE)  : glDisable(GL_CULL_FACE);
        glBlendFunc(GLenum(blendSrc), GLenum(blendDst));
        glClearColor(clearColour[0], clearColour[1], clearColour[2], clearColour[3]);
    }
};

} // namespace

ForwardRenderer::ForwardRenderer(void) :
    width(0), height(0), program(0), framebuffer(0), colourTexture(0), depthBuffer(0)
{
}

ForwardRenderer::~ForwardRenderer(void)
{
    release();
    glDeleteProgram(program);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteTextures(1, &colourTexture);
    glDeleteRenderbuffers(1, &depthBuffer);
}

bool ForwardRenderer::initialize(int w, int h, std::string &error)
{
    width  = w;
    height = h;

    program = rawgl::buildProgram(s_strVertex, s_strFragment,
                                  {"aPosition", "aNormal", "aTexCoord"}, error);
    if(program == 0)
        return false;

    GLint previousProgram = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &previousProgram);
    glUseProgram(program);
    glUniform1i(glGetUniformLocation(program, "texDiffuse"), 0);
    uniforms.modelView   = glGetUniformLocation(program, "mModelView");
    uniforms.projection  = glGetUniformLocation(program, "mProjection");
    uniforms.normal      = glGetUniformLocation(program, "mNormal");
    uniforms.position    = glGetUniformLocation(program, "vLightPosition");
    uniforms.diffuse     = glGetUniformLocation(program, "vLightDiffuse");
    uniforms.specular    = glGetUniformLocation(program, "vLightSpecular");
    uniforms.attenuation = glGetUniformLocation(program, "vLightAttenuation");
    uniforms.spot        = glGetUniformLocation(program, "vLightSpot");
    uniforms.exponent    = glGetUniformLocation(program, "fLightExponent");
    uniforms.count       = glGetUniformLocation(program, "nLights");
    uniforms.matDiffuse  = glGetUniformLocation(program, "vDiffuse");
    uniforms.matSpecular = glGetUniformLocation(program, "vSpecular");
    uniforms.matEmissive = glGetUniformLocation(program, "vEmissive");
    uniforms.shininess   = glGetUniformLocation(program, "fShininess");
    uniforms.useTexture  = glGetUniformLocation(program, "bUseDiffuseTexture");
    glUseProgram(GLuint(previousProgram));

    // Half floats as the deferred light buffer has them: the passes add up
    // beyond 1 without clipping, and the two images compare value for value.
    GLint previousTexture = 0, previousFramebuffer = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previousTexture);
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &previousFramebuffer);
    glGenTextures(1, &colourTexture);
    glBindTexture(GL_TEXTURE_2D, colourTexture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16F, w, h, 0, GL_RGBA, GL_FLOAT, NULL);
    glBindTexture(GL_TEXTURE_2D, GLuint(previousTexture));
    glGenRenderbuffers(1, &depthBuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, depthBuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, w, h);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                           colourTexture, 0);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                              depthBuffer);
    const bool complete =
        glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, GLuint(previousFramebuffer));
    if(!complete)
    {
        error = "the RGBA16F target is incomplete";
        return false;
    }
    return true;
}

void ForwardRenderer::release(void)
{
    for(Object &object : objects)
    {
        glDeleteVertexArrays(1, &object.vao);
        glDeleteBuffers(2, object.buffers);
    }
    objects.clear();
    for(auto &entry : textures)
        glDeleteTextures(1, &entry.second);
    textures.clear();
}

void ForwardRenderer::prepare(NodePtr root)
{
    release();
    if(root == NullFC)
        return;
    GLint previousVertexArray = 0, previousBuffer = 0, previousTexture = 0;
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &previousVertexArray);
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &previousBuffer);
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previousTexture);
    collect(root, NullFC);
    glBindVertexArray(GLuint(previousVertexArray));
    glBindBuffer(GL_ARRAY_BUFFER, GLuint(previousBuffer));
    glBindTexture(GL_TEXTURE_2D, GLuint(previousTexture));
}

void ForwardRenderer::collect(NodePtr node, MaterialPtr inherited)
{
    // What the traversal would not draw.
    if(node == NullFC || node->getTravMask() == 0)
        return;
    NodeCorePtr core = node->getCore();
    if(MaterialGroupPtr group = MaterialGroupPtr::dcast(core))
    {
        if(group->getMaterial() != NullFC)
            inherited = group->getMaterial();
    }
    else if(GeometryPtr geometry = GeometryPtr::dcast(core))
    {
        addGeometry(node, inherited != NullFC ? inherited : geometry->getMaterial());
    }
    for(UInt32 i = 0; i < node->getNChildren(); ++i)
        collect(node->getChild(i), inherited);
}

bool ForwardRenderer::readMaterial(MaterialPtr source, Material &result)
{
    ChunkMaterialPtr material = ChunkMaterialPtr::dcast(source);
    // Glass and the like belong to a pass of their own, left out here.
    if(material == NullFC || material->isTransparent())
        return false;

    material->rebuildState();
    StatePtr state = material->getState(0);
    if(state == NullFC)
        return false;

    // Without a material chunk GL's default material applies.
    result.diffuse[0] = result.diffuse[1] = result.diffuse[2] = 0.8f;
    MaterialChunkPtr chunk =
        MaterialChunkPtr::dcast(state->getChunk(MaterialChunk::getStaticClassId()));
    if(chunk != NullFC)
    {
        for(int i = 0; i < 3; ++i)
        {
            result.diffuse [i] = unit(chunk->getDiffuse ()[i]);
            result.specular[i] = unit(chunk->getSpecular()[i]);
            result.emissive[i] = unit(chunk->getEmission()[i]);
        }
        result.diffuse[3] = unit(chunk->getDiffuse()[3]);
        // The G-buffer keeps log2 of the shininess in [0, 8].
        result.shininess = std::min(256.f, std::max(1.f, chunk->getShininess()));
    }

    TextureChunkPtr texture =
        TextureChunkPtr::dcast(state->getChunk(TextureChunk::getStaticClassId()));
    if(texture != NullFC && !texture->getIgnore() && texture->getImage() != NullFC)
        result.texture = uploadTexture(texture);
    return true;
}

GLuint ForwardRenderer::uploadTexture(TextureChunkPtr chunk)
{
    std::map<TextureChunkPtr, GLuint>::iterator found = textures.find(chunk);
    if(found != textures.end())
        return found->second;

    ImagePtr image = chunk->getImage();
    const GLenum format = image->getPixelFormat();
    const bool   plain  = format == GL_RGB || format == GL_RGBA || format == GL_BGR ||
                          format == GL_BGRA || format == GL_LUMINANCE ||
                          format == GL_LUMINANCE_ALPHA || format == GL_ALPHA;
    if(image->getData() == NULL || image->getDepth() > 1 || !plain)
    {
        SWARNING << "ForwardRenderer: a texture that is not a plain 2D image, "
                 << "drawn without it" << std::endl;
        textures[chunk] = 0;
        return 0;
    }

    GLenum internal = chunk->getInternalFormat();
    if(internal == GL_NONE)
        internal = image->hasAlphaChannel() ? GL_RGBA8 : GL_RGB8;

    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GLint(internal), image->getWidth(), image->getHeight(), 0,
                 format, GLenum(image->getDataType()), image->getData());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    const GLenum minFilter = chunk->getMinFilter();
    if(mipmapped(minFilter))
        glGenerateMipmap(GL_TEXTURE_2D);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GLint(minFilter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GLint(chunk->getMagFilter()));
    // GL_CLAMP is gone from the core profile; its edge form samples alike
    // with a border-less image.
    auto wrap = [](GLenum mode) { return GLint(mode == GL_CLAMP ? GL_CLAMP_TO_EDGE : mode); };
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap(chunk->getWrapS()));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap(chunk->getWrapT()));
    textures[chunk] = name;
    return name;
}

void ForwardRenderer::addGeometry(NodePtr node, MaterialPtr material)
{
    GeometryPtr geometry = GeometryPtr::dcast(node->getCore());
    Object object;
    if(geometry == NullFC || !readMaterial(material, object.material))
        return;

    // One vertex per distinct corner, as the geometry indexes it; corners
    // without a normal take their face's, and so are not shared.
    std::map<std::array<Int32, 3>, GLuint> corners;
    std::vector<Vertex> vertices;
    std::vector<GLuint> indices;
    for(TriangleIterator it = geometry->beginTriangles(), end = geometry->endTriangles();
        it != end; ++it)
    {
        Vec3f face = (it.getPosition(1) - it.getPosition(0)).cross(
                      it.getPosition(2) - it.getPosition(0));
        face.normalize();
        for(Int32 k = 0; k < 3; ++k)
        {
            const Int32 normalIndex = it.getNormalIndex(k);
            const std::array<Int32, 3> key = {it.getPositionIndex(k),
                                              normalIndex >= 0 ? normalIndex
                                                               : -1 - it.getIndex(),
                                              it.getTexCoordsIndex(k)};
            std::map<std::array<Int32, 3>, GLuint>::iterator found = corners.find(key);
            if(found != corners.end())
            {
                indices.push_back(found->second);
                continue;
            }
            Vertex v;
            const Pnt3f p = it.getPosition(k);
            const Vec3f n = normalIndex >= 0 ? it.getNormal(k) : face;
            const Vec2f t = it.getTexCoordsIndex(k) >= 0 ? it.getTexCoords(k) : Vec2f(0, 0);
            for(int c = 0; c < 3; ++c)
            {
                v.position[c] = p[c];
                v.normal  [c] = n[c];
            }
            v.texCoord[0] = t[0];
            v.texCoord[1] = t[1];
            corners[key] = GLuint(vertices.size());
            indices.push_back(GLuint(vertices.size()));
            vertices.push_back(v);
        }
    }
    if(indices.empty())
        return;

    object.world = node->getToWorld();
    object.boundsMin.setValues( std::numeric_limits<float>::max(),
                                std::numeric_limits<float>::max(),
                                std::numeric_limits<float>::max());
    object.boundsMax.setValues(-std::numeric_limits<float>::max(),
                               -std::numeric_limits<float>::max(),
                               -std::numeric_limits<float>::max());
    for(const Vertex &v : vertices)
    {
        Pnt3f p(v.position[0], v.position[1], v.position[2]);
        object.world.multFullMatrixPnt(p);
        for(int c = 0; c < 3; ++c)
        {
            object.boundsMin[c] = std::min(object.boundsMin[c], p[c]);
            object.boundsMax[c] = std::max(object.boundsMax[c], p[c]);
        }
    }

    glGenVertexArrays(1, &object.vao);
    glBindVertexArray(object.vao);
    glGenBuffers(2, object.buffers);
    glBindBuffer(GL_ARRAY_BUFFER, object.buffers[0]);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(vertices.size() * sizeof(Vertex)),
                 vertices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, object.buffers[1]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, GLsizeiptr(indices.size() * sizeof(GLuint)),
                 indices.data(), GL_STATIC_DRAW);
    glEnableVertexAttribArray(0);
    glEnableVertexAttribArray(1);
    glEnableVertexAttribArray(2);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                          reinterpret_cast<const void *>(offsetof(Vertex, position)));
    glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                          reinterpret_cast<const void *>(offsetof(Vertex, normal)));
    glVertexAttribPointer(2, 2, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                          reinterpret_cast<const void *>(offsetof(Vertex, texCoord)));
    glBindVertexArray(0);
    object.indices = GLsizei(indices.size());
    objects.push_back(object);
}

void ForwardRenderer::gatherLights(const Matrix &viewing, const std::vector<LightPtr> &lights)
{
    eyeLights.clear();
    for(LightPtr light : lights)
    {
        if(light == NullFC || !light->getOn())
            continue;
        Matrix toWorld;
        if(light->getBeacon() != NullFC)
            toWorld = light->getBeacon()->getToWorld();

        EyeLight l;
        for(int c = 0; c < 3; ++c)
        {
            l.diffuse [c] = light->getDiffuse ()[c];
            l.specular[c] = light->getSpecular()[c];
        }
        l.attenuation[0] = light->getConstantAttenuation();
        l.attenuation[1] = light->getLinearAttenuation();
        l.attenuation[2] = light->getQuadraticAttenuation();
        l.spot[0] = l.spot[1] = l.spot[2] = 0.f;
        l.spot[3]  = NoSpot;
        l.exponent = 0.f;
        l.bounded  = true;
        // The volumes' reach: no further than they are drawn.
        l.reach = 1.1f * IDeferredLight::maxLightDistance(l.attenuation[1], l.attenuation[2]);

        // Exact types, as the viewport takes them: a spot is a point too.
        const FieldContainerType &type = light->getType();
        if(type == DirectionalLight::getClassType())
        {
            Vec3f direction = DirectionalLightPtr::dcast(light)->getDirection();
            toWorld.multMatrixVec(direction);
            viewing.multMatrixVec(direction);
            direction.normalize();
            for(int c = 0; c < 3; ++c)
                l.position[c] = direction[c];
            l.position[3] = 0.f;
            l.bounded     = false;
        }
        else if(type == PointLight::getClassType() || type == SpotLight::getClassType())
        {
            Pnt3f position = PointLightPtr::dcast(light)->getPosition();
            toWorld.multFullMatrixPnt(position);
            l.worldPosition = position;
            viewing.multFullMatrixPnt(position);
            for(int c = 0; c < 3; ++c)
                l.position[c] = position[c];
            l.position[3] = 1.f;
            if(type == SpotLight::getClassType())
            {
                SpotLightPtr spot = SpotLightPtr::dcast(light);
                Vec3f direction = spot->getDirection();
                toWorld.multMatrixVec(direction);
                viewing.multMatrixVec(direction);
                direction.normalize();
                for(int c = 0; c < 3; ++c)
                    l.spot[c] = direction[c];
                l.spot[3]  = std::cos(spot->getSpotCutOff());
                l.exponent = spot->getSpotExponent();
            }
        }
        else
            continue;
        eyeLights.push_back(l);
    }
}

bool ForwardRenderer::visible(const Matrix &viewProjection, const Object &object) const
{
    // Outside when all eight corners of the bounds lie beyond one plane.
    int outside[6] = {0, 0, 0, 0, 0, 0};
    for(int corner = 0; corner < 8; ++corner)
    {
        const Pnt3f p((corner & 1) ? object.boundsMax[0] : object.boundsMin[0],
                      (corner & 2) ? object.boundsMax[1] : object.boundsMin[1],
                      (corner & 4) ? object.boundsMax[2] : object.boundsMin[2]);
        Vec4f clip;
        viewProjection.multMatrixVec(Vec4f(p[0], p[1], p[2], 1.f), clip);
        for(int axis = 0; axis < 3; ++axis)
        {
            outside[2 * axis]     += clip[axis] < -clip[3];
            outside[2 * axis + 1] += clip[axis] >  clip[3];
        }
    }
    for(int plane = 0; plane < 6; ++plane)
        if(outside[plane] == 8)
            return false;
    return true;
}

bool ForwardRenderer::reaches(const EyeLight &light, const Object &object) const
{
    if(!light.bounded)
        return true;
    float distance2 = 0.f;
    for(int c = 0; c < 3; ++c)
    {
        const float p = light.worldPosition[c];
        const float d = p < object.boundsMin[c] ? object.boundsMin[c] - p
                      : p > object.boundsMax[c] ? p - object.boundsMax[c] : 0.f;
        distance2 += d * d;
    }
    return distance2 <= light.reach * light.reach;
}

void ForwardRenderer::drawPass(const Object &object, const std::vector<int> &lights,
                               size_t first, bool withEmissive)
{
    GLfloat position[4 * MaxPassLights], diffuse[3 * MaxPassLights];
    GLfloat specular[3 * MaxPassLights], attenuation[3 * MaxPassLights];
    GLfloat spot[4 * MaxPassLights], exponent[MaxPassLights];
    const size_t count = std::min(lights.size() - std::min(first, lights.size()),
                                  size_t(MaxPassLights));
    for(size_t i = 0; i < count; ++i)
    {
        const EyeLight &l = eyeLights[size_t(lights[first + i])];
        std::copy(l.position,    l.position    + 4, position    + 4 * i);
        std::copy(l.diffuse,     l.diffuse     + 3, diffuse     + 3 * i);
        std::copy(l.specular,    l.specular    + 3, specular    + 3 * i);
        std::copy(l.attenuation, l.attenuation + 3, attenuation + 3 * i);
        std::copy(l.spot,        l.spot        + 4, spot        + 4 * i);
        exponent[i] = l.exponent;
    }
    if(count > 0)
    {
        const GLsizei n = GLsizei(count);
        glUniform4fv(uniforms.position,    n, position);
        glUniform3fv(uniforms.diffuse,     n, diffuse);
        glUniform3fv(uniforms.specular,    n, specular);
        glUniform3fv(uniforms.attenuation, n, attenuation);
        glUniform4fv(uniforms.spot,        n, spot);
        glUniform1fv(uniforms.exponent,    n, exponent);
    }
    glUniform1i(uniforms.count, GLint(count));

    static const GLfloat black[3] = {0.f, 0.f, 0.f};
    glUniform3fv(uniforms.matEmissive, 1, withEmissive ? object.material.emissive : black);
    glDrawElements(GL_TRIANGLES, object.indices, GL_UNSIGNED_INT, NULL);
}

double ForwardRenderer::render(CameraPtr camera, const std::vector<LightPtr> &lights)
{
    SavedState saved;
    saved.save();
    glFinish();
    const double start = rawgl::nowMilliseconds();

    Matrix viewing, projection;
    camera->getViewing   (viewing,    UInt32(width), UInt32(height));
    camera->getProjection(projection, UInt32(width), UInt32(height));
    gatherLights(viewing, lights);

    // The objects in view, the lights that reach each, and the order near
    // to far so that the depth test spares the shading of what is hidden.
    Matrix viewProjection = projection;
    viewProjection.mult(viewing);
    stats = FrameStats();
    touching.resize(objects.size());
    order.clear();
    for(size_t i = 0; i < objects.size(); ++i)
    {
        const Object &object = objects[i];
        touching[i].clear();
        if(!visible(viewProjection, object))
            continue;
        for(size_t k = 0; k < eyeLights.size(); ++k)
            if(reaches(eyeLights[k], object))
                touching[i].push_back(int(k));
        Pnt3f centre = object.boundsMin + (object.boundsMax - object.boundsMin) * 0.5f;
        viewing.multFullMatrixPnt(centre);
        order.push_back(std::make_pair(-centre[2], int(i)));
        stats.maxLights     = std::max(stats.maxLights, int(touching[i].size()));
        stats.lightObjects += int(touching[i].size());
    }
    std::sort(order.begin(), order.end());

    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glViewport(0, 0, width, height);
    glClearColor(0.f, 0.f, 0.f, 0.f);
    glDepthMask(GL_TRUE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    glUseProgram(program);
    glUniformMatrix4fv(uniforms.projection, 1, GL_FALSE, projection.getValues());
    glActiveTexture(GL_TEXTURE0);

    // Pass 0 lays down depth and the emissive colour with the first eight
    // lights; pass k adds lights 8k to 8k + 7 where the depth is the same.
    for(size_t first = 0;; first += MaxPassLights)
    {
        const bool base = first == 0;
        if(!base)
        {
            glDepthFunc(GL_EQUAL);
            glDepthMask(GL_FALSE);
            glEnable(GL_BLEND);
            glBlendFunc(GL_ONE, GL_ONE);
        }
        else
        {
            glDepthFunc(GL_LEQUAL);
        }
        bool drew = false;
        for(const std::pair<float, int> &entry : order)
        {
            const size_t index = size_t(entry.second);
            if(!base && touching[index].size() <= first)
                continue;
            const Object &object = objects[index];
            Matrix modelView = viewing;
            modelView.mult(object.world);
            Matrix inverse;
            modelView.inverse3(inverse);
            GLfloat normal[9];
            // The inverse's transpose, column by column.
            for(int c = 0; c < 3; ++c)
                for(int r = 0; r < 3; ++r)
                    normal[3 * c + r] = inverse[r][c];
            glUniformMatrix4fv(uniforms.modelView, 1, GL_FALSE, modelView.getValues());
            glUniformMatrix3fv(uniforms.normal,    1, GL_FALSE, normal);
            glUniform4fv(uniforms.matDiffuse,  1, object.material.diffuse);
            glUniform3fv(uniforms.matSpecular, 1, object.material.specular);
            glUniform1f (uniforms.shininess,      object.material.shininess);
            glUniform1i (uniforms.useTexture,     object.material.texture != 0);
            glBindTexture(GL_TEXTURE_2D, object.material.texture);
            glBindVertexArray(object.vao);
            drawPass(object, touching[index], first, base);
            if(base)
                ++stats.objects;
            else
                ++stats.extraPasses;
            drew = true;
        }
        if(!drew && !base)
            break;
    }

    // Shown as the viewport shows its light buffer.
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GLuint(saved.drawFramebuffer));
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                      GL_NEAREST);

    glFinish();
    const double ms = rawgl::nowMilliseconds() - start;
    saved.restore();
    return ms;
}

std::vector<float> ForwardRenderer::readColour(void) const
{
    std::vector<float> pixels(size_t(width) * size_t(height) * 4);
    GLint previous = 0;
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &previous);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_FLOAT, pixels.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(previous));
    return pixels;
}
