#include "support/GLTest.h"

#include <algorithm>
#include <cctype>
#include <iostream>
#include <sstream>

namespace testsupport
{

namespace
{

std::unique_ptr<lumora::HeadlessContext> s_context;
bool                                     s_contextTried = false;
std::vector<std::string>                 s_errorMessages;

void recordDebugMessage(GLenum type, GLenum, const std::string &message)
{
    if(type == GL_DEBUG_TYPE_ERROR)
        s_errorMessages.push_back(message);
}

// The runtime reports failed shader builds as warnings naming the step.
std::vector<std::string> shaderBuildFailures(const std::string &logText)
{
    std::vector<std::string> lines;
    std::istringstream in(logText);
    for(std::string line; std::getline(in, line); )
    {
        std::string lower = line;
        std::transform(lower.begin(), lower.end(), lower.begin(),
                       [](unsigned char c) { return char(std::tolower(c)); });
        if(lower.find("compile") != std::string::npos || lower.find("link") != std::string::npos)
            lines.push_back(line);
    }
    return lines;
}

} // namespace

lumora::HeadlessContext *GLTest::context()
{
    if(!s_contextTried)
    {
        s_contextTried = true;
        s_context.reset(new lumora::HeadlessContext(ContextWidth, ContextHeight,
                                                    true, recordDebugMessage));
        if(!s_context->isValid())
            ADD_FAILURE() << s_context->errorString();
    }
    return s_context && s_context->isValid() ? s_context.get() : NULL;
}

void GLTest::releaseContext()
{
    s_context.reset();
}

const std::vector<std::string> &GLTest::glErrorMessages() const
{
    return s_errorMessages;
}

void GLTest::SetUp()
{
    lumora::HeadlessContext *ctx = context();
    ASSERT_NE(ctx, nullptr) << "no headless GL context";
    ASSERT_TRUE(ctx->makeCurrent()) << ctx->errorString();

    // Whatever an earlier test left is not this test's fault.
    while(glGetError() != GL_NO_ERROR)
        ;
    s_errorMessages.clear();
    _expectErrors = false;
    _logRead      = false;
    _log.reset(new LogCapture);
    _capturesMade = LogCapture::made();
}

void GLTest::TearDown()
{
    if(_log == nullptr)
        return;

    if(!_expectErrors && s_context != nullptr)
    {
        s_context->makeCurrent();
        const GLenum error = glGetError();
        EXPECT_EQ(error, GLenum(GL_NO_ERROR))
            << "GL error 0x" << std::hex << error << " left at the end of the test";
        for(const std::string &message : s_errorMessages)
            ADD_FAILURE() << "GL debug error: " << message;
        for(const std::string &line : shaderBuildFailures(_log->text()))
            ADD_FAILURE() << "shader build failed: " << line;
    }

    const std::string logText = _log->text();
    if(!_logRead && LogCapture::made() == _capturesMade &&
       logText.find("WARNING") != std::string::npos)
        ADD_FAILURE() << "the runtime logged a warning";
    _log.reset();
    if(HasFailure() && !logText.empty())
        std::cerr << "OpenSG log of the failed test:\n" << logText << std::endl;

    if(s_context != nullptr)
        while(glGetError() != GL_NO_ERROR)
            ;
    s_errorMessages.clear();
}

} // namespace testsupport
