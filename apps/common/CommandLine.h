#ifndef _LUMORA_DEMO_COMMANDLINE_H_
#define _LUMORA_DEMO_COMMANDLINE_H_

#include <OpenSG/OSGBaseTypes.h>

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

namespace demo
{

// What the renderer and the viewer both take: the scene and its lights.
struct SceneOptions
{
    int         width   = 640;
    int         height  = 360;
    int         points  = 24;
    int         spots   = 8;
    bool        shadows = true;
    int         frames  = 0;
    std::string model;              // empty: the demo scene
};

// The largest values a program accepts for the shared options.
struct SceneLimits
{
    int minSize;
    int maxSize;
    int maxPointLights;
    int maxSpotLights;
    int maxFrames;
};

// A program's command line. The parsing is the option library's; the help
// text, the messages ("bad value 'x' for --frames") and the exit statuses
// are the program's own.
class CommandLine
{
  public:
    CommandLine(const char *program, std::function<void(std::ostream &)> printUsage);
    ~CommandLine(void);

    void addFlag (const char *name, std::function<void(void)> action);
    void addInt  (const char *name, int minValue, int maxValue, int &result);
    // A whole finite decimal number.
    void addReal (const char *name, std::function<void(osg::Real32)> action);
    // Whole numbers separated by commas, at least one.
    void addList (const char *name, int minValue, int maxValue, std::vector<int> &result);
    // Any text but an empty one.
    void addText (const char *name, std::string &result);
    // A value of the option's own form; parse says whether it was good.
    void addValue(const char *name, std::function<bool(const std::string &)> parse);
    // One model file, the only argument without a dash.
    void addModel(std::string &model);

    void addSceneOptions(SceneOptions &options, const SceneLimits &limits);

    // 0: parsed, 1: help shown, 2: bad arguments (message written).
    int parse(int argc, char **argv);

  private:
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator =(const CommandLine &) = delete;

    std::string                              program;
    std::function<void(std::ostream &)>      printUsage;
    std::unique_ptr<CLI::App>                app;
    std::string                             *model;
};

} // namespace demo

#endif
