// The desktop program: a short splash with the labels of its three modules, then the main window,
// which starts with the project named on the command line, if any.
#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPainter>
#include <QSplashScreen>

#include "app/shell_input.h"
#include "app/units.h"
#include "main_window.h"
#include "qt_shell_host.h"

namespace {

QPixmap Splash_Picture() {
  QPixmap pixmap(460, 240);
  pixmap.fill(QColor(44, 79, 134));
  QPainter g(&pixmap);
  g.setPen(Qt::white);
  QFont font = g.font();
  font.setPixelSize(26);
  font.setBold(true);
  g.setFont(font);
  g.drawText(QRect(0, 30, 460, 50), Qt::AlignCenter, pvx::Program_Name);
  font.setPixelSize(16);
  font.setBold(false);
  g.setFont(font);
  const char* labels[3] = {pvx::Thermal_Label, pvx::Mechanical_Label, pvx::Moisture_Label};
  for (int i = 0; i < 3; ++i)
    g.drawText(QRect(0, 100 + 32 * i, 460, 30), Qt::AlignCenter, labels[i]);
  return pixmap;
}

}  // namespace

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  pvx::Qt_Shell_Host host;
  pvx::Qt_Settings_Store store;
  pvx::mdiPVX window(host, store, QCoreApplication::applicationDirPath().toStdString());
  host.Set_Parent(&window);
  window.show();
  if (qEnvironmentVariableIsEmpty("PVX_NO_SPLASH")) {
    QSplashScreen splash(Splash_Picture());
    splash.show();
    QElapsedTimer shown;
    shown.start();
    while (shown.elapsed() < 1500)
      application.processEvents(QEventLoop::AllEvents, 50);
    splash.finish(&window);
  }
  // The start-up changes the current directory (work directory file, default database), so a
  // relative path on the command line is made absolute first.
  std::string command_line;
  if (argc > 1) {
    QString path = QString::fromLocal8Bit(argv[1]).trimmed();
    if (path.size() >= 2 && path.startsWith('"') && path.endsWith('"')) path = path.mid(1, path.size() - 2);
    command_line = pvx::Quoted_Command_Line(QFileInfo(path).absoluteFilePath().toStdString());
  }
  window.Start(pvx::Locale_Uses_Decimal_Comma(), command_line);
  return application.exec();
}
