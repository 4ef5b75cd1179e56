#include "chart/qt_export.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "chart/qt_surface.h"
#include "platform/native_paths.h"

namespace quilmark {

namespace {

constexpr int Export_Dpi = 96;

std::string Write_Failed(const QString& path) {
    return "Could not write the image " + path.toStdString() + ".";
}

// A file is made in memory and then put in its place through a temporary file beside it,
// so that a failed or stopped export never leaves a half-written file, nor spoils one that
// was there before.
std::string Put_In_Place(const QString& path, const QByteArray& bytes) {
    if (!Write_File_Replacing(
            path.toStdString(),
            std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())))) {
        return Write_Failed(path);
    }
    return "";
}

void Paint_Chart(QPainter& painter, int32_t width, int32_t height, const Chart_Paint& paint) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    Qt_Surface surface(painter, width, height);
    if (paint) {
        paint(surface);
    }
}

std::string Write_Png(const QString& path, int32_t width, int32_t height,
                      const Chart_Paint& paint) {
    QImage image(width, height, QImage::Format_RGB32);
    image.setDotsPerMeterX(static_cast<int>(Export_Dpi / 0.0254 + 0.5));
    image.setDotsPerMeterY(static_cast<int>(Export_Dpi / 0.0254 + 0.5));
    image.fill(Qt::white);
    QPainter painter(&image);
    Paint_Chart(painter, width, height, paint);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG")) {
        return Write_Failed(path);
    }
    buffer.close();
    return Put_In_Place(path, bytes);
}

std::string Write_Svg(const QString& path, int32_t width, int32_t height,
                      const Chart_Paint& paint) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(QSize(width, height));
    generator.setViewBox(QRect(0, 0, width, height));
    generator.setResolution(Export_Dpi);
    generator.setTitle(QStringLiteral("Quilmark chart"));
    QPainter painter;
    if (!painter.begin(&generator)) {
        return Write_Failed(path);
    }
    Paint_Chart(painter, width, height, paint);
    painter.end();
    buffer.close();
    return Put_In_Place(path, bytes);
}

std::string Write_Pdf(const QString& path, int32_t width, int32_t height, int page_count,
                      const Page_Paint& paint) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setCreator(QStringLiteral("Quilmark"));
    writer.setTitle(QStringLiteral("Quilmark chart"));
    writer.setPageLayout(
        QPageLayout(QPageSize(QSizeF(double(width) / Export_Dpi, double(height) / Export_Dpi),
                              QPageSize::Inch, QString(), QPageSize::ExactMatch),
                    QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    writer.setResolution(Export_Dpi);
    QPainter painter;
    if (!painter.begin(&writer)) {
        return Write_Failed(path);
    }
    for (int page = 0; page < page_count; ++page) {
        if (page > 0 && !writer.newPage()) {
            painter.end();
            return Write_Failed(path);
        }
        // The page may come out a fraction of a pixel off the chart's size; map the
        // chart's pixels onto it exactly.
        painter.setWindow(0, 0, width, height);
        Paint_Chart(painter, width, height,
                    [&](Surface& surface) { paint ? paint(surface, page) : void(); });
    }
    painter.end();
    buffer.close();
    return Put_In_Place(path, bytes);
}

} // namespace

std::string Export_Chart_Image(const std::string& path, int32_t width, int32_t height,
                               const Chart_Paint& paint) {
    if (width <= 0 || height <= 0) {
        return "The image size must be at least 1 by 1 pixels.";
    }
    QString file = QString::fromStdString(path);
    QString suffix = QFileInfo(file).suffix().toLower();
    if (suffix == QStringLiteral("png")) {
        return Write_Png(file, width, height, paint);
    }
    if (suffix == QStringLiteral("svg")) {
        return Write_Svg(file, width, height, paint);
    }
    if (suffix == QStringLiteral("pdf")) {
        return Write_Pdf(file, width, height, 1,
                         [&](Surface& surface, int) { paint ? paint(surface) : void(); });
    }
    return "Unknown image type \"" + suffix.toStdString() + "\": use .png, .svg or .pdf.";
}

std::string Export_Pdf_Pages(const std::string& path, int32_t width, int32_t height, int page_count,
                             const Page_Paint& paint) {
    if (width <= 0 || height <= 0 || page_count <= 0) {
        return "The document needs at least one page of at least 1 by 1 pixels.";
    }
    return Write_Pdf(QString::fromStdString(path), width, height, page_count, paint);
}

std::string Export_Trip_Kit(const std::string& path, std::span<const Kit_Airport_Rec> airports,
                            const Magvar_Grid& grid) {
    if (airports.empty()) {
        return "The trip kit needs at least one airport.";
    }
    const std::vector<Kit_Page_Rec> pages = Layout_Trip_Kit(airports, grid, Qt_Text_Metrics());
    return Export_Pdf_Pages(path, Kit_Page_Width, Kit_Page_Height, static_cast<int>(pages.size()),
                            [&](Surface& surface, int page) {
                                Draw_Kit_Page(surface, pages[static_cast<size_t>(page)], airports,
                                              grid);
                            });
}

} // namespace quilmark
