#pragma once

#include <QString>

class QWidget;

namespace Orvane {
class Context;
}

/// Asks for a file and how to write it, and writes the scene in the encoding of its suffix. Gives what to
/// tell the user; empty when the dialog was cancelled. \a file is where the dialog starts.
QString saveSceneByDialog(Orvane::Context& scene, const QString& file, QWidget* parent);
