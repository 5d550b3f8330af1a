#ifndef _LUMORA_VSMSHADOWMAPPER_H_
#define _LUMORA_VSMSHADOWMAPPER_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGMatrixCamera.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>

#include <Lumora/OSGRenderTarget.h>

#include <map>

OSG_BEGIN_NAMESPACE

class IDeferredLight;

// Renders variance shadow maps: the scene's first two depth moments as seen
// by each light camera, drawn large into one shared target and reduced into
// the light's own map, which its shader filters.
class VSMShadowMapper
{
  public:
    VSMShadowMapper(void);
    ~VSMShadowMapper(void);

    // Needs the window's context current; size is the moment target's edge,
    // the lights' maps get half of it.
    void initialize(WindowPtr window, UInt16 size);
    bool isInitialized(void) const { return initialized; }

    void initializeShadowmap(RenderTarget *target);

    // Per frame: begin, one update per shadow-casting light, end. Between
    // begin and end the scene root hangs under the mapper's own root; end
    // puts it back where it was in the application's graph.
    void beginShadowmapRendering(NodePtr root, CameraPtr camera, Viewport *viewport);
    void updateShadowmap        (IDeferredLight *light);
    void endShadowmapRendering  (NodePtr root);

    // Off by default: every map is drawn every frame. When on, a map is
    // drawn again only when its light camera or something under the root
    // that is drawn into it changed since its last drawing; changes the
    // mapper cannot see (an image edited in place) call invalidate().
    void   setReuse        (bool on)   { reuse = on;    }
    bool   getReuse        (void) const { return reuse;  }
    void   invalidate      (void);
    // A light going away: its maps' records must not outlive it.
    void   forgetShadowmaps(IDeferredLight *light);
    // Maps drawn since construction, reused ones not counted.
    UInt32 getRenderCount  (void) const { return renderCount; }

    // The moment textures' anisotropy: the context's maximum, or 1 on a
    // software rasteriser (see initialize).
    Real32 getMaxAnisotropy(void) const { return maxAnisotropy; }

    UInt16          getSize        (void) const { return size;         }
    RenderTarget   &getRenderTarget(void)       { return renderTarget; }
    SHLChunkPtr     getShader      (void) const { return shader;       }
    NodePtr         getShadowRoot  (void) const { return shadowRoot;   }
    MatrixCameraPtr getLightCamera (void) const { return lightCamera;  }
    RenderAction   *getRenderAction(void) const { return renderAction; }

    static const char *s_strVertexShader;
    static const char *s_strFragmentShader;

  private:
    VSMShadowMapper(const VSMShadowMapper &) = delete;
    VSMShadowMapper &operator =(const VSMShadowMapper &) = delete;

    WindowPtr       window;
    bool            initialized;
    UInt16          size;
    Real32          maxAnisotropy;
    RenderTarget    renderTarget;
    RenderAction   *renderAction;
    SHLChunkPtr     shader;
    NodePtr         shadowRoot;
    MatrixCameraPtr lightCamera;
    FrustumVolume   cameraFrustum;
    DynamicVolume   sceneVolume;

    // What a map was drawn from; equal stamps draw equal maps.
    struct MapStamp
    {
        Matrix modelview;
        Matrix projection;
        Real32 nearDistance;
        Real32 farDistance;
        UInt64 scene;
    };
    bool isCurrent(const RenderTarget *target, const MapStamp &stamp) const;

    bool            reuse;
    UInt32          renderCount;
    UInt64          sceneStamp;
    std::map<const RenderTarget *, MapStamp> stamps;

    // Where the application's root hung before begin, to restore it.
    NodePtr         rootParent;
    Int32           rootIndex;
};

OSG_END_NAMESPACE

#endif
