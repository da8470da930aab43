// Screenshots of the windows as a user sees them: when PVX_SCREENSHOT_DIR is set (scripts/screenshots
// runs the window tests under a virtual X display), a test stores the screen area of a window there
// as NAME.png. Without it nothing is taken.
#pragma once

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

namespace pvx::test {

inline void Take_Screenshot(QWidget& widget, const char* name) {
  const QString directory = qEnvironmentVariable("PVX_SCREENSHOT_DIR");
  if (directory.isEmpty()) return;
  QDir().mkpath(directory);
  QWidget* window = widget.window();
  for (int i = 0; i < 5; ++i)
    QApplication::processEvents();
  QPixmap shot;
  if (QScreen* screen = window->screen()) shot = screen->grabWindow(window->winId());
  if (shot.isNull()) shot = window->grab();
  shot.save(directory + "/" + name + ".png");
}

}  // namespace pvx::test
