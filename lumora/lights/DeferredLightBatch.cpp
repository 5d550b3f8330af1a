#include "DeferredLightBatch.h"

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include <Lumora/ShaderManager.h>

#include <algorithm>
#include <cmath>

OSG_BEGIN_NAMESPACE

PolygonChunkPtr DeferredLightBatch::s_CullingOptions = NullFC;

namespace
{
// Records per row of the light texture.
const Int32 RecordsPerRow = 256;
const Int32 LightWidth    = RecordsPerRow * DeferredLightBatch::RecordTexels;

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

// The point and spot models of the volume path, summed in one loop; a
// light's record is five texels: position and radius, diffuse and cosine
// of the cut-off (below -1 for a point light), specular and exponent,
// attenuation, direction.
const char *DeferredLightBatch::s_strBatchFragmentMain =
    "uniform sampler2D texLightTiles;\n"
    "uniform sampler2D texLightData;\n"
    "uniform vec2 vTileScale;\n"
    "uniform vec2 vDataScale;\n"
    "uniform float fDataWidth;\n"
    "varying vec4 vScreenCoord;\n"
    "vec4 lightTexel(float fCol, float fRow)\n"
    "{\n"
    "    return texture2D(texLightData, (vec2(fCol, fRow) + 0.5) * vDataScale);\n"
    "}\n"
    "void main(void)\n"
    "{\n"
    "    vec2 vCoord = vScreenCoord.xy / vScreenCoord.w;\n"
    "    GeometryData data = getGeometryData(vCoord);\n"
    "    vec3 vSum = data.vEmissive.rgb;\n"
    "    vec4 vTile = texture2D(texLightTiles, gl_FragCoord.xy * vTileScale);\n"
    "    float fCol = vTile.x;\n"
    "    float fRow = vTile.y;\n"
    "    int nCount = int(vTile.z + 0.5);\n"
    "    vec3 vN = data.vNormal;\n"
    "    vec3 vV = normalize(-data.vPosition);\n"
    "    float fShininess = max(1.0, data.fShininess);\n"
    "    for(int i = 0; i < nCount; ++i)\n"
    "    {\n"
    "        vec4 vPositionRadius = lightTexel(fCol, fRow);\n"
    "        vec3 vToLight = vPositionRadius.xyz - data.vPosition;\n"
    "        float fDist = length(vToLight);\n"
    "        if(fDist < vPositionRadius.w)\n"
    "        {\n"
    "            vec4 vDiffuseCutoff = lightTexel(fCol + 1.0, fRow);\n"
    "            vec4 vSpecularExponent = lightTexel(fCol + 2.0, fRow);\n"
    "            vec3 vAttenuation = lightTexel(fCol + 3.0, fRow).xyz;\n"
    "            vec3 vL = normalize(vToLight);\n"
    "            float fFactor = 1.0 / (vAttenuation.x + vAttenuation.y * fDist + vAttenuation.z * fDist * fDist);\n"
    "            if(vDiffuseCutoff.w >= -1.0)\n"
    "            {\n"
    "                float fSpot = dot(lightTexel(fCol + 4.0, fRow).xyz, -vL);\n"
    "                fFactor = fSpot > vDiffuseCutoff.w ? fFactor * pow(fSpot, vSpecularExponent.w) : 0.0;\n"
    "            }\n"
    "            float fNdotL = max(0.0, dot(vN, vL));\n"
    "            vec3 vR = normalize(reflect(-vL, vN));\n"
    "            float fRdotV = pow(max(0.0, dot(vR, vV)), fShininess);\n"
    "            vSum += fFactor * (fNdotL * data.vDiffuse.rgb * vDiffuseCutoff.rgb + fRdotV * vSpecularExponent.rgb * data.vSpecular);\n"
    "        }\n"
    "        fCol += 5.0;\n"
    "        if(fCol >= fDataWidth)\n"
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
    tileImage     (NullFC),
    lightImage    (NullFC),
    tileTexture   (NullFC),
    lightTexture  (NullFC),
    tilesX        (1),
    tilesY        (1),
    numEntries    (0)
{
    shaderChunk = createShaderMaterial(sharedCullingChunk(s_CullingOptions, GL_BACK));

    // Like the emissive pass: the vertex shader maps the corners by sign.
    createVolume(makePlaneGeo(1.0f, 1.0f, 1, 1), NullFC);

    tileImage    = createFloatImage(1, 2);
    lightImage   = createFloatImage(LightWidth, 2);
    tileTexture  = createFloatTexture(tileImage);
    lightTexture = createFloatTexture(lightImage);
    addRefCP(tileTexture);
    addRefCP(lightTexture);
}

DeferredLightBatch::~DeferredLightBatch(void)
{
    subRefCP(tileTexture);
    subRefCP(lightTexture);
}

void DeferredLightBatch::initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    ShaderManager &shaders = ShaderManager::getInstance();
    beginEditCP(shaderChunk, ShaderChunk::VertexProgramFieldMask |
                             ShaderChunk::FragmentProgramFieldMask);
    shaderChunk->setVertexProgram(shaders.generateLightVertexShader(ShaderManager::EMISSIVE_LIGHT));
    shaderChunk->setFragmentProgram(shaders.generateGBufferAccessHeader(numGBufferTextures) +
                                    s_strBatchFragmentMain);
    endEditCP(shaderChunk, ShaderChunk::VertexProgramFieldMask |
                           ShaderChunk::FragmentProgramFieldMask);

    attachGBuffer(gbuffer, numGBufferTextures);
    // The emissive texture too: this pass replaces the emissive one.
    bindTexture("texGBuffer3",   gbuffer.getTargetTexture(3));
    bindTexture("texLightTiles", tileTexture);
    bindTexture("texLightData",  lightTexture);

    initialized = true;
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

void DeferredLightBatch::setLights(const std::vector<const BatchRecord *> &records,
                                   const Matrix &projection,
                                   const Vec2f  &camNearFar,
                                   Int32         width,
                                   Int32         height)
{
    tilesX = osgMax(1, (width  + TileSize - 1) / TileSize);
    tilesY = osgMax(1, (height + TileSize - 1) / TileSize);
    const size_t numTiles = size_t(tilesX) * size_t(tilesY);

    // Counting sort of (tile, light) pairs by tile, lights in given order.
    tileCounts.assign(numTiles, 0);
    lightRects.assign(records.size() * 4, -1);
    for(size_t i = 0; i < records.size(); ++i)
    {
        Int32 x0, y0, x1, y1;
        if(!screenBounds(records[i]->position, records[i]->radius, projection, camNearFar[0],
                         width, height, x0, y0, x1, y1))
            continue;
        Int32 *rect = &lightRects[i * 4];
        rect[0] = x0 / TileSize;
        rect[1] = y0 / TileSize;
        rect[2] = (x1 - 1) / TileSize;
        rect[3] = (y1 - 1) / TileSize;
        for(Int32 ty = rect[1]; ty <= rect[3]; ++ty)
            for(Int32 tx = rect[0]; tx <= rect[2]; ++tx)
                ++tileCounts[size_t(ty) * tilesX + tx];
    }

    tileStarts.resize(numTiles);
    numEntries = 0;
    for(size_t t = 0; t < numTiles; ++t)
    {
        tileStarts[t] = numEntries;
        numEntries   += tileCounts[t];
    }

    tileTexels.assign(numTiles * 4, 0.0f);
    for(size_t t = 0; t < numTiles; ++t)
    {
        tileTexels[t * 4 + 0] = Real32((tileStarts[t] % RecordsPerRow) * RecordTexels);
        tileTexels[t * 4 + 1] = Real32(tileStarts[t] / RecordsPerRow);
        tileTexels[t * 4 + 2] = Real32(tileCounts[t]);
    }

    const Int32 rows = osgMax(1, Int32((numEntries + RecordsPerRow - 1) / RecordsPerRow));
    lightTexels.resize(size_t(rows) * LightWidth * 4);
    for(size_t i = 0; i < records.size(); ++i)
    {
        const Int32 *rect = &lightRects[i * 4];
        if(rect[0] < 0)
            continue;
        const BatchRecord &r = *records[i];
        const Real32 texels[RecordTexels * 4] =
        {
            r.position[0],    r.position[1],    r.position[2],    r.radius,
            r.diffuse[0],     r.diffuse[1],     r.diffuse[2],     r.cosCutoff,
            r.specular[0],    r.specular[1],    r.specular[2],    r.exponent,
            r.attenuation[0], r.attenuation[1], r.attenuation[2], 0.0f,
            r.direction[0],   r.direction[1],   r.direction[2],   0.0f
        };
        for(Int32 ty = rect[1]; ty <= rect[3]; ++ty)
        {
            for(Int32 tx = rect[0]; tx <= rect[2]; ++tx)
            {
                const UInt32 entry = tileStarts[size_t(ty) * tilesX + tx]++;
                std::copy(texels, texels + RecordTexels * 4,
                          lightTexels.begin() + size_t(entry) * RecordTexels * 4);
            }
        }
    }

    // Light rows grow by powers of two, so that a light count changing
    // from frame to frame does not reallocate the texture each time.
    // An image one row high would become a 1D texture, which the 2D
    // samplers cannot read: both keep at least two rows.
    Int32 lightRows = lightImage->getHeight();
    if(lightRows < rows)
        lightRows = roundUpToPowerOfTwo(rows);
    upload(tileTexture,  tilesX,     tilesY, osgMax(2, tilesY), tileTexels);
    upload(lightTexture, LightWidth, rows,   lightRows, lightTexels);

    Matrix invProjection;
    projection.inverse(invProjection);

    beginEditCP(parameterChunk, ShaderParameterChunk::ParametersFieldMask);
    parameterChunk->setUniformParameter("vCamNearFar", camNearFar);
    parameterChunk->setUniformParameter("mCamInvProj", invProjection);
    parameterChunk->setUniformParameter("vTileScale",
        Vec2f(1.0f / Real32(TileSize * tilesX),
              1.0f / Real32(TileSize * tileImage->getHeight())));
    parameterChunk->setUniformParameter("vDataScale",
        Vec2f(1.0f / Real32(LightWidth), 1.0f / Real32(lightRows)));
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
