#ifndef LUMORA_TESTS_EFFECTSETTERS_H
#define LUMORA_TESTS_EFFECTSETTERS_H

#include <Lumora/DeferredRenderingViewport.h>

namespace testsupport
{

// The effect switches in chain order, and the effect parameters: what the
// soak and the viewport fuzzer pick from.
inline void (osg::DeferredRenderingViewport::*const effectOn[])(bool) = {
    &osg::DeferredRenderingViewport::setAAPostProcessOn,  &osg::DeferredRenderingViewport::setSSAOPostProcessOn,
    &osg::DeferredRenderingViewport::setHDRPostProcessOn, &osg::DeferredRenderingViewport::setDoFPostProcessOn,
    &osg::DeferredRenderingViewport::setCMBPostProcessOn};
inline void (osg::DeferredRenderingViewport::*const effectParameters[])(osg::Real32) = {
    &osg::DeferredRenderingViewport::setHDRExposure,   &osg::DeferredRenderingViewport::setHDRBrightPassThreshold,
    &osg::DeferredRenderingViewport::setDoFFocalDepth, &osg::DeferredRenderingViewport::setDoFBlurCutoff,
    &osg::DeferredRenderingViewport::setCMBBlurScale,  &osg::DeferredRenderingViewport::setSSAOScale,
    &osg::DeferredRenderingViewport::setSSAOAttenuation};

} // namespace testsupport

#endif
