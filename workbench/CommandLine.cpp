#include "CommandLine.h"

#include <QCommandLineParser>
#include <cmath>

namespace {

bool readSize(const QString& text, QSize& size)
{
    const QStringList parts = text.split(QLatin1Char('x'));
    bool widthOk = false;
    bool heightOk = false;
    const int width = parts.value(0).toInt(&widthOk);
    const int height = parts.value(1).toInt(&heightOk);
    if (parts.size() != 2 || !widthOk || !heightOk || width < 16 || height < 16 || width > 16384 ||
        height > 16384)
        return false;
    size = QSize(width, height);
    return true;
}

} // namespace

bool CommandLine::parse(const QStringList& arguments, QString& error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows a scene and the widgets of orvaneViewQt4 at work on it."));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    const QCommandLineOption shot(QStringLiteral("screenshot"),
                                  QStringLiteral("Writes a picture of the window to FILE and ends."),
                                  QStringLiteral("FILE"));
    const QCommandLineOption frameCount(
        QStringLiteral("frames"), QStringLiteral("Frames before the picture (10)."), QStringLiteral("N"));
    const QCommandLineOption pictureSize(QStringLiteral("size"), QStringLiteral("Size in pixels."),
                                         QStringLiteral("WxH"));
    const QCommandLineOption sceneTime(QStringLiteral("time"),
                                       QStringLiteral("Stops the scene's clock at SECONDS."),
                                       QStringLiteral("SECONDS"));
    const QCommandLineOption view(QStringLiteral("view-only"),
                                  QStringLiteral("The picture shows the render view alone."));
    const QCommandLineOption shownNode(QStringLiteral("node"),
                                       QStringLiteral("Shows the node called NAME in the panel of nodes."),
                                       QStringLiteral("NAME"));
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Shows the version."));
    const QCommandLineOption darkColours(
        QStringLiteral("dark"), QStringLiteral("Shows light writing on a dark ground, in this run."));
    const QCommandLineOption allRoutes(QStringLiteral("routes"),
                                       QStringLiteral("Shows the routes of the scene in their panel."));
    parser.addOptions(
        {help, version, shot, frameCount, pictureSize, sceneTime, view, shownNode, darkColours, allRoutes});
    parser.addPositionalArgument(QStringLiteral("SCENE"), QStringLiteral("The scene to open."),
                                 QStringLiteral("[SCENE]"));

    helpText = parser.helpText();
    versionText = QStringLiteral("orvane-workbench " ORVANE_VERSION "\n");
    if (!parser.parse(arguments)) {
        error = parser.errorText();
        return false;
    }
    helpWanted = parser.isSet(help);
    if (parser.positionalArguments().size() > 1) {
        error = QStringLiteral("one scene at a time");
        return false;
    }
    scene = parser.positionalArguments().value(0);
    screenshot = parser.value(shot);
    viewOnly = parser.isSet(view);
    node = parser.value(shownNode);
    dark = parser.isSet(darkColours);
    routes = parser.isSet(allRoutes);

    bool ok = true;
    if (parser.isSet(shot) && screenshot.isEmpty()) {
        error = QStringLiteral("--screenshot needs a file name");
        return false;
    }
    if (parser.isSet(frameCount)) {
        frames = parser.value(frameCount).toInt(&ok);
        if (!ok || frames < 1) {
            error = QStringLiteral("--frames needs a number of 1 or more");
            return false;
        }
    }
    if (parser.isSet(pictureSize) && !readSize(parser.value(pictureSize), size)) {
        error = QStringLiteral("--size needs WxH, each from 16 to 16384");
        return false;
    }
    isSizeGiven = parser.isSet(pictureSize);
    if (parser.isSet(sceneTime)) {
        time = parser.value(sceneTime).toDouble(&ok);
        if (!ok || !std::isfinite(time) || time < 0.0) {
            error = QStringLiteral("--time needs seconds, 0 or more");
            return false;
        }
    }
    return true;
}
