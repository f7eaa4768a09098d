#include "Autosave.h"

#include "SceneSaving.h"
#include <Orvane/Context.h>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUndoStack>

Autosave::Autosave(QUndoStack* steps, QObject* parent)
    : QObject(parent)
    , _steps(steps)
{
    connect(_steps, &QUndoStack::indexChanged, this, [this] { _hasChanges = true; });
    connect(&_timer, &QTimer::timeout, this, &Autosave::due);
    _timer.start(interval);
}

QString Autosave::copyOf(const QString& file)
{
    const QFileInfo info(file);
    if (!file.isEmpty())
        return info.dir().filePath(
            QStringLiteral(".%1.autosave.%2").arg(info.completeBaseName(), info.suffix()));
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(QStringLiteral("."));
    return folder.filePath(QStringLiteral("untitled.autosave.x3d"));
}

QString Autosave::newerCopyOf(const QString& file)
{
    const QFileInfo copy(copyOf(file));
    const bool isNewer =
        copy.exists() && (file.isEmpty() || copy.lastModified() > QFileInfo(file).lastModified());
    return isNewer ? copy.filePath() : QString();
}

bool Autosave::write(Orvane::Context& scene, const QString& file)
{
    if (_steps->isClean() || !_hasChanges)
        return true;
    _hasChanges = false;
    return saveScene(scene, copyOf(file), {}).isWritten;
}

void Autosave::drop(const QString& file)
{
    QFile::remove(copyOf(file));
}
