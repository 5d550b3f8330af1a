#ifndef LUMORA_APPS_DEBUGVIEW_H
#define LUMORA_APPS_DEBUGVIEW_H

// What a deferred frame holds between its passes, as pictures: the G-buffer
// channels, the depth and the light accumulation before the effects.

#include <Lumora/DeferredRenderingViewport.h>

#include <vector>

namespace demo
{

enum DebugView
{
    NoDebugView = 0,
    NormalsView,    // eye-space normals, stored as n * 0.5 + 0.5
    DiffuseView,
    SpecularView,
    ShininessView,  // log2(shininess) / 8, grey
    EmissiveView,
    DepthView,      // linear eye depth, nearest drawn black to farthest white
    LightView,      // lit and forward-drawn image before the effects, clamped
    NumDebugViews
};

// "normals", "diffuse", ...; "none" for NoDebugView, NULL out of range.
const char *debugViewName(DebugView view);

// The view of the viewport's last frame as 8-bit RGB rows, bottom row first;
// false (with a message on std::cerr) if the viewport has not rendered. The
// viewport's GL context must be current.
bool readDebugView(osg::DeferredRenderingViewportPtr viewport, DebugView view,
                   std::vector<osg::UInt8> &rgb, int &width, int &height);

} // namespace demo

#endif
