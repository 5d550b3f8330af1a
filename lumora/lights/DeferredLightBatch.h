#ifndef _LUMORA_DEFERREDLIGHTBATCH_H_
#define _LUMORA_DEFERREDLIGHTBATCH_H_

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTextureChunk.h>

#include <Lumora/IDeferredLight.h>

#include <vector>

OSG_BEGIN_NAMESPACE

// Many point and spot lights without shadows in one pass over the screen.
// The screen is cut into tiles; each tile lists the lights whose sphere of
// influence may touch it, and only tiles with lights are drawn, as quads:
// each pixel reads the G-buffer once and loops over its tile's lights.
// Their records live in a float texture, so their number is bounded by
// the texture size rather than by the uniform limit. A tile's lights are
// copied into one run of records, point lights first, so that a pixel
// reads them in order without indirection; each quad's corners carry
// where its run starts and how many of each kind it holds.
class DeferredLightBatch : public IDeferredLight
{
  public:
    // Pixels along a tile's side: the smallest, doubled up to the largest
    // while the tiles would list more lights than EntriesPerTile times the
    // number of smallest tiles. Small tiles waste less on local lights;
    // lights that cover the screen would copy their records into each one.
    static constexpr Int32  MinTileSize    = 32;
    static constexpr Int32  MaxTileSize    = 128;
    static constexpr UInt32 EntriesPerTile = 64;
    // Texels of a point and of a spot light's record in the light texture,
    // and texels in one of its rows; no record crosses a row's end.
    static constexpr Int32 PointTexels = 3;
    static constexpr Int32 SpotTexels  = 5;
    static constexpr Int32 LightWidth  = 1280;

    DeferredLightBatch(void);
    virtual ~DeferredLightBatch(void);

    virtual void initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures) override;

    // Nothing to do: the batch has no OpenSG light; see setLights.
    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar,
                        LightPtr      light,
                        Real32        globalShadowIntensity) override;

    // This frame's lights, in eye space, for a viewport of width x height.
    // With a window and an action, a pass over the G-buffer's depth first
    // finds each tile's depth range, and a tile leaves out the lights that
    // are all in front of or behind it; reading the ranges back waits for
    // the geometry pass.
    void setLights(const std::vector<const BatchRecord *> &records,
                   const Matrix     &projection,
                   const Vec2f      &camNearFar,
                   Int32             width,
                   Int32             height,
                   WindowPtr         window = NullFC,
                   RenderActionBase *action = NULL);

    // Drawn only while shown and some tile has lights.
    void setShown(bool on) { showVolume(on && numLitTiles > 0); }

    virtual UInt16        getNumShadowmaps(void)         override;
    virtual RenderTarget *getShadowmap    (UInt16 index) override;

    virtual bool updateLightCamera(UInt16           index,
                                   FrustumVolume   &cameraFrustum,
                                   DynamicVolume   &sceneVolume,
                                   MatrixCameraPtr  lightCamera) override;

    // The pixel rectangle [x0, x1) x [y0, y1) that a sphere around an
    // eye-space centre can cover, clipped to the viewport; false when it
    // covers nothing. Whole-screen when the sphere reaches the near plane.
    static bool screenBounds(const Vec3f &center, Real32 radius, const Matrix &projection,
                             Real32 nearDist, Int32 width, Int32 height,
                             Int32 &x0, Int32 &y0, Int32 &x1, Int32 &y1);

    // For tools and tests: the lights each tile lists, and their total.
    UInt32 getNumTileEntries(void) const { return numEntries;  }
    UInt32 getNumLitTiles   (void) const { return numLitTiles; }
    Int32  getTileSize      (void) const { return tileSize;   }
    Int32  getTilesX        (void) const { return tilesX;     }
    Int32  getTilesY        (void) const { return tilesY;     }

    static PolygonChunkPtr s_CullingOptions;

  protected:
    // Fills tileDepths: per smallest tile, the nearest and farthest linear
    // depth drawn; false when it cannot.
    bool measureTileDepths(WindowPtr window, RenderActionBase *action,
                           Int32 width, Int32 height, const Vec2f &camNearFar);

    // The first rows of texels into the texture, reallocated when its
    // width or its number of rows (at least rows) changes.
    static void upload(TextureChunkPtr texture, Int32 width, Int32 rows, Int32 capacityRows,
                       const std::vector<Real32> &texels);

    SHLChunkPtr       shaderChunk;
    GeometryPtr       tileQuads;
    ImagePtr          lightImage;
    TextureChunkPtr   lightTexture;
    Int32             tileSize;
    Int32             tilesX;
    Int32             tilesY;
    UInt32            numEntries;
    UInt32            numLitTiles;

    // Kept between frames to spare the allocations.
    std::vector<UInt32> tileCounts;
    std::vector<UInt32> tileStarts;
    std::vector<UInt32> tileLights;
    std::vector<Int32>  lightRects;
    std::vector<Real32> lightTexels;
    std::vector<Real32> recordTexels;  // each light's record, made once
    std::vector<Real32> tileDepths;    // near and far per smallest tile
    std::vector<Real32> depthTexels;
    std::vector<Real32> mergedDepths;  // near and far per tile of tileSize

    RenderTarget         depthTarget;
    ChunkMaterialPtr     depthMaterial;
    SHLParameterChunkPtr depthParameters;

    static const char *s_strBatchVertex;
    static const char *s_strTileDepthVertex;
    static const char *s_strTileDepthFragment;
    static const char *s_strBatchFragmentMain;
};

OSG_END_NAMESPACE

#endif
