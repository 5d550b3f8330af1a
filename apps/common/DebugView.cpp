#include "DebugView.h"

#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGGL.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

using namespace osg;

namespace demo
{

namespace
{

const char *s_names[NumDebugViews] =
    {"none", "normals", "diffuse", "specular", "shininess", "emissive", "depth", "light"};

UInt8 toByte(Real32 value)
{
    return UInt8(std::min(std::max(value, 0.0f), 1.0f) * 255.0f + 0.5f);
}

// Level 0 of a 2D texture, four floats a texel (one for depth textures).
bool readTexture(TextureChunkPtr texture, bool depth, std::vector<Real32> &texels,
                 int &width, int &height)
{
    if(texture == NullFC || texture->getGLTextureName() == 0)
        return false;

    GLint previous  = 0;
    GLint alignment = 4;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH,  &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    texels.assign(std::size_t(width) * std::size_t(height) * (depth ? 1 : 4), 0.0f);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glGetTexImage(GL_TEXTURE_2D, 0, depth ? GL_DEPTH_COMPONENT : GL_RGBA, GL_FLOAT,
                  texels.data());
    glPixelStorei(GL_PACK_ALIGNMENT, alignment);
    glBindTexture(GL_TEXTURE_2D, GLuint(previous));
    return width > 0 && height > 0;
}

// Window depth back to eye distance for a perspective projection.
Real32 linearDepth(Real32 depth, Real32 zNear, Real32 zFar)
{
    Real32 ndc = 2.0f * depth - 1.0f;
    return 2.0f * zNear * zFar / (zFar + zNear - ndc * (zFar - zNear));
}

void depthToGrey(const std::vector<Real32> &depths, Real32 zNear, Real32 zFar,
                 std::vector<UInt8> &rgb)
{
    // Spread over the depths actually drawn; over [near, far] a scene a few
    // metres deep would be one shade of black.
    Real32 nearest  = std::numeric_limits<Real32>::max();
    Real32 farthest = 0.0f;
    std::vector<Real32> eye(depths.size(), -1.0f);
    for(std::size_t i = 0; i < depths.size(); ++i)
    {
        if(depths[i] >= 1.0f)
            continue;
        eye[i]   = linearDepth(depths[i], zNear, zFar);
        nearest  = std::min(nearest,  eye[i]);
        farthest = std::max(farthest, eye[i]);
    }
    const Real32 range = farthest > nearest ? farthest - nearest : 1.0f;
    for(std::size_t i = 0; i < depths.size(); ++i)
    {
        // The cleared background is as far as it gets.
        UInt8 grey = eye[i] < 0.0f ? 255 : toByte((eye[i] - nearest) / range);
        rgb[i * 3 + 0] = rgb[i * 3 + 1] = rgb[i * 3 + 2] = grey;
    }
}

} // namespace

const char *debugViewName(DebugView view)
{
    if(view < NoDebugView || view >= NumDebugViews)
        return NULL;
    return s_names[view];
}

bool readDebugView(DeferredRenderingViewportPtr viewport, DebugView view,
                   std::vector<UInt8> &rgb, int &width, int &height)
{
    if(view <= NoDebugView || view >= NumDebugViews)
    {
        std::cerr << "readDebugView: no such view (" << int(view) << ")\n";
        return false;
    }
    if(viewport == NullFC || viewport->getLastWidth() <= 0 ||
       !viewport->getGBufferTarget().isInitialized())
    {
        std::cerr << "readDebugView: the viewport has not rendered a frame\n";
        return false;
    }

    // G-buffer layout: 0 normals, 1 diffuse, 2 specular + shininess,
    // 3 emission, 4 depth.
    const bool depth  = view == DepthView;
    int        source = 0;
    switch(view)
    {
        case NormalsView:   source = 0; break;
        case DiffuseView:   source = 1; break;
        case SpecularView:
        case ShininessView: source = 2; break;
        case EmissiveView:  source = 3; break;
        case DepthView:     source = 4; break;
        default:            break;
    }
    TextureChunkPtr texture = view == LightView
        ? viewport->getLightTarget().getTargetTexture(0)
        : viewport->getGBufferTarget().getTargetTexture(UInt8(source));

    std::vector<Real32> texels;
    if(!readTexture(texture, depth, texels, width, height))
    {
        std::cerr << "readDebugView: the viewport has no " << debugViewName(view)
                  << " texture yet\n";
        return false;
    }

    const std::size_t pixels = std::size_t(width) * std::size_t(height);
    rgb.assign(pixels * 3, 0);
    if(depth)
    {
        CameraPtr camera = viewport->getCamera();
        Real32 zNear = camera != NullFC ? camera->getNear() : 0.1f;
        Real32 zFar  = camera != NullFC ? camera->getFar()  : 100.0f;
        depthToGrey(texels, zNear, zFar, rgb);
        return true;
    }
    for(std::size_t i = 0; i < pixels; ++i)
    {
        const Real32 *t = &texels[i * 4];
        for(int c = 0; c < 3; ++c)
            rgb[i * 3 + c] = toByte(view == ShininessView ? t[3] : t[c]);
    }
    return true;
}

} // namespace demo
