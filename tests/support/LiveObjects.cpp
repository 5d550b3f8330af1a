#include "support/LiveObjects.h"

#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGFieldContainerFactory.h>

#include <epoxy/gl.h>

#include <set>
#include <utility>
#include <sstream>

namespace testsupport
{

namespace
{

// Drivers hand out small names and reuse freed ones; tests never hold
// anywhere near this many objects at once.
const GLuint MaxScannedName = 16384;

int countNames(GLboolean (*isObject)(GLuint))
{
    int count = 0;
    for(GLuint name = 1; name <= MaxScannedName; ++name)
        count += isObject(name) == GL_TRUE;
    return count;
}

void addDifferences(std::ostringstream &out, const char *what,
                    const std::map<std::string, int> &before,
                    const std::map<std::string, int> &after)
{
    std::set<std::string> kinds;
    for(const auto &entry : before)
        kinds.insert(entry.first);
    for(const auto &entry : after)
        kinds.insert(entry.first);

    for(const std::string &kind : kinds)
    {
        const auto b = before.find(kind);
        const auto a = after .find(kind);
        const int  nb = b != before.end() ? b->second : 0;
        const int  na = a != after .end() ? a->second : 0;
        if(nb != na)
            out << what << " " << kind << ": " << nb << " -> " << na << "\n";
    }
}

} // namespace

LiveObjects LiveObjects::countContainers()
{
    LiveObjects live;
    const osg::FieldContainerStore *store =
        osg::FieldContainerFactory::the()->getFieldContainerStore();
    for(const osg::FieldContainerPtr &fc : *store)
    {
        if(fc != osg::NullFC)
            ++live.containers[fc->getType().getName()];
    }
    return live;
}

LiveObjects LiveObjects::count()
{
    // The epoxy entry points are macros over function pointers; the lambdas
    // give them one plain signature.
    const std::pair<const char *, GLboolean (*)(GLuint)> kinds[] =
    {
        {"texture",      [](GLuint n) { return glIsTexture(n); }},
        {"framebuffer",  [](GLuint n) { return glIsFramebuffer(n); }},
        {"renderbuffer", [](GLuint n) { return glIsRenderbuffer(n); }},
        {"program",      [](GLuint n) { return glIsProgram(n); }},
        {"shader",       [](GLuint n) { return glIsShader(n); }},
        {"buffer",       [](GLuint n) { return glIsBuffer(n); }},
        {"display list", [](GLuint n) { return glIsList(n); }},
    };
    LiveObjects live = countContainers();
    for(const auto &kind : kinds)
        live.gl[kind.first] = countNames(kind.second);
    return live;
}

std::string differences(const LiveObjects &before, const LiveObjects &after)
{
    std::ostringstream out;
    addDifferences(out, "GL",        before.gl,         after.gl);
    addDifferences(out, "container", before.containers, after.containers);
    return out.str();
}

} // namespace testsupport
