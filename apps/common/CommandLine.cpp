#include "common/CommandLine.h"

#include "common/DemoScene.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <sstream>

namespace demo
{

CommandLine::CommandLine(const char *name, std::function<void(std::ostream &)> usage) :
    program   (name),
    printUsage(std::move(usage)),
    app       (new CLI::App(name)),
    model     (nullptr)
{
    // The program's own text, not the library's.
    app->set_help_flag();
    app->add_flag("-h,--help");
    // What is left over is an unknown option or a model, told apart after.
    app->allow_extras();
    app->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CommandLine::~CommandLine(void) = default;

void CommandLine::addFlag(const char *name, std::function<void(void)> action)
{
    app->add_flag_callback(name, std::move(action));
}

void CommandLine::addValue(const char *name, std::function<bool(const std::string &)> parse)
{
    const std::string option = name;
    app->add_option_function<std::string>(name, [option, parse](const std::string &value) {
        if(!parse(value))
            throw CLI::ValidationError("bad value '" + value + "' for " + option);
    });
}

void CommandLine::addInt(const char *name, int minValue, int maxValue, int &result)
{
    addValue(name, [minValue, maxValue, &result](const std::string &value) {
        return parseInt(value.c_str(), minValue, maxValue, result);
    });
}

void CommandLine::addReal(const char *name, std::function<void(osg::Real32)> action)
{
    addValue(name, [action](const std::string &value) {
        osg::Real32 number = 0.0f;
        if(!parseReal(value.c_str(), number))
            return false;
        action(number);
        return true;
    });
}

void CommandLine::addList(const char *name, int minValue, int maxValue,
                          std::vector<int> &result)
{
    addValue(name, [minValue, maxValue, &result](const std::string &value) {
        result.clear();
        std::stringstream stream(value);
        std::string       item;
        while(std::getline(stream, item, ','))
        {
            int number = 0;
            if(!parseInt(item.c_str(), minValue, maxValue, number))
                return false;
            result.push_back(number);
        }
        return !result.empty();
    });
}

void CommandLine::addText(const char *name, std::string &result)
{
    addValue(name, [&result](const std::string &value) {
        result = value;
        return !value.empty();
    });
}

void CommandLine::addModel(std::string &file)
{
    model = &file;
}

void CommandLine::addSceneOptions(SceneOptions &options, const SceneLimits &limits)
{
    addInt("--width",        limits.minSize, limits.maxSize,        options.width);
    addInt("--height",       limits.minSize, limits.maxSize,        options.height);
    addInt("--point-lights", 0,              limits.maxPointLights, options.points);
    addInt("--spot-lights",  0,              limits.maxSpotLights,  options.spots);
    addInt("--frames",       1,              limits.maxFrames,      options.frames);
    addFlag("--no-shadows", [&options]() { options.shadows = false; });
    addModel(options.model);
}

int CommandLine::parse(int argc, char **argv)
{
    try
    {
        app->parse(argc, argv);
    }
    catch(const CLI::ArgumentMismatch &error)
    {
        // The library names the option first: "--out: 1 required TEXT missing".
        const std::string what = error.what();
        std::cerr << program << ": " << what.substr(0, what.find(':')) << " needs a value\n";
        return 2;
    }
    catch(const CLI::ParseError &error)
    {
        std::cerr << program << ": " << error.what() << "\n";
        return 2;
    }

    if(app->count("--help") > 0)
    {
        printUsage(std::cout);
        return 1;
    }
    for(const std::string &arg : app->remaining())
    {
        if(arg.compare(0, 1, "-") == 0 || model == nullptr)
        {
            std::cerr << program << ": unknown option '" << arg << "' (see --help)\n";
            return 2;
        }
        if(!model->empty())
        {
            std::cerr << program << ": one model at a time ('" << *model << "' and '" << arg
                      << "')\n";
            return 2;
        }
        *model = arg;
    }
    return 0;
}

} // namespace demo
