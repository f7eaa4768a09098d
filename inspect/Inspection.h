#pragma once

#include <Orvane/LoadReport.h>
#include <Orvane/SaveOptions.h>
#include <string>
#include <vector>

/// What the command line asks for each scene.
struct InspectOptions
{
    bool json = false;
    double time = -1.0;  ///< seconds at which the clock stands still; negative: it runs
    int frames = 0;      ///< frames to run after loading
    std::string convert; ///< file to write the scene to; empty for none
    Orvane::SaveOptions save;
};

/// What was found out about one scene.
struct Inspection
{
    std::string scene;
    Orvane::LoadReport report;
    bool ok = false;                     ///< loaded, and written when that was asked
    std::string written;                 ///< the file that the scene was written to
    std::vector<std::string> writeNotes; ///< what its encoding has no words for
    std::string writeError;              ///< why the scene could not be written
};

/// Loads a scene into a context of its own, without any window, and does what the options ask.
Inspection inspectScene(const std::string& scene, const InspectOptions& options);

/// The result for people: the messages line by line, then one line of numbers.
std::string plainText(const Inspection& inspection);
/// The result as one JSON object.
std::string jsonText(const Inspection& inspection);
