#pragma once

#include <Orvane/SaveOptions.h>
#include <QString>
#include <memory>

class QWidget;

namespace Orvane {
class Context;
class SceneMove;
} // namespace Orvane

/// What became of a scene that was to be written.
struct SavedScene
{
    bool isWritten = false;
    QString file; ///< empty when nothing was to be written
    QString told; ///< for the user; empty when nothing was to be written
};

/// Where and how a scene is to be written.
struct SaveTarget
{
    QString file; ///< empty when the dialog was cancelled
    Orvane::SaveOptions options;
};

/// What becomes of addresses that lead elsewhere from the folder of another file.
enum class Addresses : int { Rewritten, Kept };

/// True when the suffix of the file is that of an encoding.
bool canWrite(const QString& file);

/// Asks for a file and how to write it. The dialog starts at \a present; without a \a title it is one for
/// saving.
SaveTarget askForTarget(const SaveTarget& present, QWidget* parent, const QString& title = {});

/// The move of a scene to the file that it is to be written to.
std::unique_ptr<Orvane::SceneMove> moveTo(Orvane::Context& scene, const QString& file);

/// Asks what is to become of addresses that lead elsewhere from the folder of the new file, when there are
/// some. False when it is not to be written.
bool mayMove(const Orvane::SceneMove& move, const QString& file, QWidget* parent, Addresses& addresses);

/// Writes the scene in the encoding of the file's suffix.
SavedScene saveScene(Orvane::Context& scene, const SaveTarget& target);
/// Writes a scene that goes on in its own file: rewritten addresses stand in the written file alone.
SavedScene saveElsewhere(Orvane::Context& scene, const SaveTarget& target, Addresses addresses);
