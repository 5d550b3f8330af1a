#ifndef LUMORA_TESTS_EFFECTSETTERS_H
#define LUMORA_TESTS_EFFECTSETTERS_H

#include <Lumora/DeferredRenderingViewport.h>

namespace testsupport
{

using DRV = osg::DeferredRenderingViewport;

// The effect switches in chain order, and the effect parameters: what the
// soak and the viewport fuzzer pick from.
inline void (DRV::*const effectOn[])(bool) = {&DRV::setAAPostProcessOn, &DRV::setSSAOPostProcessOn,
    &DRV::setHDRPostProcessOn, &DRV::setDoFPostProcessOn, &DRV::setCMBPostProcessOn};
inline void (DRV::*const effectParameters[])(osg::Real32) = {&DRV::setHDRExposure,
    &DRV::setHDRBrightPassThreshold, &DRV::setDoFFocalDepth, &DRV::setDoFBlurCutoff,
    &DRV::setCMBBlurScale, &DRV::setSSAOScale, &DRV::setSSAOAttenuation};

} // namespace testsupport

#endif
