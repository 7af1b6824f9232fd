#include "ui/OpaqueShape.h"

namespace mevo {

namespace {

constexpr int halfOpaque = 128;

/// Runs of opaque pixels of one row, each as first pixel and width.
std::vector<std::pair<int, int>> opaqueRuns(const QImage &picture, int y)
{
    std::vector<std::pair<int, int>> runs;
    const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
    for (int x = 0; x < picture.width(); ++x) {
        if (qAlpha(row[x]) < halfOpaque) {
            continue;
        }
        if (runs.empty() || runs.back().first + runs.back().second != x) {
            runs.emplace_back(x, 0);
        }
        ++runs.back().second;
    }
    return runs;
}

} // namespace

std::vector<QRect> opaqueShape(const QImage &picture)
{
    const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32);
    std::vector<QRect> shape;
    std::vector<std::pair<int, int>> above;
    std::size_t rowStart = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        std::vector<std::pair<int, int>> runs = opaqueRuns(pixels, y);
        if (runs == above) { // rows alike are one row of rectangles
            for (std::size_t i = rowStart; i < shape.size(); ++i) {
                shape[i].setHeight(shape[i].height() + 1);
            }
            continue;
        }
        rowStart = shape.size();
        for (const auto &[x, width] : runs) {
            shape.emplace_back(x, y, width, 1);
        }
        above = std::move(runs);
    }
    if (shape.empty()) {
        shape.emplace_back();
    }
    return shape;
}

} // namespace mevo
