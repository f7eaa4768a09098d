#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

class QUndoStack;

namespace Orvane {
class Context;
}

/// Keeps a copy of a changed scene beside its file, against loss, and takes it away when the changes have
/// been saved or given up. The copy lies in the same folder, so that relative addresses lead where they did;
/// that of a scene without a file lies among the data of the program. Code that was not applied is no part of
/// the scene: it is kept in a file beside the copy.
class Autosave : public QObject
{
    Q_OBJECT

public:
    static constexpr int interval = 30000; ///< milliseconds between looks for changes

    /// \a steps is borrowed.
    Autosave(QUndoStack* steps, QObject* parent);

    /// The copy of a file that belongs to it; it need not exist.
    static QString copyOf(const QString& file);
    /// The copy when it is there and newer than the file; else empty.
    static QString newerCopyOf(const QString& file);

    /// Files whose copies have been left by a program that has ended without a word; an empty name stands for
    /// a scene without a file.
    static QStringList leftCopies();

    /// The code that is kept beside the copy of a file; empty for none.
    static QByteArray codeOf(const QString& file);

    /// Writes the copy when there are changes that it has not, and takes it away when all have been taken
    /// back. \a code is kept beside it. The result says why it cannot be written; empty when it can.
    QString write(Orvane::Context& scene, const QString& file, const QByteArray& code);
    /// Takes the copy of a file away.
    void drop(const QString& file);

signals:
    /// It is time to write.
    void due();

private:
    static void note(const QString& file, bool hasCopy);
    static QString writeCode(const QString& file, const QByteArray& code);

    QUndoStack* _steps;
    QTimer _timer;
    bool _hasChanges = false; ///< since the last copy
    bool _hasCopy = false;    ///< written by this object
    QByteArray _code;         ///< beside the last copy
};
