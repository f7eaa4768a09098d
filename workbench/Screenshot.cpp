#include "Screenshot.h"

#include "CommandLine.h"
#include "FrameGrabber.h"
#include "WorkbenchWindow.h"

#include <Orvane/WindowProc.h>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QGLWidget>
#include <QGuiApplication>
#include <QImageWriter>
#include <QPainter>
#include <QWindow>
#include <QorRenderView.h>
#include <QorViewManager.h>
#include <QorWindowToolbar.h>

namespace {

/// Frames that pass until a new or resized GL surface has its final size everywhere.
constexpr int settlingFrames = 3;

void handleEvents()
{
    for (int i = 0; i < 3; ++i)
        QGuiApplication::processEvents(QEventLoop::AllEvents, 20);
}

bool waitUntilShown(QWidget& window)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 10000) {
        QGuiApplication::processEvents(QEventLoop::AllEvents, 20);
        if (window.windowHandle() && window.windowHandle()->isExposed())
            return true;
    }
    return false;
}

void redrawViews(QWidget& parent)
{
    const auto views = parent.findChildren<Orvane::Qt4::QorRenderView*>();
    for (const auto* view : views) {
        if (view->windowProc())
            view->windowProc()->render();
    }
}

} // namespace

bool takeScreenshot(WorkbenchWindow& window, FrameGrabber& grabber, const CommandLine& commandLine,
                    QString& error)
{
    if (commandLine.viewOnly) {
        // Panels would keep the view from becoming as small as it is asked to be.
        const auto panels = window.findChildren<QDockWidget*>();
        for (QDockWidget* panel : panels)
            panel->hide();
        window.showButtons(false);
    }
    window.resize(commandLine.size);
    window.show();
    if (!waitUntilShown(window)) {
        error = QStringLiteral("the window did not appear");
        return false;
    }
    Orvane::Qt4::QorViewManager* manager = window.viewManager();
    if (commandLine.viewOnly) {
        const QSize frame = window.size() - manager->size();
        window.resize(commandLine.size + frame);
    }
    handleEvents();

    for (int i = 0; i < commandLine.frames; ++i) {
        manager->runFrame();
        handleEvents();
    }
    grabber.setActive(true);
    for (int i = 0; i < settlingFrames; ++i) {
        redrawViews(*manager);
        manager->runFrame();
        handleEvents();
    }
    grabber.setActive(false);
    window.updateStatus();
    handleEvents();

    QWidget& shown = commandLine.viewOnly ? static_cast<QWidget&>(*manager) : window;
    QImage picture = shown.grab().toImage().convertToFormat(QImage::Format_RGB32);
    QPainter painter(&picture);
    const auto glWidgets = shown.findChildren<QGLWidget*>();
    for (QGLWidget* gl : glWidgets) {
        const QImage content = grabber.picture(gl);
        if (gl->isVisibleTo(&shown) && !content.isNull())
            painter.drawImage(gl->mapTo(&shown, QPoint(0, 0)), content);
    }
    // The strips of buttons lie over the GL widgets.
    const auto strips = shown.findChildren<Orvane::Qt4::QorWindowToolbar*>();
    for (Orvane::Qt4::QorWindowToolbar* strip : strips) {
        const QWidget* const view = strip->parentWidget();
        painter.setClipRect(QRect(view->mapTo(&shown, QPoint(0, 0)), view->size()));
        if (strip->isVisibleTo(&shown))
            painter.drawPixmap(strip->mapTo(&shown, QPoint(0, 0)), strip->grab());
    }
    painter.end();

    QImageWriter writer(commandLine.screenshot, "png");
    if (!writer.write(picture)) {
        error = QStringLiteral("%1: %2").arg(commandLine.screenshot, writer.errorString());
        return false;
    }
    return true;
}
