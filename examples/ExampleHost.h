#pragma once

#include <Orvane/Context.h>
#include <Orvane/Scene.h>
#include <QApplication>
#include <QPixmap>
#include <QScreen>
#include <QorTools.h>
#include <QorViewManager.h>
#include <SAI/SAIBrowserRef.h>
#include <cstdio>
#include <memory>

/// What the examples do alike: one scene on the command line, `--frames N` to end after N frames, and with it
/// `--picture FILE` to write what the window shows then.
class ExampleHost
{
public:
    /// Reads the arguments of the application.
    ExampleHost()
    {
        const QStringList arguments = QApplication::arguments();
        const auto option = [&](const QString& name) {
            const int place = arguments.indexOf(name);
            return place > 0 ? arguments.value(place + 1) : QString();
        };
        _scene = arguments.value(1);
        _frames = option(QStringLiteral("--frames")).toInt();
        _picture = option(QStringLiteral("--picture"));
    }

    Orvane::Qt4::QorViewManager::TriggerMode triggerMode() const
    {
        using Orvane::Qt4::QorViewManager;
        return _frames > 0 ? QorViewManager::ManualTrigger : QorViewManager::TimerTrigger;
    }

    /// The root of the scene, which the manager has loaded; null, with a message, when that fails.
    Orvane::Node* load(Orvane::Qt4::QorViewManager& manager) const
    {
        if (!manager.loadContextByURL(_scene)) {
            std::fprintf(stderr, "usage: %s SCENE [--frames N]; \"%s\" cannot be loaded\n",
                         qPrintable(QApplication::applicationName()), qPrintable(_scene));
            return nullptr;
        }
        return context(manager)->findRoot(Orvane::Scene::_type);
    }

    static Orvane::Context* context(Orvane::Qt4::QorViewManager& manager)
    {
        return std::unique_ptr<__SAI_SAIBrowserRef>(manager.getSAI())->getExecutionContext();
    }

    /// Shows the window until the user closes it, or for the frames that are asked for. Gives the exit
    /// status.
    int run(Orvane::Qt4::QorViewManager& manager, QWidget& window) const
    {
        window.resize(900, 560);
        window.show();
        if (_frames <= 0)
            return QApplication::exec();
        for (int i = 0; i < _frames; ++i) {
            QApplication::processEvents();
            manager.runFrame();
        }
        std::printf("%d frames\n", _frames);
        // From the screen, as only there the GL views are together with the rest.
        QScreen* screen = QApplication::primaryScreen();
        return _picture.isEmpty() || screen->grabWindow(window.winId()).save(_picture) ? 0 : 1;
    }

private:
    QString _scene;
    QString _picture;
    int _frames = 0;
};
