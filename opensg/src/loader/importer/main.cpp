// osg-assimp-import: reads one model with assimp and writes it to standard
// output in assimp's binary format. The runtime's loader starts it for every
// model, so that a file on which assimp crashes or hangs costs this process,
// not the application.
//
// The answer is one letter and what follows it: 'S' and the scene, 'E' and
// why there is none, or 'R' when the scene cannot be written and the loader
// should read the file itself (it did not crash this program).

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/scene.h>

#include <sys/prctl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

// Debian's assimp aborts on a failed internal check, which some malformed
// files trip; as an exception it becomes an answer instead of a crash.
namespace Assimp
{

void aiAssertViolation(const char *failedExpression, const char *file, int line)
{
    throw std::runtime_error(std::string("assimp internal check failed: ") +
                             failedExpression + " (" + file + ":" +
                             std::to_string(line) + ")");
}

} // namespace Assimp

namespace
{

const char *s_usage =
    "usage: osg-assimp-import [--flags N] [--hint SUFFIX] [--parent PID] FILE\n"
    "       osg-assimp-import [--flags N] --hint SUFFIX [--parent PID] -\n"
    "Reads a model with assimp and writes it to standard output as one letter\n"
    "and what follows: 'S' and the scene in assimp's binary format, 'E' and\n"
    "why there is none, or 'R' when the scene cannot be written. '-' reads\n"
    "the model from standard input, in the format SUFFIX names.\n"
    "  --flags N     assimp post-processing steps (aiPostProcessSteps bits)\n"
    "  --hint SUFFIX format of the model read from standard input\n"
    "  --parent PID  the starting process: end with it, or at once if it\n"
    "                is no longer this program's parent\n"
    "  --help        show this text\n";

struct Options
{
    unsigned int flags  = 0;
    std::string  hint;
    long         parent = 0;
    std::string  file;
};

bool parseNumber(const char *text, unsigned long &value)
{
    char *end = NULL;
    errno = 0;
    value = std::strtoul(text, &end, 10);
    return errno == 0 && end != text && *end == '\0';
}

// 0: parsed, 1: help shown, 2: bad arguments (message written).
int parse(int argc, char **argv, Options &options)
{
    bool haveFile = false;
    for(int i = 1; i < argc; ++i)
    {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        unsigned long number;
        if(arg == "--help" || arg == "-h")
        {
            std::cout << s_usage;
            return 1;
        }
        else if(arg == "--flags" && hasValue && parseNumber(argv[i + 1], number))
            options.flags = static_cast<unsigned int>(number), ++i;
        else if(arg == "--hint" && hasValue)
            options.hint = argv[++i];
        else if(arg == "--parent" && hasValue && parseNumber(argv[i + 1], number))
            options.parent = long(number), ++i;
        else if(arg == "--" && i + 2 == argc)
            options.file = argv[++i], haveFile = true;
        else if(!haveFile && (arg == "-" || arg.compare(0, 1, "-") != 0))
            options.file = arg, haveFile = true;
        else
        {
            std::cerr << "osg-assimp-import: unexpected argument '" << arg << "'\n" << s_usage;
            return 2;
        }
    }
    if(!haveFile)
    {
        std::cerr << "osg-assimp-import: no model named\n" << s_usage;
        return 2;
    }
    return 0;
}

std::string answerFor(const Options &options)
{
    try
    {
        Assimp::Importer importer;
        const aiScene *scene;
        if(options.file == "-")
        {
            const std::string bytes((std::istreambuf_iterator<char>(std::cin)),
                                    std::istreambuf_iterator<char>());
            scene = importer.ReadFileFromMemory(bytes.data(), bytes.size(), options.flags,
                                                options.hint.c_str());
        }
        else
            scene = importer.ReadFile(options.file, options.flags);
        if(scene == NULL)
            return "E" + std::string(importer.GetErrorString());

        Assimp::Exporter exporter;
        const aiExportDataBlob *blob = exporter.ExportToBlob(scene, "assbin");
        if(blob == NULL)
            return "R";
        return "S" + std::string(static_cast<const char *>(blob->data), blob->size);
    }
    catch(const std::exception &e)
    {
        return "E" + std::string(e.what());
    }
    catch(...)
    {
        return "Eunknown import error";
    }
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    const int parsed = parse(argc, argv, options);
    if(parsed != 0)
        return parsed == 1 ? 0 : 2;

    // A loader that dies takes a hung import with it; one that died before
    // this line is no longer the parent.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if(options.parent != 0 && ::getppid() != options.parent)
        return 1;

    std::ios::sync_with_stdio(false);
    const std::string answer = answerFor(options);
    std::cout.write(answer.data(), std::streamsize(answer.size()));
    std::cout.flush();
    return std::cout ? 0 : 1;
}
