#pragma once

/// Draws the icons of panels in the colour of the writing, in the style of the system.
void useStyle();

/// Light writing on a dark ground, or the colours of the system. For the whole program.
void usePalette(bool dark);
