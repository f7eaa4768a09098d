#pragma once

/// Gives all windows the colours of the system, or light writing on a dark ground.
void usePalette(bool dark);
