#include "Inspection.h"

#include <OpenSG/OSGLog.h>
#include <Orvane/System.h>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr char usage[] =
    "usage: orvane-inspect [--json] [--time SECONDS] [--frames N] SCENE...\n"
    "       orvane-inspect [...] --convert OUT [--skip-root] [--use-tabs] [--resolve-protos]\n"
    "                      [--write-proc-info] [--write-abstract-nodes] [--write-default-values] SCENE\n"
    "\n"
    "Loads each scene without any window and says what it holds and what is wrong with it.\n"
    "  --json          writes one JSON array with an object for each scene\n"
    "  --time SECONDS  stops the clock there, and runs one frame if --frames does not say more\n"
    "  --frames N      runs N frames after loading\n"
    "  --convert OUT   writes the scene in the encoding of OUT's suffix (.x3d .x3dv .wrl, packed .x3dz\n"
    "                  .x3dvz .wrz), and says what that encoding has no words for\n"
    "and for what is written:\n"
    "  --skip-root             leaves out what belongs to no node of the scene: its own name and values,\n"
    "                          its metadata, windows\n"
    "  --use-tabs              indents by tabs, not by blanks\n"
    "  --resolve-protos        writes instances of prototypes as the plain nodes that they consist of\n"
    "  --write-proc-info       names the present values of outputs in comments\n"
    "  --write-abstract-nodes  names the abstract types of each node in comments\n"
    "  --write-default-values  writes fields that hold their default too\n"
    "Exit code: 0 when all scenes were loaded (and written), 1 when one was not, 2 on bad usage.\n";

struct Flag
{
    const char* argument;
    bool Orvane::SaveOptions::*option;
};

constexpr Flag saveFlags[] = {
    {"--resolve-protos", &Orvane::SaveOptions::resolveProtos},
    {"--skip-root", &Orvane::SaveOptions::skipRoot},
    {"--use-tabs", &Orvane::SaveOptions::useTabs},
    {"--write-abstract-nodes", &Orvane::SaveOptions::writeAbstractNodes},
    {"--write-default-values", &Orvane::SaveOptions::writeDefaultValues},
    {"--write-proc-info", &Orvane::SaveOptions::writeProcInfo},
};

bool parseNumber(const std::string& text, double& number)
{
    char* end = nullptr;
    number = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && std::isfinite(number) && number >= 0.0;
}

struct CommandLine
{
    InspectOptions options;
    std::vector<std::string> scenes;
    bool help = false;
    std::string saveFlag; ///< one that only --convert knows
    std::string fault;
};

bool readSaveFlag(const std::string& argument, CommandLine& line)
{
    for (const Flag& flag : saveFlags) {
        if (argument != flag.argument)
            continue;
        line.options.save.*flag.option = true;
        line.saveFlag = argument;
        return true;
    }
    return false;
}

CommandLine parse(const std::vector<std::string>& arguments)
{
    CommandLine line;
    bool onlyScenes = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const bool takesValue = argument == "--time" || argument == "--frames" || argument == "--convert";
        double number = 0.0;
        if (onlyScenes || argument.size() < 2 || argument[0] != '-') {
            line.scenes.push_back(argument);
        } else if (argument == "--") {
            onlyScenes = true;
        } else if (argument == "--json") {
            line.options.json = true;
        } else if (argument == "--help" || argument == "-h") {
            line.help = true;
        } else if (readSaveFlag(argument, line)) {
            continue;
        } else if (!takesValue) {
            line.fault = "unknown option " + argument;
        } else if (i + 1 == arguments.size()) {
            line.fault = argument + " needs a value";
        } else if (argument == "--convert") {
            line.options.convert = arguments[++i];
        } else if (!parseNumber(arguments[++i], number)) {
            line.fault = argument + " expects a number that is not negative, found " + arguments[i];
        } else if (argument == "--time") {
            line.options.time = number;
        } else if (number > 1e6 || number != std::floor(number)) {
            line.fault = "--frames expects a whole number up to a million, found " + arguments[i];
        } else {
            line.options.frames = static_cast<int>(number);
        }
    }
    if (line.options.time >= 0.0 && line.options.frames == 0)
        line.options.frames = 1;
    if (line.fault.empty() && line.scenes.empty())
        line.fault = "no scene given";
    if (line.fault.empty() && line.options.convert.empty() && !line.saveFlag.empty())
        line.fault = line.saveFlag + " says how --convert writes";
    if (line.fault.empty() && !line.options.convert.empty() && line.scenes.size() > 1)
        line.fault = "--convert takes one scene";
    return line;
}

} // namespace

int main(int argc, char** argv)
{
    const CommandLine line = parse(std::vector<std::string>(argv + 1, argv + argc));
    if (line.help) {
        std::cout << usage;
        return 0;
    }
    if (!line.fault.empty()) {
        std::cerr << "orvane-inspect: " << line.fault << "\n" << usage;
        return 2;
    }
    // What the log says of a scene, faults of its scripts too, is what is printed below.
    osg::osgLog().setLogLevel(osg::LOG_LOG);
    Orvane::System::the().init(0, nullptr, 382);
    bool allOk = true;
    const char* divider = "[\n";
    for (const std::string& scene : line.scenes) {
        const Inspection inspection = inspectScene(scene, line.options);
        allOk = allOk && inspection.ok;
        if (line.options.json)
            std::cout << divider << jsonText(inspection);
        else
            std::cout << plainText(inspection);
        divider = ",\n";
    }
    if (line.options.json)
        std::cout << "\n]\n";
    std::cout.flush();
    Orvane::System::the().exit();
    return allOk && std::cout ? 0 : 1;
}
