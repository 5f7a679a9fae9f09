#pragma once

#include "foundation/Taction.h"

#include <QImage>
#include <QWidget>

#include <memory>

class T3dPort;
struct TgalleryItem;

/** Pictures of everything that a port draws: each shape in each form, each stipple, lights and surfaces. */
class Tgallery
{
public:
    Tgallery();
    ~Tgallery();
    Tgallery(const Tgallery&) = delete;
    Tgallery& operator=(const Tgallery&) = delete;

    /**
     * Writes a PNG file for each item into @p folder, which is made if it is missing, and gallery.png with all of them.
     * Returns a sentence that says what went wrong; empty when nothing did.
     */
    QString write(const QString& folder);

private:
    void draw();
    QImage picture(const TgalleryItem& item);

    const TgalleryItem* fItem = nullptr;
    QWidget fParent;
    TfunctionAction fDraw;
    std::unique_ptr<T3dPort> fPort; ///< after the command, which it refers to
};
