#include "gui_application.h"

#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>

namespace pvx::cli {

void Ensure_Gui_Application() {
  if (QGuiApplication::instance() != nullptr) return;
  if (std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  // Qt's notes about the desktop session (no runtime folder on a server) are not the batch tool's
  // business: its standard error carries only its own messages.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtWarningMsg && text.startsWith("QStandardPaths:")) return;
    if (type != QtDebugMsg && type != QtInfoMsg) std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
  });
  static int argc = 1;
  static char name[] = "pvx";
  static char* argv[] = {name, nullptr};
  static QGuiApplication* application = new QGuiApplication(argc, argv);
  (void)application;
}

}  // namespace pvx::cli
