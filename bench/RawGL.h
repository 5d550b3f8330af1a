#ifndef _LUMORA_BENCH_RAWGL_H_
#define _LUMORA_BENCH_RAWGL_H_

#include <epoxy/gl.h>

#include <Lumora/HeadlessContext.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

// What the raw OpenGL programs the library is measured against share.
namespace rawgl
{

// Compiles and links a GLSL program, binding the named attributes to
// locations 0, 1, ...; on failure 0, with the compiler's or linker's log in
// error, and nothing left behind.
GLuint buildProgram(const char *vertex, const char *fragment,
                    std::initializer_list<const char *> attributes, std::string &error);

// A context large enough for the widest 16:9 image of the given heights,
// with the runtime initialised; null, with a message, when there is none.
std::unique_ptr<lumora::HeadlessContext> openTableContext(const char *program,
                                                          const std::vector<int> &heights);

// A monotonic clock for frame times.
double nowMilliseconds(void);

} // namespace rawgl

#endif
