#include "TmodelTexture.h"

#include "Graphics/3dPort/T3dPort.h"

#include <QImageReader>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int kBoardSide = 512;
constexpr int kBoardSquares = 16;
constexpr int kLongestSide = 8192;

/** Sends the pixels of a rectangle again, from where they lie. */
class TpixelUpdater : public TglTexObjUpdater
{
public:
    explicit TpixelUpdater(const TpixelMap& pixels) : fPixels(pixels) {}

    void update(const TglTextureObject&, int x, int y, int width, int height, unsigned) override
    {
        width = std::min(width, fPixels.width() - x);
        height = std::min(height, fPixels.height() - y);
        if (width <= 0 || height <= 0)
            return;
        glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, fPixels.width());
        glPixelStorei(GL_UNPACK_SKIP_PIXELS, x);
        glPixelStorei(GL_UNPACK_SKIP_ROWS, y);
        glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, width, height, fPixels.isRgba() ? GL_RGBA : GL_BGRA, GL_UNSIGNED_BYTE,
                        fPixels.pixels());
        glPopClientAttrib();
    }

private:
    const TpixelMap& fPixels;
};

} // namespace

QString TmodelTexture::load(const QString& path)
{
    QImageReader reader(path);
    const QSize size = reader.size();
    if (size.width() > kLongestSide || size.height() > kLongestSide)
        return QStringLiteral("it is larger than %1 pixels").arg(kLongestSide);
    const QImage image = reader.read().convertToFormat(QImage::Format_RGBA8888);
    if (image.isNull())
        return reader.errorString().toLower();
    take(image.width(), image.height(), image.constBits(), image.bytesPerLine());
    return QString();
}

void TmodelTexture::makeBoard()
{
    QImage image(kBoardSide, kBoardSide, QImage::Format_RGBA8888);
    const int square = kBoardSide / kBoardSquares;
    for (int y = 0; y < kBoardSide; ++y) {
        for (int x = 0; x < kBoardSide; ++x)
            image.setPixel(x, y, (x / square + y / square) % 2 ? qRgb(206, 200, 190) : qRgb(150, 146, 140));
    }
    take(image.width(), image.height(), image.constBits(), image.bytesPerLine());
}

void TmodelTexture::take(int width, int height, const unsigned char* topRow, int bytesPerLine)
{
    fUploaded = false;
    if (!fPixels.setSize(width, height))
        return;
    fPixels.setRgba(true);
    for (int y = 0; y < height; ++y)
        std::memcpy(fPixels.pixels() + static_cast<std::size_t>(height - 1 - y) * fPixels.rowBytes(),
                    topRow + static_cast<std::ptrdiff_t>(y) * bytesPerLine, fPixels.rowBytes());
}

void TmodelTexture::setFilter(Tfilter filter)
{
    fFilter = filter;
    static constexpr TglContext::TtextureFilter kMin[] = {TglContext::kNearest, TglContext::kLinear,
                                                          TglContext::kLinearMipmapLinear};
    fTexture.setFilters(kMin[filter], filter == kNearest ? TglContext::kNearest : TglContext::kLinear);
    fTexture.setFlag(TglTextureObject::kParametersPending, true);
}

void TmodelTexture::upload()
{
    fUploaded = true;
    fTexture.setFlag(TglTextureObject::kMipmaps, true);
    // Brings the pixels to a size that OpenGL takes; strokes are painted on those.
    fTexture.texImage2D(&fPixels, false, 0);
    fTexture.setTextureUpdater(new TpixelUpdater(fPixels));
    fTexture.setWrap(TglContext::kRepeat, TglContext::kRepeat);
    setFilter(fFilter);
}

void TmodelTexture::apply(T3dPort& port)
{
    if (isEmpty())
        return;
    port.setCurrentContext();
    if (!fUploaded)
        upload();
    fTexture.apply(&port, 0);
}

void TmodelTexture::dab(double u, double v, double radius, const TportColor& color)
{
    if (isEmpty() || !std::isfinite(u) || !std::isfinite(v))
        return;
    const double x = (u - std::floor(u)) * width();
    const double y = (v - std::floor(v)) * height();
    const int reach = static_cast<int>(std::ceil(radius)) + 1;
    const auto clampTo = [](double at, int side) { return std::clamp(static_cast<int>(at), 0, side); };
    const int left = clampTo(x - reach, width());
    const int right = clampTo(x + reach + 1, width());
    const int bottom = clampTo(y - reach, height());
    const int top = clampTo(y + reach + 1, height());
    const double channels[3] = {fPixels.isRgba() ? color.r : color.b, color.g, fPixels.isRgba() ? color.b : color.r};
    for (int row = bottom; row < top; ++row) {
        std::uint8_t* pixel = fPixels.pixels() + static_cast<std::size_t>(row) * fPixels.rowBytes() +
                              static_cast<std::size_t>(left) * TpixelMap::kChannels;
        for (int column = left; column < right; ++column, pixel += TpixelMap::kChannels) {
            const double cover = std::clamp(radius + 0.5 - std::hypot(column + 0.5 - x, row + 0.5 - y), 0.0, 1.0);
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>(
                    std::lround(pixel[channel] + cover * (255 * channels[channel] - pixel[channel])));
        }
    }
    fTexture.changed(static_cast<unsigned short>(left), static_cast<unsigned short>(right),
                     static_cast<unsigned short>(bottom), static_cast<unsigned short>(top));
}
