#ifndef TESTS_SUPPORT_GLTEST_H
#define TESTS_SUPPORT_GLTEST_H

#include <epoxy/gl.h>

#include "support/LogCapture.h"

#include <Lumora/HeadlessContext.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace testsupport
{

// Base for tests that draw. All tests share one debug context (creating one
// costs more than most tests), made current before each test. A test fails
// if it leaves a GL error behind, if the driver reported an error through
// the debug output, or if the runtime logged a shader compile or link
// failure, unless it called expectGLErrors(); and if the runtime logged a
// warning, unless the test reads the log itself.
class GLTest : public ::testing::Test
{
  public:
    static const int ContextWidth  = 256;
    static const int ContextHeight = 256;

    // The shared context, created on first use; NULL if that failed.
    static lumora::HeadlessContext *context();

    // Ends the shared context; for main(), before the runtime shuts down.
    static void releaseContext();

  protected:
    void SetUp   () override;
    void TearDown() override;

    // For a test that provokes errors on purpose and checks them itself.
    void expectGLErrors() { _expectErrors = true; }

    // Debug messages of type error received since the test began.
    const std::vector<std::string> &glErrorMessages() const;

    // The OpenSG log text written since the test began.
    const LogCapture &log() const { _logRead = true; return *_log; }

  private:
    bool                        _expectErrors = false;
    mutable bool                _logRead      = false;
    std::size_t                 _capturesMade = 0;
    std::unique_ptr<LogCapture> _log;
};

} // namespace testsupport

#endif
