#pragma once

#include <QIcon>

/// What the drawn icons show.
enum class Drawing : int { New, Open, Save, Undo, Redo, Pick, Routes, Table, Close, Float, Up, Down };

/// An icon of lines in the colour of the palette's writing, sharp in any size.
QIcon drawnIcon(Drawing drawing);
