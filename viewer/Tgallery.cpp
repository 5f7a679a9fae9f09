#include "Tgallery.h"

#include "Graphics/3dPort/T3dPort.h"
#include "TgalleryItem.h"
#include "TsceneLights.h"
#include "foundation/TresourceMap.h"
#include "pictures.h"
#include "ui/TUIInventory.h"

#include <QDir>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kTileWidth = 160;
constexpr int kTileHeight = 120;
constexpr int kSupersampling = 3;
constexpr TportColor kBackground{0.17f, 0.185f, 0.205f};
constexpr TportColor kFlatColour{0.55f, 0.80f, 0.94f};
constexpr TportColor kSolidColour{0.93f, 0.62f, 0.26f};

/** The items under their sections' headings, on one sheet. */
class Tsheet
{
public:
    Tsheet() { arrange(nullptr); }

    QSize size() const { return QSize(kMargin + kColumns * (kTileWidth + kMargin), fBottom + kMargin); }

    QImage composed(const std::vector<QImage>& tiles)
    {
        QImage sheet(size(), QImage::Format_RGB32);
        sheet.fill(QColor(24, 26, 29));
        QPainter painter(&sheet);
        fTiles = &tiles;
        arrange(&painter);
        return sheet;
    }

private:
    static constexpr int kColumns = 7;
    static constexpr int kMargin = 8;
    static constexpr int kHeading = 34;
    static constexpr int kCaption = 20;

    void arrange(QPainter* painter)
    {
        QFont font;
        fBottom = 0;
        int column = kColumns;
        int top = 0;
        const char* section = nullptr;
        const auto& items = TgalleryItem::all();
        for (std::size_t i = 0; i < items.size(); ++i) {
            const bool isFirst = items[i].fSection != section;
            section = items[i].fSection;
            if (isFirst) {
                font.setPixelSize(17);
                write(painter, font, QRect(kMargin, fBottom, size().width(), kHeading), section, QColor(235, 238, 241));
                top = fBottom + kHeading;
                column = 0;
            } else if (++column == kColumns) {
                top = fBottom;
                column = 0;
            }
            const int left = kMargin + column * (kTileWidth + kMargin);
            font.setPixelSize(12);
            if (painter)
                painter->drawImage(left, top, (*fTiles)[i]);
            write(painter, font, QRect(left, top + kTileHeight, kTileWidth, kCaption), items[i].fName,
                  QColor(165, 172, 180));
            fBottom = top + kTileHeight + kCaption + kMargin / 2;
        }
    }

    static void write(QPainter* painter, const QFont& font, const QRect& place, const char* text, const QColor& colour)
    {
        if (!painter)
            return;
        painter->setFont(font);
        painter->setPen(colour);
        painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter, QString::fromLatin1(text));
    }

    const std::vector<QImage>* fTiles = nullptr;
    int fBottom = 0;
};

bool isFlat(TgalleryItem::Tlook look)
{
    return look == TgalleryItem::kFlat || look == TgalleryItem::kStipple;
}

} // namespace

Tgallery::Tgallery() : fDraw([this](const Tevent&) { draw(); })
{
    TresourceMap::Set("gallery", "saFrameBufferMode", "double");
    fPort = std::make_unique<T3dPort>(&fParent, "gallery", false);
    gUIInventory->add(fPort.get(), "gallery");
    fPort->setUpdateCommand(&fDraw);
}

Tgallery::~Tgallery() = default;

QString Tgallery::write(const QString& folder)
{
    const QDir target(folder);
    if (!target.mkpath(QStringLiteral(".")))
        return QStringLiteral("cannot make the folder %1.").arg(folder);
    std::vector<QImage> tiles;
    for (const TgalleryItem& item : TgalleryItem::all()) {
        tiles.push_back(picture(item));
        QString problem =
            writePicture(tiles.back(), target.filePath(QString::fromLatin1(item.fName) + QStringLiteral(".png")));
        if (!problem.isEmpty())
            return problem;
    }
    return writePicture(Tsheet().composed(tiles), target.filePath(QStringLiteral("gallery.png")));
}

QImage Tgallery::picture(const TgalleryItem& item)
{
    const QSize size(kTileWidth, kTileHeight);
    fItem = &item;
    const QImage drawn = drawnPicture(*fPort, item.fLook == TgalleryItem::kStipple ? size : size * kSupersampling);
    fItem = nullptr;
    return drawn.isNull() ? drawn : drawn.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void Tgallery::draw()
{
    T3dPort& port = *fPort;
    port.clearColor(kBackground);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (fItem) {
        const TgalleryItem::Tlook look = fItem->fLook;
        const double aspect = double(kTileWidth) / kTileHeight;
        port.matrixMode(GL_MODELVIEW);
        port.lineWidth(look == TgalleryItem::kStipple ? 1.0f : 1.2f * kSupersampling);
        port.depthTest(!isFlat(look));
        port.depthFunc(T3dPort::kDepthLequal);
        port.shadeModel(T3dPort::kShadeSmooth);
        if (isFlat(look)) {
            port.ortho(-1.4 * aspect, 1.4 * aspect, -1.4, 1.4, -1, 1);
            port.loadIdentity();
        } else {
            port.perspective(24, aspect, 1, 20);
            port.polarView(6.2, 28, 62, 0);
        }
        if (look == TgalleryItem::kLit) {
            TsceneLights::turnOnHeadlight(port);
            port.setSpecularColor({0.25f, 0.25f, 0.25f});
            port.setShininess(24);
            port.setAmbientMaterialColor({0.10f, 0.10f, 0.11f});
            port.setDiffuseColor(kSolidColour);
            fItem->fDraw(port);
            TsceneLights::turnOff(port);
        } else {
            port.color(look == TgalleryItem::kWire ? kSolidColour : kFlatColour);
            fItem->fDraw(port);
        }
    }
    port.swapBuffers();
}
