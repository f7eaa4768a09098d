#pragma once

#include <Orvane/SaveOptions.h>
#include <QString>

class QWidget;

namespace Orvane {
class Context;
}

/// What became of a scene that was to be written.
struct SavedScene
{
    bool isWritten = false;
    QString file;                ///< empty when the dialog was cancelled
    QString told;                ///< for the user; empty when the dialog was cancelled
    Orvane::SaveOptions options; ///< that the dialog was left with
};

/// True when the suffix of the file is that of an encoding.
bool canWrite(const QString& file);

/// Writes the scene in the encoding of the file's suffix.
SavedScene saveScene(Orvane::Context& scene, const QString& file, const Orvane::SaveOptions& options);

/// Asks for a file and how to write it, and writes the scene. \a file and \a options are where the dialog
/// starts; without a \a title it is one for saving.
SavedScene saveSceneByDialog(Orvane::Context& scene, const QString& file, const Orvane::SaveOptions& options,
                             QWidget* parent, const QString& title = {});
