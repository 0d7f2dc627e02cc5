// Writes what the X server shows, or a part of it, to a PNG file.

#include <cstdio>
#include <cstdlib>

#include <QtGui/QGuiApplication>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>

int main(int argc, char** argv) {
    if (argc != 2 && argc != 6) {
        std::fprintf(stderr, "usage: noctra-take-picture FILE.png [X Y WIDTH HEIGHT]\n");
        return 2;
    }
    const QGuiApplication application(argc, argv);
    QRect part = QGuiApplication::primaryScreen()->virtualGeometry();
    if (argc == 6)
        part = {std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5])};
    const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(
        0, part.x(), part.y(), part.width(), part.height());
    if (picture.isNull() || !picture.save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fprintf(stderr, "noctra-take-picture: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
