#include "controls/EVShadow.h"

#include "controls/EVPaintScale.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

// Three box blurs in a row come within a few per cent of a Gaussian blur; the widths follow
// from the standard deviation so that the three passes together spread as far as it does.
std::array<int, 3> boxRadiiForSigma(double sigma)
{
    constexpr int passes = 3;
    const double ideal = std::sqrt(12.0 * sigma * sigma / passes + 1.0);
    int lower = int(std::floor(ideal));
    if (lower % 2 == 0)
        --lower;
    const int upper = lower + 2;
    const double lowerCount =
        (12.0 * sigma * sigma - passes * lower * lower - 4.0 * passes * lower - 3.0 * passes) /
        (-4.0 * lower - 4.0);
    const int passesWithLower = int(std::lround(lowerCount));
    std::array<int, 3> radii{};
    for (int pass = 0; pass < passes; ++pass)
        radii[size_t(pass)] = ((pass < passesWithLower ? lower : upper) - 1) / 2;
    return radii;
}

// One box blur of a line of coverage values, read with the given stride; outside the line
// everything is uncovered.
void boxBlurLine(float *line, int length, int stride, int radius, std::vector<float> &scratch)
{
    if (radius <= 0)
        return;
    scratch.resize(size_t(length));
    for (int i = 0; i < length; ++i)
        scratch[size_t(i)] = line[i * stride];
    const float scale = 1.0f / float(2 * radius + 1);
    float sum = 0.0f;
    for (int i = 0; i <= std::min(radius, length - 1); ++i)
        sum += scratch[size_t(i)];
    for (int i = 0; i < length; ++i) {
        line[i * stride] = sum * scale;
        const int entering = i + radius + 1;
        const int leaving = i - radius;
        if (entering < length)
            sum += scratch[size_t(entering)];
        if (leaving >= 0)
            sum -= scratch[size_t(leaving)];
    }
}

void blurCoverage(QImage &mask, double sigma)
{
    const int width = mask.width();
    const int height = mask.height();
    std::vector<float> coverage(size_t(width) * size_t(height));
    for (int y = 0; y < height; ++y) {
        const uchar *row = mask.constScanLine(y);
        for (int x = 0; x < width; ++x)
            coverage[size_t(y) * size_t(width) + size_t(x)] = float(row[x]);
    }
    std::vector<float> scratch;
    for (const int radius : boxRadiiForSigma(sigma)) {
        for (int y = 0; y < height; ++y)
            boxBlurLine(coverage.data() + size_t(y) * size_t(width), width, 1, radius, scratch);
        for (int x = 0; x < width; ++x)
            boxBlurLine(coverage.data() + x, height, width, radius, scratch);
    }
    for (int y = 0; y < height; ++y) {
        uchar *row = mask.scanLine(y);
        for (int x = 0; x < width; ++x) {
            const float value = coverage[size_t(y) * size_t(width) + size_t(x)];
            row[x] = uchar(std::clamp(std::lround(value), 0L, 255L));
        }
    }
}

} // namespace

EVShadow::EVShadow(const QColor &color, double blurRadius, const QPointF &offset)
    : m_color(color)
    , m_blurRadius(blurRadius)
    , m_offset(offset)
{}

void EVShadow::drawForPath(QPainter &painter, const QPainterPath &path) const
{
    if (path.isEmpty() || m_color.alpha() == 0)
        return;
    // The blur is worked out in device pixels, so that it is as soft at every pixel ratio.
    const double scale = EVPaintScale::devicePixelsPerPoint(painter);
    // A blur radius stands for a Gaussian of half its size, as shadows of desktop toolkits do.
    const double sigma = m_blurRadius / 2.0;
    const double margin = std::ceil(3.0 * sigma) + 1.0;
    const QRectF shape = path.boundingRect().translated(m_offset);
    const QRectF area(std::floor(shape.left() - margin), std::floor(shape.top() - margin),
                      std::ceil(shape.width() + 2.0 * margin) + 1.0,
                      std::ceil(shape.height() + 2.0 * margin) + 1.0);
    const QSize pixels(int(std::ceil(area.width() * scale)), int(std::ceil(area.height() * scale)));

    QImage mask(pixels, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter maskPainter(&mask);
        maskPainter.setRenderHint(QPainter::Antialiasing);
        maskPainter.scale(scale, scale);
        maskPainter.translate(m_offset - area.topLeft());
        maskPainter.fillPath(path, Qt::black);
    }
    if (sigma > 0.0)
        blurCoverage(mask, sigma * scale);

    QImage shadow(pixels, QImage::Format_ARGB32_Premultiplied);
    shadow.fill(m_color);
    {
        QPainter shadowPainter(&shadow);
        shadowPainter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        shadowPainter.drawImage(0, 0, mask);
    }
    shadow.setDevicePixelRatio(scale);
    painter.drawImage(area.topLeft(), shadow);
}
