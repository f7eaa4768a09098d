#pragma once

#include "OpenMenu.h"
#include "QorNodeEditorTreeView.h"
#include "QorNodeItemDelegate.h"
#include "QorNodeModel.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QtTest>
#include <QtWidgets/QActionGroup>

/// A node editor (\a Editor is a class of them) on the screen, with a delegate of its own. It shows a node
/// that the test owns, and leaves nothing behind.
template <class Editor>
struct NodeEditorOnScreen
{
    explicit NodeEditorOnScreen(Orvane::Node* node, const QSize& size = QSize(700, 500))
        : delegate(nullptr)
        , editor(nullptr)
    {
        delegate.setInitOnlyEditorEnabled(true);
        editor.setItemDelegate(&delegate);
        editor.setNode(node);
        editor.resize(size);
        editor.show();
        editor.activateWindow();
        if (!QTest::qWaitForWindowActive(&editor))
            qFatal("the editor does not come to the screen");
        view()->setFocus();
    }
    ~NodeEditorOnScreen()
    {
        editor.setNode(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    Orvane::Qt4::QorNodeEditorTreeView* view() const { return editor.treeView(); }
    Orvane::Qt4::QorNodeModel* model() const { return editor.model(); }
    Orvane::Field* field(const char* name) const
    {
        return editor.node()->findField(name, Orvane::Node::EXACT_FSO);
    }
    std::string text(const char* name) const { return field(name)->valueToString(); }
    /// The value cell of a field, and of a value of a field.
    QModelIndex cell(Orvane::Field* of) const { return model()->index(of); }
    QModelIndex cell(Orvane::Field* of, int value) const { return model()->index(value, 1, row(of)); }
    QModelIndex cell(const char* name) const { return cell(field(name)); }
    QModelIndex cell(const char* name, int value) const { return cell(field(name), value); }
    /// The first cell of the row of a field.
    QModelIndex row(Orvane::Field* of) const { return model()->index(cell(of).row(), 0); }
    QModelIndex row(const char* name) const { return row(field(name)); }

    QPoint centre(const QModelIndex& index) const { return view()->visualRect(index).center(); }
    void click(const QModelIndex& index, Qt::MouseButton button = Qt::LeftButton)
    {
        view()->scrollTo(index);
        QTest::mouseClick(view()->viewport(), button, Qt::NoModifier, centre(index));
    }
    /// As a user asks for the menu of a row: a right press, and the event that the platform makes of it.
    void askForMenu(const QPoint& place)
    {
        QTest::mousePress(view()->viewport(), Qt::RightButton, Qt::NoModifier, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, view()->viewport()->mapToGlobal(place));
        QApplication::sendEvent(view()->viewport(), &event);
        QTest::mouseRelease(view()->viewport(), Qt::RightButton, Qt::NoModifier, place);
        menuAccepted = event.isAccepted();
    }
    void askForMenu(const QModelIndex& index)
    {
        view()->scrollTo(index);
        askForMenu(centre(index));
    }
    /// Opens the editor of a cell by the edit key; null when the cell has none.
    QWidget* open(const QModelIndex& index)
    {
        view()->setCurrentIndex(index);
        QTest::keyClick(view(), Qt::Key_F2);
        return openEditor();
    }
    /// Opens the editor of a cell by a double click; null when the cell has none.
    QWidget* openByMouse(const QModelIndex& index)
    {
        click(index);
        QTest::mouseDClick(view()->viewport(), Qt::LeftButton, Qt::NoModifier, centre(index));
        return openEditor();
    }
    /// The editor that is open; null when there is none.
    QWidget* openEditor() const { return view()->indexWidget(view()->currentIndex()); }
    /// Keys as they come from the window system.
    void type(Qt::Key key) { QTest::keyClick(editor.window()->windowHandle(), key); }
    void type(const char* text)
    {
        for (; *text; ++text)
            QTest::keyClick(editor.window()->windowHandle(), *text);
    }

    Orvane::Qt4::QorNodeItemDelegate delegate;
    Editor editor;
    bool menuAccepted = false;
};
