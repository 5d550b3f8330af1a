#include "DeferredLightBatch.h"

#include <OpenSG/OSGGeometry.h>

#include <Lumora/ShaderManager.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

OSG_BEGIN_NAMESPACE

PolygonChunkPtr DeferredLightBatch::s_CullingOptions = NullFC;

namespace
{
Int32 roundUpToPowerOfTwo(Int32 value)
{
    Int32 result = 1;
    while(result < value)
        result <<= 1;
    return result;
}

TextureChunkPtr createFloatTexture(ImagePtr image)
{
    TextureChunkPtr texture = TextureChunk::create();
    beginEditCP(texture);
    texture->setImage         (image);
    texture->setInternalFormat(GL_RGBA32F_ARB);
    texture->setExternalFormat(GL_RGBA);
    texture->setMinFilter     (GL_NEAREST);
    texture->setMagFilter     (GL_NEAREST);
    texture->setWrapS         (GL_CLAMP_TO_EDGE);
    texture->setWrapT         (GL_CLAMP_TO_EDGE);
    endEditCP(texture);
    return texture;
}

ImagePtr createFloatImage(Int32 width, Int32 height)
{
    std::vector<Real32> zeros(size_t(width) * size_t(height) * 4, 0.0f);
    ImagePtr image = Image::create();
    image->set(Image::OSG_RGBA_PF, width, height, 1, 1, 1, 0.0,
               reinterpret_cast<const UInt8 *>(zeros.data()), Image::OSG_FLOAT32_IMAGEDATA);
    return image;
}
} // namespace

// Tile corners come in normalised device coordinates; each carries the
// viewport coordinate for the G-buffer and its tile's record run.
const char *DeferredLightBatch::s_strBatchVertex =
    "varying vec4 vScreenCoord;\n"
    "varying vec4 vTileLights;\n"
    "void main(void)\n"
    "{\n"
    "    gl_Position = vec4(gl_Vertex.xy, 0.0, 1.0);\n"
    "    vScreenCoord = vec4(gl_MultiTexCoord0.xy, 1.0, 1.0);\n"
    "    vTileLights = gl_MultiTexCoord1;\n"
    "}\n";

const char *DeferredLightBatch::s_strTileDepthVertex =
    "void main(void)\n"
    "{\n"
    "    gl_Position = ftransform();\n"
    "}\n";

// One texel a tile: the nearest and farthest depth of its pixels, read
// at the viewport's edge where the tile reaches past it.
const char *DeferredLightBatch::s_strTileDepthFragment =
    "#version 120\n"
    "#extension GL_EXT_gpu_shader4 : require\n"
    "uniform sampler2D texDepth;\n"
    "uniform vec2 vSize;\n"
    "uniform float fTileSize;\n"
    "void main(void)\n"
    "{\n"
    "    vec2 vFirst = floor(gl_FragCoord.xy) * fTileSize;\n"
    "    float fNear = 1.0;\n"
    "    float fFar = 0.0;\n"
    "    for(float y = 0.0; y < fTileSize; y += 1.0)\n"
    "    {\n"
    "        for(float x = 0.0; x < fTileSize; x += 1.0)\n"
    "        {\n"
    "            vec2 vAt = min(vFirst + vec2(x, y), vSize - 1.0);\n"
    "            float fZ = texelFetch2D(texDepth, ivec2(vAt), 0).r;\n"
    "            fNear = min(fNear, fZ);\n"
    "            fFar = max(fFar, fZ);\n"
    "        }\n"
    "    }\n"
    "    gl_FragColor = vec4(fNear, fFar, 0.0, 1.0);\n"
    "}\n";

// The point and spot models of the volume path, summed in one loop per
// kind. A point light's record: position and the reach beyond which the
// volume draws nothing, diffuse and linear attenuation, specular and
// quadratic attenuation; colours and terms are divided by the constant
// term, which leaves 1 or, when there is none, 0, told by the reach's sign.
// A spot light's record adds its direction and cut-off cosine, then its
// exponent.
const char *DeferredLightBatch::s_strBatchFragmentMain =
    "uniform sampler2D texLightData;\n"
    "uniform float fDataWidth;\n"
    "varying vec4 vScreenCoord;\n"
    "varying vec4 vTileLights;\n"
    "vec4 lightTexel(float fCol, float fRow)\n"
    "{\n"
    "    return texelFetch2D(texLightData, ivec2(int(fCol), int(fRow)), 0);\n"
    "}\n"
    "vec3 shadeLight(GeometryData data, vec3 vV, vec3 vL, vec3 vDiffuse, vec3 vSpecular)\n"
    "{\n"
    "    vec3 vN = data.vNormal;\n"
    "    float fNdotL = max(0.0, dot(vN, vL));\n"
    "    vec3 vR = normalize(reflect(-vL, vN));\n"
    "    float fRdotV = pow(max(0.0, dot(vR, vV)), max(1.0, data.fShininess));\n"
    "    return fNdotL * data.vDiffuse.rgb * vDiffuse + fRdotV * vSpecular * data.vSpecular;\n"
    "}\n"
    "void main(void)\n"
    "{\n"
    "    vec2 vCoord = vScreenCoord.xy / vScreenCoord.w;\n"
    "    GeometryData data = getGeometryData(vCoord);\n"
    "    vec3 vSum = vec3(0.0);\n"
    "    float fCol = floor(vTileLights.x + 0.5);\n"
    "    float fRow = floor(vTileLights.y + 0.5);\n"
    "    int nPoints = int(vTileLights.z + 0.5);\n"
    "    int nSpots = int(vTileLights.w + 0.5);\n"
    "    vec3 vV = normalize(-data.vPosition);\n"
    "    for(int i = 0; i < nPoints; ++i)\n"
    "    {\n"
    "        vec4 vA = lightTexel(fCol, fRow);\n"
    "        vec3 vToLight = vA.xyz - data.vPosition;\n"
    "        float fDist = length(vToLight);\n"
    "        if(fDist < abs(vA.w))\n"
    "        {\n"
    "            vec4 vB = lightTexel(fCol + 1.0, fRow);\n"
    "            vec4 vC = lightTexel(fCol + 2.0, fRow);\n"
    "            float fAttenuation = 1.0 / (step(0.0, vA.w) + vB.w * fDist + vC.w * fDist * fDist);\n"
    "            vSum += fAttenuation * shadeLight(data, vV, normalize(vToLight), vB.rgb, vC.rgb);\n"
    "        }\n"
    "        fCol += 3.0;\n"
    "        if(fCol + 3.0 > fDataWidth)\n"
    "        {\n"
    "            fCol = 0.0;\n"
    "            fRow += 1.0;\n"
    "        }\n"
    "    }\n"
    "    if(fCol + 5.0 > fDataWidth)\n"
    "    {\n"
    "        fCol = 0.0;\n"
    "        fRow += 1.0;\n"
    "    }\n"
    "    for(int i = 0; i < nSpots; ++i)\n"
    "    {\n"
    "        vec4 vA = lightTexel(fCol, fRow);\n"
    "        vec3 vToLight = vA.xyz - data.vPosition;\n"
    "        float fDist = length(vToLight);\n"
    "        vec4 vD = lightTexel(fCol + 3.0, fRow);\n"
    "        vec3 vL = normalize(vToLight);\n"
    "        float fSpot = dot(vD.xyz, -vL);\n"
    "        if(fDist < abs(vA.w) && fSpot > vD.w)\n"
    "        {\n"
    "            vec4 vB = lightTexel(fCol + 1.0, fRow);\n"
    "            vec4 vC = lightTexel(fCol + 2.0, fRow);\n"
    "            float fExponent = lightTexel(fCol + 4.0, fRow).x;\n"
    "            float fAttenuation = 1.0 / (step(0.0, vA.w) + vB.w * fDist + vC.w * fDist * fDist);\n"
    "            vSum += fAttenuation * pow(fSpot, fExponent) * shadeLight(data, vV, vL, vB.rgb, vC.rgb);\n"
    "        }\n"
    "        fCol += 5.0;\n"
    "        if(fCol + 5.0 > fDataWidth)\n"
    "        {\n"
    "            fCol = 0.0;\n"
    "            fRow += 1.0;\n"
    "        }\n"
    "    }\n"
    "    gl_FragColor = vec4(vSum, 1.0);\n"
    "}\n";

DeferredLightBatch::DeferredLightBatch(void) :
    IDeferredLight(),
    shaderChunk   (NullFC),
    tileQuads     (NullFC),
    lightImage    (NullFC),
    lightTexture  (NullFC),
    tileSize      (MinTileSize),
    tilesX        (1),
    tilesY        (1),
    numEntries    (0),
    numLitTiles   (0),
    depthMaterial  (NullFC),
    depthParameters(NullFC)
{
    shaderChunk = createShaderMaterial(sharedCullingChunk(s_CullingOptions, GL_BACK));

    // Quads for the tiles with lights, rebuilt each frame.
    tileQuads = Geometry::create();
    beginEditCP(tileQuads);
    tileQuads->setTypes     (GeoPTypesUI8::create());
    tileQuads->setLengths   (GeoPLengthsUI32::create());
    tileQuads->setPositions (GeoPositions3f::create());
    tileQuads->setTexCoords (GeoTexCoords2f::create());
    tileQuads->setTexCoords1(GeoTexCoords4f::create());
    tileQuads->setDlistCache(false);
    endEditCP(tileQuads);
    createVolume(tileQuads, NullFC);
    showVolume(false);

    // Two rows at least: one row would make a 1D texture, which the 2D
    // sampler cannot read.
    lightImage   = createFloatImage(LightWidth, 2);
    lightTexture = createFloatTexture(lightImage);
    addRefCP(lightTexture);
}

DeferredLightBatch::~DeferredLightBatch(void)
{
    subRefCP(lightTexture);
    if(depthMaterial != NullFC)
        subRefCP(depthMaterial);
}

void DeferredLightBatch::initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    ShaderManager &shaders = ShaderManager::getInstance();
    beginEditCP(shaderChunk, ShaderChunk::VertexProgramFieldMask |
                             ShaderChunk::FragmentProgramFieldMask);
    shaderChunk->setVertexProgram(s_strBatchVertex);
    // Texel fetches skip the coordinate arithmetic of texture2D, which
    // counts in a loop that runs per light and pixel.
    std::string header = shaders.generateGBufferAccessHeader(numGBufferTextures);
    header.insert(header.find('\n') + 1, "#extension GL_EXT_gpu_shader4 : require\n");
    shaderChunk->setFragmentProgram(header + s_strBatchFragmentMain);
    endEditCP(shaderChunk, ShaderChunk::VertexProgramFieldMask |
                           ShaderChunk::FragmentProgramFieldMask);

    attachGBuffer(gbuffer, numGBufferTextures);
    bindTexture("texLightData", lightTexture);

    SHLChunkPtr depthShader = SHLChunk::create();
    beginEditCP(depthShader);
    depthShader->setVertexProgram  (s_strTileDepthVertex);
    depthShader->setFragmentProgram(s_strTileDepthFragment);
    endEditCP(depthShader);
    depthParameters = SHLParameterChunk::create();
    beginEditCP(depthParameters);
    depthParameters->setSHLChunk(depthShader);
    depthParameters->setUniformParameter("texDepth",  Int32(0));
    depthParameters->setUniformParameter("fTileSize", Real32(MinTileSize));
    endEditCP(depthParameters);
    depthMaterial = ChunkMaterial::create();
    addRefCP(depthMaterial);
    beginEditCP(depthMaterial, ChunkMaterial::ChunksFieldMask);
    depthMaterial->addChunk(depthShader);
    depthMaterial->addChunk(depthParameters);
    depthMaterial->addChunk(gbuffer.getTargetTexture(4));
    endEditCP(depthMaterial, ChunkMaterial::ChunksFieldMask);

    initialized = true;
}

bool DeferredLightBatch::measureTileDepths(WindowPtr window, RenderActionBase *action,
                                           Int32 width, Int32 height, const Vec2f &camNearFar)
{
    tileDepths.clear();
    if(window == NullFC || action == NULL || depthMaterial == NullFC)
        return false;

    const Int32 columns = (width  + MinTileSize - 1) / MinTileSize;
    const Int32 rows    = (height + MinTileSize - 1) / MinTileSize;
    if(!depthTarget.isInitialized())
    {
        depthTarget.initialize(window, 0, 0, columns - 1, rows - 1);
        depthTarget.setBgClear(Color4f(0, 0, 0, 0), 1.0f, false, false);
        depthTarget.addTargetTexture(GL_RGBA32F_ARB, GL_RGBA, GL_NEAREST, Image::OSG_RGBA_PF,
                                     Image::OSG_FLOAT32_IMAGEDATA, 1.0f, 1);
    }
    else if(depthTarget.getWidth() != columns || depthTarget.getHeight() != rows)
    {
        depthTarget.resize(0, 0, columns - 1, rows - 1);
    }

    beginEditCP(depthParameters, ShaderParameterChunk::ParametersFieldMask);
    depthParameters->setUniformParameter("vSize", Vec2f(Real32(width), Real32(height)));
    endEditCP(depthParameters, ShaderParameterChunk::ParametersFieldMask);
    depthTarget.renderFullscreenPass(depthMaterial, action);

    TextureChunkPtr texture = depthTarget.getTargetTexture(0);
    const GLuint    name    = window->getGLObjectId(texture->getGLId());
    if(name == 0)
        return false;
    depthTexels.resize(size_t(columns) * size_t(rows) * 4);
    glBindTexture(GL_TEXTURE_2D, name);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, depthTexels.data());
    glBindTexture(GL_TEXTURE_2D, 0);

    // Linear depths as the light shaders reconstruct them, so that a light
    // left out of a tile could not have reached any of its pixels.
    const Real32 n = camNearFar[0];
    const Real32 f = camNearFar[1];
    tileDepths.resize(size_t(columns) * size_t(rows) * 2);
    for(size_t t = 0; t < size_t(columns) * size_t(rows); ++t)
    {
        tileDepths[t * 2 + 0] = n / (f - depthTexels[t * 4 + 0] * (f - n)) * f;
        tileDepths[t * 2 + 1] = n / (f - depthTexels[t * 4 + 1] * (f - n)) * f;
    }
    return true;
}

void DeferredLightBatch::update(const Matrix &, const Matrix &, const Vec2f &, LightPtr, Real32)
{
}

bool DeferredLightBatch::screenBounds(const Vec3f &center, Real32 radius,
                                      const Matrix &projection, Real32 nearDist,
                                      Int32 width, Int32 height,
                                      Int32 &x0, Int32 &y0, Int32 &x1, Int32 &y1)
{
    // Eye space looks down -z: all of it behind the near plane is unseen,
    // and a sphere reaching across the plane may cover any pixel.
    if(center[2] - radius >= -nearDist)
        return false;

    Real32 minX = 1.0f, minY = 1.0f, maxX = -1.0f, maxY = -1.0f;
    if(center[2] + radius >= -nearDist)
    {
        minX = minY = -1.0f;
        maxX = maxY =  1.0f;
    }
    else
    {
        // The corners of the box around the sphere bound its outline.
        for(UInt32 corner = 0; corner < 8; ++corner)
        {
            Pnt3f p(center[0] + ((corner & 1) ? radius : -radius),
                    center[1] + ((corner & 2) ? radius : -radius),
                    center[2] + ((corner & 4) ? radius : -radius));
            Vec4f clip(p[0], p[1], p[2], 1.0f);
            projection.multMatrixVec(clip);
            const Real32 x = clip[0] / clip[3];
            const Real32 y = clip[1] / clip[3];
            minX = osgMin(minX, x);
            maxX = osgMax(maxX, x);
            minY = osgMin(minY, y);
            maxY = osgMax(maxY, y);
        }
    }

    x0 = Int32(std::floor(osgMax(0.0f, (minX * 0.5f + 0.5f) * Real32(width))));
    y0 = Int32(std::floor(osgMax(0.0f, (minY * 0.5f + 0.5f) * Real32(height))));
    x1 = Int32(std::ceil (osgMin(Real32(width),  (maxX * 0.5f + 0.5f) * Real32(width))));
    y1 = Int32(std::ceil (osgMin(Real32(height), (maxY * 0.5f + 0.5f) * Real32(height))));
    return x0 < x1 && y0 < y1;
}

namespace
{
// Writes records into rows of LightWidth texels, none across a row's end.
class RecordWriter
{
  public:
    explicit RecordWriter(std::vector<Real32> &texels) : texels(texels) {}

    // Moves to the next row unless a record of this size fits.
    void fit(Int32 recordTexels)
    {
        if(col + recordTexels > DeferredLightBatch::LightWidth)
        {
            col = 0;
            ++row;
        }
    }

    void write(const Real32 *record, Int32 recordTexels)
    {
        const size_t at = (size_t(row) * DeferredLightBatch::LightWidth + size_t(col)) * 4;
        if(texels.size() < at + size_t(recordTexels) * 4)
            texels.resize((size_t(row) + 1) * DeferredLightBatch::LightWidth * 4);
        std::copy(record, record + recordTexels * 4, texels.begin() + at);
        col += recordTexels;
        fit(recordTexels);
    }

    Int32 col = 0;
    Int32 row = 0;

  private:
    std::vector<Real32> &texels;
};

// A point light's record, or the first three texels of a spot light's.
void fillRecord(const IDeferredLight::BatchRecord &r, Real32 *texels)
{
    // Dividing by the constant term leaves 1 or 0 in its place.
    const Real32 c     = r.attenuation[0];
    const Real32 scale = c > 0.0f ? 1.0f / c : 1.0f;
    const Real32 reach = c > 0.0f ? r.radius : -r.radius;
    const Real32 values[12] =
    {
        r.position[0], r.position[1], r.position[2], reach,
        r.diffuse [0] * scale, r.diffuse [1] * scale, r.diffuse [2] * scale,
        r.attenuation[1] * scale,
        r.specular[0] * scale, r.specular[1] * scale, r.specular[2] * scale,
        r.attenuation[2] * scale
    };
    std::copy(values, values + 12, texels);
}
} // namespace

void DeferredLightBatch::setLights(const std::vector<const BatchRecord *> &records,
                                   const Matrix     &projection,
                                   const Vec2f      &camNearFar,
                                   Int32             width,
                                   Int32             height,
                                   WindowPtr         window,
                                   RenderActionBase *action)
{
    const bool depths = !records.empty() &&
                        measureTileDepths(window, action, width, height, camNearFar);

    // Each light's pixel rectangle, and how many tiles of each size all of
    // them would cover.
    lightRects.assign(records.size() * 4, -1);
    UInt64 covered[3] = {0, 0, 0};
    for(size_t i = 0; i < records.size(); ++i)
    {
        Int32 *rect = &lightRects[i * 4];
        if(!screenBounds(records[i]->position, records[i]->radius, projection, camNearFar[0],
                         width, height, rect[0], rect[1], rect[2], rect[3]))
        {
            rect[0] = -1;
            continue;
        }
        for(Int32 k = 0, size = MinTileSize; k < 3; ++k, size *= 2)
            covered[k] += UInt64((rect[2] - 1) / size - rect[0] / size + 1) *
                          UInt64((rect[3] - 1) / size - rect[1] / size + 1);
    }
    const UInt64 budget = UInt64(EntriesPerTile) *
                          UInt64((width  + MinTileSize - 1) / MinTileSize) *
                          UInt64((height + MinTileSize - 1) / MinTileSize);
    tileSize = MinTileSize;
    for(Int32 k = 0; k < 2 && covered[k] > budget; ++k)
        tileSize *= 2;

    tilesX = osgMax(1, (width  + tileSize - 1) / tileSize);
    tilesY = osgMax(1, (height + tileSize - 1) / tileSize);
    const size_t numTiles = size_t(tilesX) * size_t(tilesY);

    // Depth ranges of these tiles from those of the smallest.
    mergedDepths.clear();
    if(depths)
    {
        const Int32 columns = (width + MinTileSize - 1) / MinTileSize;
        const Int32 rows    = (height + MinTileSize - 1) / MinTileSize;
        const Int32 step    = tileSize / MinTileSize;
        mergedDepths.assign(numTiles * 2, 0.0f);
        for(Int32 ty = 0; ty < tilesY; ++ty)
            for(Int32 tx = 0; tx < tilesX; ++tx)
            {
                Real32 nearest = std::numeric_limits<Real32>::max(), farthest = 0.0f;
                for(Int32 y = ty * step; y < osgMin(rows, (ty + 1) * step); ++y)
                    for(Int32 x = tx * step; x < osgMin(columns, (tx + 1) * step); ++x)
                    {
                        nearest  = osgMin(nearest,  tileDepths[(size_t(y) * columns + x) * 2]);
                        farthest = osgMax(farthest, tileDepths[(size_t(y) * columns + x) * 2 + 1]);
                    }
                mergedDepths[(size_t(ty) * tilesX + tx) * 2 + 0] = nearest;
                mergedDepths[(size_t(ty) * tilesX + tx) * 2 + 1] = farthest;
            }
    }
    // Whether light i's sphere reaches into tile t's depth range; a
    // thousandth of slack for the shader's rounding.
    auto reaches = [&](size_t i, size_t t)
    {
        if(mergedDepths.empty())
            return true;
        const Real32 depth  = -records[i]->position[2];
        const Real32 radius = records[i]->radius;
        return depth + radius >= mergedDepths[t * 2 + 0] * 0.999f &&
               depth - radius <= mergedDepths[t * 2 + 1] * 1.001f;
    };

    // Counting sort of (tile, light) pairs by tile, lights in given order;
    // the rectangles turn from pixels into tiles.
    tileCounts.assign(numTiles, 0);
    for(size_t i = 0; i < records.size(); ++i)
    {
        Int32 *rect = &lightRects[i * 4];
        if(rect[0] < 0)
            continue;
        rect[0] = rect[0] / tileSize;
        rect[1] = rect[1] / tileSize;
        rect[2] = (rect[2] - 1) / tileSize;
        rect[3] = (rect[3] - 1) / tileSize;
        for(Int32 ty = rect[1]; ty <= rect[3]; ++ty)
            for(Int32 tx = rect[0]; tx <= rect[2]; ++tx)
                if(reaches(i, size_t(ty) * tilesX + tx))
                    ++tileCounts[size_t(ty) * tilesX + tx];
    }

    tileStarts.resize(numTiles + 1);
    numEntries = 0;
    for(size_t t = 0; t < numTiles; ++t)
    {
        tileStarts[t] = numEntries;
        numEntries   += tileCounts[t];
    }
    tileStarts[numTiles] = numEntries;

    tileLights.resize(numEntries);
    std::vector<UInt32> &next = tileCounts;
    for(size_t t = 0; t < numTiles; ++t)
        next[t] = tileStarts[t];
    for(size_t i = 0; i < records.size(); ++i)
    {
        const Int32 *rect = &lightRects[i * 4];
        if(rect[0] < 0)
            continue;
        for(Int32 ty = rect[1]; ty <= rect[3]; ++ty)
            for(Int32 tx = rect[0]; tx <= rect[2]; ++tx)
                if(reaches(i, size_t(ty) * tilesX + tx))
                    tileLights[next[size_t(ty) * tilesX + tx]++] = UInt32(i);
    }

    // The records, tile by tile: the shader walks them with the same rule.
    // Each tile with lights becomes a quad whose corners carry its run.
    GeoPositions3fPtr positions = GeoPositions3fPtr::dcast(tileQuads->getPositions());
    GeoTexCoords2fPtr screen    = GeoTexCoords2fPtr::dcast(tileQuads->getTexCoords());
    GeoTexCoords4fPtr runs      = GeoTexCoords4fPtr::dcast(tileQuads->getTexCoords1());
    beginEditCP(positions);
    beginEditCP(screen);
    beginEditCP(runs);
    positions->getField().clear();
    screen   ->getField().clear();
    runs     ->getField().clear();

    // Each light's record once; tiles copy them.
    recordTexels.resize(records.size() * SpotTexels * 4);
    for(size_t i = 0; i < records.size(); ++i)
    {
        if(lightRects[i * 4] < 0)
            continue;
        const BatchRecord &r = *records[i];
        Real32 *record = &recordTexels[i * SpotTexels * 4];
        fillRecord(r, record);
        const Real32 spot[8] =
        {
            r.direction[0], r.direction[1], r.direction[2], r.cosCutoff,
            r.exponent, 0.0f, 0.0f, 0.0f
        };
        std::copy(spot, spot + 8, record + PointTexels * 4);
    }

    RecordWriter writer(lightTexels);
    numLitTiles = 0;
    for(size_t t = 0; t < numTiles; ++t)
    {
        if(tileStarts[t] == tileStarts[t + 1])
            continue;
        writer.fit(PointTexels);
        Vec4f run(Real32(writer.col), Real32(writer.row), 0.0f, 0.0f);

        for(UInt32 e = tileStarts[t]; e < tileStarts[t + 1]; ++e)
        {
            if(records[tileLights[e]]->cosCutoff >= -1.0f)
                continue;
            writer.write(&recordTexels[tileLights[e] * SpotTexels * 4], PointTexels);
            run[2] += 1.0f;
        }
        writer.fit(SpotTexels);
        for(UInt32 e = tileStarts[t]; e < tileStarts[t + 1]; ++e)
        {
            if(records[tileLights[e]]->cosCutoff < -1.0f)
                continue;
            writer.write(&recordTexels[tileLights[e] * SpotTexels * 4], SpotTexels);
            run[3] += 1.0f;
        }

        const Int32 tx = Int32(t % size_t(tilesX));
        const Int32 ty = Int32(t / size_t(tilesX));
        const Real32 u0 = Real32(tx * tileSize) / Real32(width);
        const Real32 v0 = Real32(ty * tileSize) / Real32(height);
        const Real32 u1 = Real32(osgMin((tx + 1) * tileSize, width))  / Real32(width);
        const Real32 v1 = Real32(osgMin((ty + 1) * tileSize, height)) / Real32(height);
        const Real32 corners[4][2] = {{u0, v0}, {u1, v0}, {u1, v1}, {u0, v1}};
        for(const Real32 *c : corners)
        {
            // The fields themselves: the generic interface of texture
            // coordinates holds fewer than four.
            positions->getField().push_back(Pnt3f(c[0] * 2.0f - 1.0f, c[1] * 2.0f - 1.0f, 0.0f));
            screen   ->getField().push_back(Vec2f(c[0], c[1]));
            runs     ->getField().push_back(run);
        }
        ++numLitTiles;
    }
    endEditCP(runs);
    endEditCP(screen);
    endEditCP(positions);

    GeoPTypesUI8Ptr    types   = GeoPTypesUI8Ptr::dcast(tileQuads->getTypes());
    GeoPLengthsUI32Ptr lengths = GeoPLengthsUI32Ptr::dcast(tileQuads->getLengths());
    beginEditCP(types);
    beginEditCP(lengths);
    types->clear();
    lengths->clear();
    types->push_back(GL_QUADS);
    lengths->push_back(numLitTiles * 4);
    endEditCP(lengths);
    endEditCP(types);

    // Light rows grow by powers of two, so that a light count changing
    // from frame to frame does not reallocate the texture each time.
    const Int32 rows = writer.row + (writer.col > 0 ? 1 : 0);
    lightTexels.resize(size_t(osgMax(rows, 1)) * LightWidth * 4);
    Int32 lightRows = lightImage->getHeight();
    if(lightRows < rows)
        lightRows = roundUpToPowerOfTwo(rows);
    upload(lightTexture, LightWidth, osgMax(rows, 1), lightRows, lightTexels);

    Matrix invProjection;
    projection.inverse(invProjection);

    beginEditCP(parameterChunk, ShaderParameterChunk::ParametersFieldMask);
    parameterChunk->setUniformParameter("vCamNearFar", camNearFar);
    parameterChunk->setUniformParameter("mCamInvProj", invProjection);
    parameterChunk->setUniformParameter("fDataWidth", Real32(LightWidth));
    endEditCP(parameterChunk, ShaderParameterChunk::ParametersFieldMask);
}

void DeferredLightBatch::upload(TextureChunkPtr texture, Int32 width, Int32 rows,
                                Int32 capacityRows, const std::vector<Real32> &texels)
{
    ImagePtr image = texture->getImage();
    const size_t used = size_t(width) * size_t(rows) * 4;

    if(image->getWidth() != width || image->getHeight() != capacityRows)
    {
        std::vector<Real32> full(size_t(width) * size_t(capacityRows) * 4, 0.0f);
        std::copy(texels.begin(), texels.begin() + used, full.begin());
        image->set(Image::OSG_RGBA_PF, width, capacityRows, 1, 1, 1, 0.0,
                   reinterpret_cast<const UInt8 *>(full.data()), Image::OSG_FLOAT32_IMAGEDATA);
        beginEditCP(texture, TextureChunk::ImageFieldMask);
        texture->setImage(image);
        endEditCP(texture, TextureChunk::ImageFieldMask);
        return;
    }

    std::copy(texels.begin(), texels.begin() + used,
              reinterpret_cast<Real32 *>(image->editData()));
    texture->imageContentChanged(0, width - 1, 0, rows - 1);
}

UInt16 DeferredLightBatch::getNumShadowmaps(void)
{
    return 0;
}

RenderTarget *DeferredLightBatch::getShadowmap(UInt16)
{
    return NULL;
}

bool DeferredLightBatch::updateLightCamera(UInt16, FrustumVolume &, DynamicVolume &,
                                           MatrixCameraPtr)
{
    return false;
}

OSG_END_NAMESPACE
