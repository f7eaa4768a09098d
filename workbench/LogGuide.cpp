#include "LogGuide.h"

#include "CodeDock.h"
#include "LogPlace.h"
#include "NodeSearch.h"
#include "Selection.h"
#include "SourceView.h"
#include <QUrl>
#include <QWidget>
#include <QorTools.h>

using namespace Orvane::Qt4;

LogGuide::LogGuide(std::function<Orvane::Node*()> sceneRoot, Selection* selection, CodeDock* codeDock,
                   QWidget* window)
    : QObject(window)
    , _sceneRoot(std::move(sceneRoot))
    , _selection(selection)
    , _codeDock(codeDock)
    , _window(window)
{
}

void LogGuide::follow(const QString& line)
{
    const LogPlace place = LogPlace::of(line);
    if (selectNode(place)) {
        if (place.codeLine > 0)
            _codeDock->showLine(_selection->node(), place.codeLine);
        return;
    }
    if (!showSource(place))
        emit told(tr("The line speaks of no node of the scene and of no file that can be shown."));
}

bool LogGuide::selectNode(const LogPlace& place)
{
    Orvane::Node* root = place.nodes.isEmpty() ? nullptr : _sceneRoot();
    if (!root)
        return false;
    // Names inside of prototypes and files stand in no name space of the scene.
    const NodeSearch search(*root, true);
    for (const QString& name : place.nodes) {
        for (int i = 0; i < search.size(); ++i) {
            if (fromRuntime(nodeName(search.node(i))) != name)
                continue;
            _selection->selectPath(search.path(i));
            return true;
        }
    }
    return false;
}

bool LogGuide::showSource(const LogPlace& place)
{
    if (place.file.isEmpty())
        return false;
    const QUrl url(place.file);
    if (!_source)
        _source = new SourceView(_window);
    if (!_source->showLine(url.isLocalFile() ? url.toLocalFile() : place.file, place.line, place.column))
        return false;
    _source->show();
    _source->raise();
    _source->activateWindow();
    return true;
}
