#pragma once

#include <QString>

struct CommandLine;
class FrameGrabber;
class WorkbenchWindow;

/// Shows the window, runs the frames that the command line asks for and writes the picture. False, with the
/// reason in \a error, when that fails.
bool takeScreenshot(WorkbenchWindow& window, FrameGrabber& grabber, const CommandLine& commandLine,
                    QString& error);
