#include <OpenSG/OSGTime.h>

#include <chrono>

namespace osg
{

Time getSystemTime(void)
{
    return std::chrono::duration<Time>(
        std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace osg
