#include "FileDrops.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

FileDrops::FileDrops(QWidget* widget)
    : QObject(widget)
{
    widget->setAcceptDrops(true);
    widget->installEventFilter(this);
}

QString FileDrops::fileOf(const QDropEvent& event)
{
    const QList<QUrl> urls = event.mimeData()->urls();
    return urls.isEmpty() ? QString() : urls.constFirst().toLocalFile();
}

bool FileDrops::eventFilter(QObject* object, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(object, event);
    auto* const drop = static_cast<QDropEvent*>(event); // the base of all of them
    const QString file = fileOf(*drop);
    if (file.isEmpty())
        return QObject::eventFilter(object, event);
    drop->acceptProposedAction();
    // Questions would keep the other program waiting.
    if (type == QEvent::Drop)
        QTimer::singleShot(0, this, [this, file] { emit dropped(file); });
    return true;
}
