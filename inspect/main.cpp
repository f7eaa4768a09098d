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
    "usage: orvane-inspect [--json] [--time SECONDS] [--frames N] [--convert OUT] SCENE...\n"
    "\n"
    "Loads each scene without any window and says what it holds and what is wrong with it.\n"
    "  --json          writes one JSON array with an object for each scene\n"
    "  --time SECONDS  stops the clock there, and runs one frame if --frames does not say more\n"
    "  --frames N      runs N frames after loading\n"
    "  --convert OUT   writes the scene (one) in the encoding of OUT's suffix\n"
    "Exit code: 0 when all scenes were loaded, 1 when one was not, 2 on bad usage.\n";

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
    std::string fault;
};

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
    // What the log says of a load is what is printed below.
    osg::osgLog().setLogLevel(osg::LOG_FATAL);
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
