#pragma once

#include "DocumentFile.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "Steps.h"
#include "WorkbenchWindow.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QorViewManager.h>
#include <QtTest>
#include <SAI/SAIBrowserRef.h>
#include <memory>

/// Somebody at a workbench of his own, whose frames run when they are asked for.
class Author
{
public:
    Author()
    {
        window.resize(1000, 800);
        window.show();
        window.activateWindow();
    }

    /// Writes a file beside the others.
    QString write(const QString& name, const QByteArray& text) const
    {
        const QString path = _folder.filePath(name);
        QFile file(path);
        QDir().mkpath(QFileInfo(path).path());
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? path : QString();
    }
    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString path(const QString& name) const { return _folder.filePath(name); }

    bool open(const QString& name, const QByteArray& text)
    {
        const bool ok =
            QTest::qWaitForWindowExposed(&window) && window.document()->openByUser(write(name, text));
        run();
        return ok;
    }

    void run(int frames = 2)
    {
        for (int i = 0; i < frames; ++i) {
            window.viewManager()->runFrame();
            QCoreApplication::processEvents();
        }
    }

    Orvane::Context* context() const
    {
        const std::unique_ptr<__SAI_SAIBrowserRef> browser(window.viewManager()->getSAI());
        return browser->getExecutionContext();
    }
    Orvane::Node* find(const char* name) const
    {
        const auto* const scene = context()->findRoot(Orvane::Scene::_type);
        return scene ? Orvane::NodeNameSpace::findNode(scene->nameSpace(), name) : nullptr;
    }
    Orvane::Field* field(const char* node, const char* name) const
    {
        return find(node)->findField(name, Orvane::Node::EXACT_FSO);
    }
    std::string value(const char* node, const char* name) const { return field(node, name)->valueToString(); }

    Orvane::Node* select(const char* name)
    {
        if (!window.showNode(QString::fromLatin1(name)))
            return nullptr;
        QApplication::setActiveWindow(&window);
        tree()->setFocus();
        return window.selection()->node();
    }
    /// A key for the tree.
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        // Without a window manager nobody makes the window active again once a dialog has closed.
        QApplication::setActiveWindow(&window);
        tree()->setFocus();
        QTest::keyClick(tree(), static_cast<Qt::Key>(key), modifiers);
        run();
    }

    SceneTreeView* tree() const { return window.findChild<SceneTreeView*>(); }
    QTextEdit* log() const { return window.findChild<QTextEdit*>(QStringLiteral("textView")); }
    Steps& steps() const { return *window.steps(); }
    QString told() const { return window.statusBar()->currentMessage(); }

    /// The whole scene as a text.
    QByteArray saved() const
    {
        const QString name = _folder.filePath(QStringLiteral("saved.x3dv"));
        std::string error;
        return context()->save(name.toStdString(), {}, error) ? read(name) : QByteArray::fromStdString(error);
    }

    /// Answers the next question by one of its buttons. The text of the question goes to \a asked.
    static void answer(QMessageBox::StandardButton button, QString* asked = nullptr)
    {
        auto* const timer = new QTimer(qApp);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, button, asked] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || !box->button(button))
                return;
            timer->stop();
            timer->deleteLater();
            if (asked)
                *asked = box->text();
            box->button(button)->click();
        });
        timer->start(10);
    }

    WorkbenchWindow window{false};

private:
    QTemporaryDir _folder;
};
