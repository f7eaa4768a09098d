#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

/// What the workbench was asked to do.
struct CommandLine
{
    QString scene;         ///< file to open; empty for none
    QString node;          ///< name of the node to show in the panel of nodes; empty for none
    QString screenshot;    ///< PNG to write; empty for an interactive run
    int frames = 10;       ///< frames before the screenshot
    QSize size{1100, 760}; ///< of the picture or the window, in pixels
    bool isSizeGiven = false;
    double time = -1.0;    ///< scene time in seconds; negative for the running clock
    bool viewOnly = false; ///< the screenshot shows the render view alone
    bool dark = false;     ///< light writing on a dark ground
    bool routes = false;   ///< the panel of routes shows all of the scene

    bool helpWanted = false;
    QString helpText;
    QString versionText;

    /// Reads the arguments behind the program's name. False, with the reason in \a error, when they cannot be
    /// understood.
    bool parse(const QStringList& arguments, QString& error);
};
