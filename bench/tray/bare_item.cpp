// The least that Qt can show an item in the tray with: what is above its figures is Noctra's own.

#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QPixmap picture(18, 18);
    picture.fill(Qt::black);
    QMenu menu;
    menu.addAction("Quit");
    QSystemTrayIcon item{QIcon(picture)};
    item.setContextMenu(&menu);
    item.show();
    return QApplication::exec();
}
