// quilmark-icon-png: draws an SVG icon as a square PNG of a given size, for the fixed-size
// folders of the icon theme, so that only the SVG lives in the source tree.
//   quilmark-icon-png ICON.svg SIZE OUT.png
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    int size = argc == 4 ? std::atoi(argv[2]) : 0;
    if (size < 1 || size > 1024) {
        std::fprintf(stderr, "usage: quilmark-icon-png ICON.svg SIZE OUT.png\n");
        return 2;
    }
    QSvgRenderer svg(QString::fromLocal8Bit(argv[1]));
    if (!svg.isValid()) {
        std::fprintf(stderr, "quilmark-icon-png: cannot read %s\n", argv[1]);
        return 1;
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    svg.render(&painter);
    painter.end();
    if (!image.save(QString::fromLocal8Bit(argv[3]), "PNG")) {
        std::fprintf(stderr, "quilmark-icon-png: cannot write %s\n", argv[3]);
        return 1;
    }
    return 0;
}
