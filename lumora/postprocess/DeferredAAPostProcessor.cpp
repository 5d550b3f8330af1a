#include "DeferredAAPostProcessor.h"

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

OSG_BEGIN_NAMESPACE

// A line through the pixel is an edge where the depth changes ten times as
// much on one side as on the other (a crease or silhouette, not a slope),
// or where the normals on its two sides turn differently.
const char *DeferredAAPostProcessor::s_strFragmentShader =
    "uniform sampler2D texDepth;\n"
    "uniform sampler2D texNormal;\n"
    "uniform sampler2D texScene;\n"
    "uniform vec2 vPixelSize;\n"
    "\n"
    "const float edgeDetectSensitivity = 10.0;\n"
    "\n"
    "float getEdgeWeight(vec2 vTexCoord)\n"
    "{\n"
    "    vec2 vOffsets[9];\n"
    "    vOffsets[0] = vec2( 0.0,  0.0);\n"
    "    vOffsets[1] = vec2(-1.0,  1.0);\n"
    "    vOffsets[2] = vec2( 0.0,  1.0);\n"
    "    vOffsets[3] = vec2( 1.0,  1.0);\n"
    "    vOffsets[4] = vec2( 1.0,  0.0);\n"
    "    vOffsets[5] = vec2( 1.0, -1.0);\n"
    "    vOffsets[6] = vec2( 0.0, -1.0);\n"
    "    vOffsets[7] = vec2(-1.0, -1.0);\n"
    "    vOffsets[8] = vec2(-1.0,  0.0);\n"
    "\n"
    "    float fDepth[9];\n"
    "    vec3 vNormal[9];\n"
    "    for(int i = 0; i < 9; ++i)\n"
    "    {\n"
    "        vec2 vTap = vTexCoord + vOffsets[i] * vPixelSize;\n"
    "        fDepth[i] = texture2D(texDepth, vTap).r;\n"
    "        vNormal[i] = normalize(texture2D(texNormal, vTap).rgb * 2.0 - 1.0);\n"
    "    }\n"
    "\n"
    "    float fEdges = 0.0;\n"
    "    for(int i = 1; i <= 4; ++i)\n"
    "    {\n"
    "        float a = abs(fDepth[i] - fDepth[0]);\n"
    "        float b = abs(fDepth[0] - fDepth[i + 4]);\n"
    "        bool bDepthEdge = max(a, b) >= edgeDetectSensitivity * max(min(a, b), 0.00001);\n"
    "        bool bNormalEdge = abs(dot(vNormal[i], vNormal[0]) -\n"
    "                               dot(vNormal[i + 4], vNormal[0])) >= 1.0;\n"
    "        if(bDepthEdge || bNormalEdge)\n"
    "            fEdges += 1.0;\n"
    "    }\n"
    "    return fEdges * 0.25;\n"
    "}\n"
    "\n"
    "void main()\n"
    "{\n"
    "    vec2 vTexCoord = gl_TexCoord[0].st;\n"
    "    float fWeight = getEdgeWeight(vTexCoord);\n"
    "    vec4 vSum = texture2D(texScene, vTexCoord + fWeight * vec2(-0.5,  0.5) * vPixelSize);\n"
    "    vSum += texture2D(texScene, vTexCoord + fWeight * vec2( 0.5,  0.5) * vPixelSize);\n"
    "    vSum += texture2D(texScene, vTexCoord + fWeight * vec2( 0.5, -0.5) * vPixelSize);\n"
    "    vSum += texture2D(texScene, vTexCoord + fWeight * vec2(-0.5, -0.5) * vPixelSize);\n"
    "    gl_FragColor = vec4(vSum.rgb * 0.25, 1.0);\n"
    "}\n";

DeferredAAPostProcessor::DeferredAAPostProcessor(void) :
    IDeferredPostProcessor(),
    finalShader           (NullFC),
    finalMaterial         (NullFC)
{
}

DeferredAAPostProcessor::~DeferredAAPostProcessor(void)
{
    release({finalMaterial, finalShader});
}

void DeferredAAPostProcessor::initialize(WindowPtr     window,
                                         int           left,
                                         int           bottom,
                                         int           right,
                                         int           top,
                                         RenderTarget &gbuffer,
                                         UInt16        gbufferTextureCount)
{
    initializeBase(window, left, bottom, right, top);

    finalShader = createShader(s_strFragmentShader, {"texDepth", "texNormal", "texScene"});
    setUniform(finalShader, "vPixelSize", getPixelSize(FullSize, left, bottom, right, top));

    finalMaterial = createMaterial(finalShader,
        {gbuffer.getTargetTexture(UInt8(gbufferTextureCount - 1)), gbuffer.getTargetTexture(0)});

    initialized = true;
}

void DeferredAAPostProcessor::resize(int left, int bottom, int right, int top)
{
    resizeTargets({&renderTarget}, FullSize, left, bottom, right, top);
    setUniform(finalShader, "vPixelSize", getPixelSize(FullSize, left, bottom, right, top));
}

void DeferredAAPostProcessor::update(const Matrix &, const Matrix &, const Vec2f &)
{
}

TextureChunkPtr DeferredAAPostProcessor::perform(TextureChunkPtr input)
{
    renderPass(renderTarget, finalMaterial, input);
    return renderTarget.getTargetTexture(0);
}

OSG_END_NAMESPACE
