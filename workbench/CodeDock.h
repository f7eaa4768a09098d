#pragma once

#include "FindBar.h"
#include <Orvane/Observer.h>
#include <QDockWidget>
#include <vector>

class QAction;
class QStackedWidget;
class Selection;
class Steps;
struct CodeNodes;

namespace Orvane {
class Node;
namespace Qt4 {
class QorCodeWidget;
}
} // namespace Orvane

/// The panel of code. It opens when a script or a shader is selected, and gives each a code widget of its
/// own: what is written there waits until it is applied, while other nodes are looked at, and while the node
/// is deleted but may be brought back. When a node dies its code goes. Fields are added and removed as the
/// widget asks for it. All that it does to the scene are steps.
class CodeDock : public QDockWidget
{
    Q_OBJECT

public:
    /// Both are borrowed.
    CodeDock(Selection* selection, Steps* steps, QWidget* parent);
    ~CodeDock() override;

    /// The widget that is shown. It has no node and is disabled while there is no code to show.
    Orvane::Qt4::QorCodeWidget* codeWidget() const;

    /// Applies the code that is shown, as its button does.
    QAction* applyAction() const { return _applyAction; }
    /// Finds text in the code that is shown.
    FindBar* findBar() const { return _findBar; }

    /// Names of the nodes of the scene whose code has been changed and not applied.
    QStringList unapplied() const;
    /// Applies all code that waits for it. False, and told, when a file of code cannot be written.
    bool applyAll();
    /// The code that waits, in the form of `KeptCode`; empty for none.
    QByteArray keptCode() const;
    /// Shows code of that form, of nodes below \a root, as it waited, without applying it. False when a node
    /// is no longer there: then the log has its code.
    bool bringBack(Orvane::Node& root, const QByteArray& kept);
    /// Asks what is to become of code of a node, or of one below it, that was not applied. False when the
    /// node is to stay.
    bool mayLeave(Orvane::Node& node);

    /// Opens the code of a node as `openNode` does, with the cursor in line \a line, from 1.
    void showLine(Orvane::Node* node, int line);

public slots:
    /// Shows the code of a script or shader, or of the shader of a shape. Any other node changes nothing.
    void openNode(Orvane::Node* node);

signals:
    /// Something to tell the user.
    void told(const QString& text);
    /// A file was dropped on a text.
    void fileDropped(const QString& file);
    /// What `unapplied()` says may have changed.
    void unappliedChanged();

protected:
    /// Another palette asks for other colours of code.
    void changeEvent(QEvent* event) override;

private:
    /// Lets go of code whose node dies.
    class EndObserver : public Orvane::Observer
    {
    public:
        explicit EndObserver(CodeDock* dock);
        void notify(const double& time, Orvane::BaseObject* node, Orvane::BaseObject* second,
                    Orvane::BaseObject* third) override;

    private:
        CodeDock* _dock;
    };

    struct Page
    {
        Orvane::Qt4::QorCodeWidget* widget;
        unsigned long long codeId;
        unsigned long long fieldsId;
        bool isAway; ///< its node is kept, but is no longer part of the scene
    };

    void addPage(const CodeNodes& nodes);
    void record(Orvane::Qt4::QorCodeWidget* widget);
    void reread(Orvane::Node* node);
    void renewFields(Orvane::Node* node);
    void closePage(std::size_t page);
    void closePagesOf(unsigned long long nodeId);
    void putAway(const Orvane::Node& node);
    void fetchBack();
    void find(FindBar::Step step);
    void addField(Orvane::Node* node, const QString& dataType, const QString& fieldType, const QString& name,
                  const QString& defaultValue);
    void removeField(Orvane::Node* node, const QString& name);
    void tell(const QString& text);

    Steps* _steps;
    QStackedWidget* _stack;
    FindBar* _findBar;
    Orvane::Qt4::QorCodeWidget* _nothing; ///< shown when there is no code
    QAction* _applyAction;
    std::vector<Page> _pages;
    EndObserver _endObserver;
};
