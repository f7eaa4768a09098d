#include "Autosave.h"

#include "SceneSaving.h"
#include <Orvane/Context.h>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QUndoStack>
#include <cerrno>
#include <csignal>
#include <sys/types.h>

namespace {

const QString writersKey = QStringLiteral("unsaved"); ///< programs that have written copies, by file

QString codeFileOf(const QString& file)
{
    return Autosave::copyOf(file) + QStringLiteral(".code");
}

} // namespace

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
    // The name as a whole, so that it is not the copy of a neighbour with the usual suffix.
    if (!file.isEmpty() && !canWrite(file))
        return info.dir().filePath(QStringLiteral(".%1~.autosave.x3d").arg(info.fileName()));
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

/// Takes down in the settings which program has written a copy, or that there is none any more.
void Autosave::note(const QString& file, bool hasCopy)
{
    QSettings settings;
    QVariantMap writers = settings.value(writersKey).toMap();
    if (hasCopy)
        writers[file] = QCoreApplication::applicationPid();
    else
        writers.remove(file);
    settings.setValue(writersKey, writers);
}

QStringList Autosave::leftCopies()
{
    QStringList left;
    const QVariantMap writers = QSettings().value(writersKey).toMap();
    for (auto writer = writers.begin(); writer != writers.end(); ++writer) {
        const auto id = static_cast<pid_t>(writer.value().toLongLong());
        const bool isAlive = id > 0 && (::kill(id, 0) == 0 || errno == EPERM);
        if (!isAlive)
            left << writer.key();
    }
    return left;
}

QByteArray Autosave::codeOf(const QString& file)
{
    // More than any editor of text has held.
    constexpr qint64 largest = qint64(256) << 20;
    QFile code(codeFileOf(file));
    return code.size() <= largest && code.open(QIODevice::ReadOnly) ? code.readAll() : QByteArray();
}

QString Autosave::writeCode(const QString& file, const QByteArray& code)
{
    const QString name = codeFileOf(file);
    if (code.isEmpty()) {
        QFile::remove(name);
        return {};
    }
    QSaveFile target(name);
    const bool ok = target.open(QIODevice::WriteOnly) && target.write(code) == code.size() && target.commit();
    return ok ? QString() : tr("%1 cannot be written: %2").arg(name, target.errorString());
}

QString Autosave::write(Orvane::Context& scene, const QString& file, const QByteArray& code)
{
    if (_steps->isClean() && code.isEmpty()) {
        if (_hasCopy)
            drop(file);
        return {};
    }
    if (!_hasChanges && _hasCopy && code == _code)
        return {};
    const QString fault = writeCode(file, code);
    if (!fault.isEmpty())
        return fault;
    const SavedScene saved = saveElsewhere(scene, {copyOf(file), {}}, Addresses::Rewritten);
    if (!saved.isWritten)
        return saved.told;
    _hasChanges = false;
    _hasCopy = true;
    _code = code;
    note(file, true);
    return {};
}

void Autosave::drop(const QString& file)
{
    QFile::remove(copyOf(file));
    QFile::remove(codeFileOf(file));
    note(file, false);
    // The scene may stay all the same.
    _hasChanges = !_steps->isClean();
    _hasCopy = false;
}
