#pragma once

#include <QObject>
#include <functional>

class CodeDock;
class Selection;
class SourceView;

namespace Orvane {
class Node;
}
struct LogPlace;

/// Leads from a line of the log to what it speaks of: the line of a script's code in the panel of code, else
/// the node, which is selected, else the line of a file, which is shown in a window.
class LogGuide : public QObject
{
    Q_OBJECT

public:
    /// The panels are borrowed; \a sceneRoot gives the root of the present scene or null.
    LogGuide(std::function<Orvane::Node*()> sceneRoot, Selection* selection, CodeDock* codeDock,
             QWidget* window);

public slots:
    void follow(const QString& line);

signals:
    /// Something to tell the user.
    void told(const QString& text);

private:
    bool selectNode(const LogPlace& place);
    bool showSource(const LogPlace& place);

    std::function<Orvane::Node*()> _sceneRoot;
    Selection* _selection;
    CodeDock* _codeDock;
    QWidget* _window;
    SourceView* _source = nullptr; ///< made when it is needed; of the window
};
