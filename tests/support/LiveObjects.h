#ifndef TESTS_SUPPORT_LIVEOBJECTS_H
#define TESTS_SUPPORT_LIVEOBJECTS_H

#include <map>
#include <string>

namespace testsupport
{

// What exists right now: GL objects of the current context by kind
// ("texture", "framebuffer", ...) and field containers by type name.
struct LiveObjects
{
    std::map<std::string, int> gl;
    std::map<std::string, int> containers;

    // Both; needs a current GL context.
    static LiveObjects count();
    // Only the containers, for tests without a context.
    static LiveObjects countContainers();
};

// One line per kind whose count differs, "kind: before -> after"; empty
// when both agree.
std::string differences(const LiveObjects &before, const LiveObjects &after);

} // namespace testsupport

#endif
