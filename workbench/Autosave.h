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
/// that of a scene without a file lies among the data of the program.
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

    /// Writes the copy when there are changes that it has not. False when it cannot be written.
    bool write(Orvane::Context& scene, const QString& file);
    /// Takes the copy of a file away.
    void drop(const QString& file);

signals:
    /// It is time to write.
    void due();

private:
    static void note(const QString& file, bool hasCopy);

    QUndoStack* _steps;
    QTimer _timer;
    bool _hasChanges = false; ///< since the last copy
};
