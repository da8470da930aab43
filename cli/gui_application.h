// The commands that paint (pictures, PDF pages) need Qt's GUI application object for fonts and
// painting, also on a server without a display.
#pragma once

namespace pvx::cli {

// Makes the one GUI application object of the process on first need; later calls find it. Without
// a display the offscreen platform serves.
void Ensure_Gui_Application();

}  // namespace pvx::cli
