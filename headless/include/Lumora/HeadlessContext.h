#ifndef LUMORA_HEADLESSCONTEXT_H
#define LUMORA_HEADLESSCONTEXT_H

#include <functional>
#include <memory>
#include <string>

// Same typedef as every GL header, so this header can come before or after
// whichever one the caller uses (epoxy, GL/gl.h, OpenSG's).
typedef unsigned int GLenum;

namespace lumora
{

// An OpenGL context on an EGL pbuffer, needing no window system: with Mesa
// it runs on llvmpipe through the surfaceless platform. It asks for a 4.5
// compatibility profile and takes whatever the driver has if that fails.
class HeadlessContext
{
  public:
    // Receives every KHR_debug message of a debug context (type, severity,
    // text); what to ignore is the receiver's choice.
    typedef std::function<void(GLenum type, GLenum severity,
                               const std::string &message)> DebugCallback;

    // Creates the context and makes it current; check isValid().
    // A debug context without a callback reports errors on std::cerr.
    HeadlessContext(int width, int height, bool debug = false,
                    DebugCallback callback = DebugCallback());
    ~HeadlessContext();

    HeadlessContext(const HeadlessContext &)            = delete;
    HeadlessContext &operator=(const HeadlessContext &) = delete;

    bool               isValid    () const;
    const std::string &errorString() const;

    bool makeCurrent();
    void doneCurrent();

    int  width  () const;
    int  height () const;
    bool isDebug() const;

    // Replaces the receiver of debug messages; an empty one restores the
    // default sink.
    void setDebugCallback(DebugCallback callback);

    // Writes error messages to std::cerr and drops the rest.
    static void defaultDebugSink(GLenum type, GLenum severity,
                                 const std::string &message);

    struct Impl;

  private:
    std::unique_ptr<Impl> _impl;
};

} // namespace lumora

#endif
