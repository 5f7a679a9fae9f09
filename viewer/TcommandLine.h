#pragma once

#include "TviewScene.h"

#include <QSize>
#include <QString>
#include <QStringList>

/** What the command line of portview asks for. */
struct TcommandLine
{
    enum Trequest {
        kRun,
        kHelp,    ///< fText is the help text
        kVersion, ///< fText is the name and version
        kError    ///< fText is a sentence that says what is wrong
    };

    /** Smallest and largest side of the view area, in device pixels. */
    static constexpr int kMinSide = 16;
    static constexpr int kMaxSide = 8192;

    Trequest fRequest = kRun;
    QString fText;
    QString fModel;    ///< empty for the built-in scene
    QString fSnapshot; ///< the picture to write; empty for a window
    QString fTexture;  ///< the picture on the model; empty for the material's
    QString fScript;   ///< the Python to run once the model is there; empty for none
    QString fGallery;  ///< the folder to fill with pictures; empty for a window
    QSize fSize{960, 720};
    TviewScene::Tstyle fStyle;
    TmodelTexture::Tfilter fFilter = TmodelTexture::kMipmapped;
    bool fFourViews = false;
    bool fUvs = false; ///< the panel of texture coordinates
    QString fPlatform; ///< Qt's -platform
    QString fDisplay;  ///< Qt's -display

    /**
     * Reads the arguments, of which the first is the program's name. Needs a QCoreApplication for the texts of help and
     * version.
     */
    static TcommandLine parse(const QStringList& arguments);
};
